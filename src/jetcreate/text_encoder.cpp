#include "jetcreate/text_encoder.h"

#include <algorithm>
#include <cstdint>

#include "jet/format/bytes.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// The character at `text`, whose bytes are taken off.
char32_t nextCharacter(std::string_view& text) {
  const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byteAt(0);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                                           : 4;
  if (length == 0 || lead > 0xF4 || text.size() < length) {
    text.remove_prefix(1);
    return kReplacement;
  }
  char32_t character = length == 1 ? lead : lead & (0x7F >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80) {
      text.remove_prefix(i);
      return kReplacement;
    }
    character = character << 6 | (byteAt(i) & 0x3F);
  }
  text.remove_prefix(length);
  return character > 0x10FFFF || (character & 0xFFFFF800) == 0xD800 ? kReplacement : character;
}

void putPlain(char16_t unit, std::vector<std::byte>& out) {
  out.push_back(static_cast<std::byte>(unit & 0xFF));
  out.push_back(static_cast<std::byte>(unit >> 8));
}

// Characters below 256 from `start` on, no more than three: a shorter run is not worth a switch.
bool worthSwitching(const std::u16string& units, std::size_t start) {
  constexpr std::size_t kShortestRun = 3;
  const std::size_t end = std::min(units.size(), start + kShortestRun);
  return std::all_of(units.begin() + static_cast<std::ptrdiff_t>(start),
                     units.begin() + static_cast<std::ptrdiff_t>(end),
                     [](char16_t unit) { return unit < 0x100; });
}

std::vector<std::byte> compressed(const std::u16string& units) {
  std::vector<std::byte> out{std::byte{0xFF}, std::byte{0xFE}};
  bool narrow = true;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool wanted = units[i] < 0x100 && (narrow || worthSwitching(units, i));
    if (wanted != narrow) {
      out.push_back(std::byte{0});
      narrow = wanted;
    }
    if (narrow)
      out.push_back(static_cast<std::byte>(units[i]));
    else
      putPlain(units[i], out);
  }
  return out;
}

}  // namespace

std::u16string toUtf16(std::string_view utf8) {
  std::u16string units;
  units.reserve(utf8.size());
  while (!utf8.empty()) {
    const char32_t character = nextCharacter(utf8);
    if (character < 0x10000) {
      units.push_back(static_cast<char16_t>(character));
    } else {
      units.push_back(static_cast<char16_t>(0xD7C0 + (character >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 | (character & 0x3FF)));
    }
  }
  return units;
}

std::vector<std::byte> encodeText(std::string_view utf8, bool compress) {
  const std::u16string units = toUtf16(utf8);
  const auto lowByteIsZero = [](char16_t unit) { return (unit & 0xFF) == 0; };
  if (compress && std::none_of(units.begin(), units.end(), lowByteIsZero)) {
    std::vector<std::byte> narrow = compressed(units);
    if (narrow.size() < units.size() * 2) return narrow;
  }
  std::vector<std::byte> plain;
  plain.reserve(units.size() * 2);
  for (char16_t unit : units) putPlain(unit, plain);
  return plain;
}

}  // namespace jetcreate
