// ASCII text: how far a text is plain, and its letters without regard to case.
//
//   text::asciiPrefix("abc홀");                          // 3: as many bytes below 0x80 in front
//   text::equalsIgnoringAsciiCase(token, "SELECT");      // select, Select, ...
//   text::lowerAscii(".TXT");                            // ".txt"
//
// Bytes beyond ASCII stay as they are and equal only themselves; for letters of every script see
// letter_case.h.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace text {

// Looks at eight bytes a step: most of what this program converts is plain.
[[nodiscard]] inline std::size_t asciiPrefix(std::string_view text) {
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest one");
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t at = 0;
  for (; text.size() - at >= sizeof kHighBits; at += sizeof kHighBits) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text.data() + at, sizeof bytes);
    const std::uint64_t high = bytes & kHighBits;
    if (high != 0) return at + static_cast<std::size_t>(std::countr_zero(high)) / 8;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

[[nodiscard]] constexpr std::string_view trimBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

[[nodiscard]] constexpr bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }

[[nodiscard]] constexpr char lowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] constexpr bool isAsciiLetter(char c) {
  return lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z';
}

[[nodiscard]] inline std::string lowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = lowerAscii(c);
  return lower;
}

[[nodiscard]] constexpr bool equalsIgnoringAsciiCase(std::string_view left,
                                                     std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowerAscii(a) == lowerAscii(b); });
}

[[nodiscard]] constexpr bool startsWithIgnoringAsciiCase(std::string_view text,
                                                         std::string_view start) {
  return equalsIgnoringAsciiCase(text.substr(0, start.size()), start);
}

}  // namespace text
