#include "text/utf16.h"

namespace text {
namespace {

constexpr char32_t kFirstOfPairs = 0x10000;
constexpr char32_t kHighHalves = 0xD800;
constexpr char32_t kLowHalves = 0xDC00;

bool isHighHalf(char16_t unit) { return unit >= kHighHalves && unit < kLowHalves; }
bool isLowHalf(char16_t unit) { return unit >= kLowHalves && isSurrogate(unit); }

}  // namespace

std::u16string toUtf16(std::string_view utf8) {
  std::u16string units;
  units.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    char32_t character = nextCharacter(utf8, position);
    if (character >= kInvalidByte) character = kReplacement;
    if (character < kFirstOfPairs) {
      units += static_cast<char16_t>(character);
    } else {
      character -= kFirstOfPairs;
      units += static_cast<char16_t>(kHighHalves + (character >> 10));
      units += static_cast<char16_t>(kLowHalves + (character & 0x3FF));
    }
  }
  return units;
}

std::string toUtf8(std::u16string_view units) {
  std::string utf8;
  {
    Utf16Decoder decoder(utf8, units.size());
    for (const char16_t unit : units) decoder.put(unit);
  }
  return utf8;
}

std::size_t utf16Length(std::string_view utf8) {
  std::size_t units = 0;
  for (std::size_t position = 0; position < utf8.size();) {
    const char32_t character = nextCharacter(utf8, position);
    units += character >= kFirstOfPairs && character < kInvalidByte ? 2 : 1;
  }
  return units;
}

void Utf16Decoder::putSurrogate(char16_t unit) {
  if (high_ != 0 && isLowHalf(unit)) {
    to_ = putCharacter(to_, kFirstOfPairs + ((high_ - kHighHalves) << 10) + (unit - kLowHalves));
    high_ = 0;
    return;
  }
  flush();
  if (isHighHalf(unit)) {
    high_ = unit;
  } else {
    to_ = putCharacter(to_, isLowHalf(unit) ? kReplacement : unit);
  }
}

void Utf16Decoder::flush() {
  if (high_ != 0) to_ = putCharacter(to_, kReplacement);
  high_ = 0;
}

}  // namespace text
