// Whole Jet files that damage begins with, each a few pages: what a shop's files hold, in small.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace fuzz {

struct WholeFile {
  std::string bytes;
  std::size_t pageSize = 0;
};

[[nodiscard]] std::vector<WholeFile> makeWholeFiles();

}  // namespace fuzz
