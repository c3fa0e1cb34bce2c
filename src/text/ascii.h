// How far a text is plain ASCII, eight bytes a step: most of what this program converts is.
//
//   const std::size_t plain = asciiPrefix(line);   // bytes below 0x80 that it begins
//   with
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace text {

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

}  // namespace text
