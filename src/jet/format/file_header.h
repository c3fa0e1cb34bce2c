// The first page of a Jet file: version, page encoding, code page, password.
//
//   FileHeader header = readFileHeader(file);     // 3343 when it is no Jet file
//   checkPassword(header, "geheim", file.path()); // 3031 when it is not the password
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/layout.h"
#include "platform/random_access_file.h"

namespace jet {

struct FileHeader {
  Version version = Version::kJet4;
  std::uint8_t versionByte = 1;     // 2 and on: .accdb
  std::uint32_t encodingKey = 0;    // 0: pages are stored plain
  int codePage = 1252;              // of Jet 3 text
  double created = 0;               // days since 1899-12-30; Jet 4
  std::vector<std::byte> password;  // unmasked, without trailing zeros; empty: none
};

// Error 3343 for what is not a Jet file, or has pages encrypted in the way of Access 2007 and
// later.
[[nodiscard]] FileHeader readFileHeader(const RandomAccessFile& file);

// `password` in UTF-8. A file without a password accepts any.
void checkPassword(const FileHeader& header, std::string_view password, const std::string& path);

}  // namespace jet
