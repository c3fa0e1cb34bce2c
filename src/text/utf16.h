// UTF-8 to UTF-16 and back. Nothing here throws on bad text: a byte that is no UTF-8, or half a
// surrogate pair, becomes U+FFFD.
//
//   text::toUtf16("A가")                  // {0x0041, 0xAC00}
//   text::toUtf8(u"A가")                  // "A가"
//
//   text::Utf16Decoder out(utf8, count);  // units that arrive one by one
//   while (more()) out.put(unit());
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/utf8.h"

namespace text {

[[nodiscard]] std::u16string toUtf16(std::string_view utf8);
[[nodiscard]] std::string toUtf8(std::u16string_view units);

// UTF-16 units that the text takes; a byte that is no UTF-8 counts as one.
[[nodiscard]] std::size_t utf16Length(std::string_view utf8);

// Appends units as UTF-8, in space reserved once for all of them; the text is whole again when the
// decoder ends. Joins surrogate pairs.
class Utf16Decoder {
 public:
  // `maxUnits`: no more than these are put.
  Utf16Decoder(std::string& utf8, std::size_t maxUnits) : utf8_(utf8) {
    const std::size_t before = utf8.size();
    utf8.resize(before + kMaxBytes * maxUnits);
    to_ = utf8.data() + before;
  }
  ~Utf16Decoder() {
    flush();
    utf8_.resize(static_cast<std::size_t>(to_ - utf8_.data()));
  }
  Utf16Decoder(const Utf16Decoder&) = delete;
  Utf16Decoder& operator=(const Utf16Decoder&) = delete;

  void put(char16_t unit) {
    if (high_ == 0 && !isSurrogate(unit)) {
      to_ = putCharacter(to_, unit);
    } else {
      putSurrogate(unit);
    }
  }

 private:
  static constexpr std::size_t kMaxBytes = 3;  // a unit's; a pair has four

  void putSurrogate(char16_t unit);
  void flush();

  std::string& utf8_;
  char* to_;
  char16_t high_ = 0;  // the first half of a pair whose second half has not come yet
};

}  // namespace text
