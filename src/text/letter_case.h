// Upper and lower case of UTF-8 text, the same on every system and whatever the user's locale.
//
//   text::lowerCase("GZIP.EXE") == "gzip.exe"
//
// Simple case mapping (one character to one) of Latin, Greek, Cyrillic, Armenian and the full-width
// letters. Bytes that are no UTF-8 stay as they are.
#pragma once

#include <string>
#include <string_view>

namespace text {

[[nodiscard]] char32_t lowerCase(char32_t character);
[[nodiscard]] char32_t upperCase(char32_t character);
[[nodiscard]] std::string lowerCase(std::string_view text);
[[nodiscard]] std::string upperCase(std::string_view text);

}  // namespace text
