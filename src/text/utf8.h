// Characters of UTF-8 text: decoding, encoding, counting and cutting.
//
//   for (std::size_t at = 0; at < name.size();) use(text::nextCharacter(name, at));
//   text::middle("가나다", 1, 1)      // "나"
//
// A character is a code point. A byte that is no valid UTF-8 (a character cut short, one longer
// than it need be, a surrogate) counts as one character and is kept as it is when text is cut.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace text {

// Stands for a byte b that is no UTF-8: kInvalidByte + b.
constexpr char32_t kInvalidByte = 0x110000;
// What such a byte becomes where it cannot be kept.
constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isSurrogate(char32_t character) { return character >= 0xD800 && character < 0xE000; }

// Whether the byte is one after the first of a character.
constexpr bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The character at `position`, which moves to the one after it. Inline, as every text read or
// written passes here. Precondition: position < text.size().
[[nodiscard]] inline char32_t nextCharacter(std::string_view text, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position]);
  if (lead < 0x80) return ++position, lead;
  // A byte that continues a character gives six bits; any other gives 0x40 or more.
  const auto bits = [&](std::size_t i) -> char32_t {
    return static_cast<unsigned char>(text[position + i]) ^ 0x80U;
  };
  const std::size_t left = text.size() - position;
  if (lead >= 0xE0 && lead < 0xF0 && left >= 3 && (bits(1) | bits(2)) < 0x40) {
    const char32_t character = (lead & 0x0FU) << 12 | bits(1) << 6 | bits(2);
    if (character >= 0x800 && !isSurrogate(character)) return position += 3, character;
  } else if (lead >= 0xC2 && lead < 0xE0 && left >= 2 && bits(1) < 0x40) {
    const char32_t character = (lead & 0x1FU) << 6 | bits(1);
    return position += 2, character;
  } else if (lead >= 0xF0 && lead < 0xF5 && left >= 4 && (bits(1) | bits(2) | bits(3)) < 0x40) {
    const char32_t character = (lead & 0x07U) << 18 | bits(1) << 12 | bits(2) << 6 | bits(3);
    if (character >= 0x10000 && character < kInvalidByte) return position += 4, character;
  }
  return ++position, kInvalidByte + lead;
}

// Writes the character's bytes, at most kMaxCharacterBytes, and returns the end of them. One from
// kInvalidByte on is written as the byte that it stands for.
constexpr std::size_t kMaxCharacterBytes = 4;
inline char* putCharacter(char* to, char32_t character) {
  const auto put = [&](char32_t byte) { *to++ = static_cast<char>(byte); };
  const auto putBits = [&](char32_t bits) { put(0x80 | (bits & 0x3F)); };
  if (character < 0x80) return put(character), to;
  if (character >= kInvalidByte) return put(character - kInvalidByte), to;
  if (character < 0x800) {
    put(0xC0 | character >> 6);
  } else {
    if (character < 0x10000) {
      put(0xE0 | character >> 12);
    } else {
      put(0xF0 | character >> 18);
      putBits(character >> 12);
    }
    putBits(character >> 6);
  }
  return putBits(character), to;
}

void appendCharacter(std::string& text, char32_t character);

// Bytes from the first of `text` to the next that does not continue its character, at most
// kMaxCharacterBytes: what a converter that refuses the character passes over.
// Precondition: the text is not empty.
[[nodiscard]] std::size_t characterLength(std::string_view text);

[[nodiscard]] std::size_t characterCount(std::string_view text);

// Byte offset of the end of the first `count` characters; the text's size when it has fewer.
[[nodiscard]] std::size_t offsetOfCharacter(std::string_view text, std::size_t count);

// `count` characters from the one at index `start` (from 0); what there is of them.
[[nodiscard]] std::string_view middle(std::string_view text, std::size_t start, std::size_t count);

[[nodiscard]] std::u32string toCharacters(std::string_view text);
[[nodiscard]] std::string fromCharacters(std::u32string_view characters);

}  // namespace text
