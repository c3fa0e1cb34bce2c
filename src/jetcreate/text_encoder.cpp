#include "jetcreate/text_encoder.h"

#include <algorithm>

#include "text/utf16.h"

namespace jetcreate {

namespace {

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

std::vector<std::byte> encodeText(std::string_view utf8, bool compress) {
  const std::u16string units = text::toUtf16(utf8);
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
