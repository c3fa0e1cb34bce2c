// The command line of makeshop.
//
//   Options options = parseOptions(arguments);   // without the program's name
//
// Errors: 5 with a description that says which argument and why.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/creation_format.h"

namespace makeshop {

struct Options {
  std::string folder;
  int days = 21;              // 1 to 3660
  int salesPerDay = 30;       // 0 to 5000, on average
  std::int32_t firstDay = 0;  // serial of a day; 2013-08-01 by default
  std::uint64_t seed = 1;
  bool indexes = true;        // on the sale id of items and on the days
  bool itemDayIndex = true;   // where there are indexes, one on the items' day, too
  bool wholeAmounts = false;  // of sales and items: Long instead of Currency
  jet::FileFormat format = jet::FileFormat::kJet4;
  bool compressTexts = true;  // as columns made in the maker's table designer have them
  bool plain = false;         // texts without apostrophes, backslashes and foreign characters
  bool help = false;
  bool version = false;
};

[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

// Text of --help.
[[nodiscard]] const char* usage();

}  // namespace makeshop
