// Text as a Jet 4 file stores it.
//
//   std::vector<std::byte> stored = encodeText("된장찌개 2", /*compress=*/true);
//
// A compressed text begins with FF FE, keeps characters below 256 in one byte and switches to two
// bytes a character, and back, with a zero byte; so one with a character whose low byte is zero
// (가 is U+AC00) cannot be compressed, and one that would not get shorter is not.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace jetcreate {

[[nodiscard]] std::vector<std::byte> encodeText(std::string_view utf8, bool compress);

}  // namespace jetcreate
