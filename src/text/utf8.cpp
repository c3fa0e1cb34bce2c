#include "text/utf8.h"

#include <array>

namespace text {
namespace {

// Bytes of the character that begins with `lead`; 0 where none does.
int lengthOf(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

bool isSurrogate(char32_t character) { return character >= 0xD800 && character < 0xE000; }

char32_t nextLongCharacter(std::string_view text, std::size_t& position) {
  const auto lead = static_cast<unsigned char>(text[position]);
  const auto invalid = [&] { return ++position, kInvalidByte + lead; };
  const int length = lengthOf(lead);
  if (length == 0 || position + static_cast<std::size_t>(length) > text.size()) return invalid();
  char32_t character = lead & (0xFFU >> (length + 1));
  for (int i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[position + static_cast<std::size_t>(i)]);
    if ((byte & 0xC0U) != 0x80U) return invalid();
    character = (character << 6) | (byte & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
  if (character < kSmallest[static_cast<std::size_t>(length)] || character > 0x10FFFF ||
      isSurrogate(character))
    return invalid();
  position += static_cast<std::size_t>(length);
  return character;
}

}  // namespace

char32_t nextCharacter(std::string_view text, std::size_t& position) {
  const auto byte = static_cast<unsigned char>(text[position]);
  if (byte < 0x80) return ++position, byte;
  return nextLongCharacter(text, position);
}

void appendCharacter(std::string& text, char32_t character) {
  const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
  const auto appendTail = [&](char32_t bits) { append(0x80 | (bits & 0x3F)); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | (character >> 6));
    appendTail(character);
  } else if (character < 0x10000) {
    append(0xE0 | (character >> 12));
    appendTail(character >> 6);
    appendTail(character);
  } else if (character < kInvalidByte) {
    append(0xF0 | (character >> 18));
    appendTail(character >> 12);
    appendTail(character >> 6);
    appendTail(character);
  } else {
    append(character - kInvalidByte);
  }
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count)
    (void)nextCharacter(text, position);
  return count;
}

std::size_t offsetOfCharacter(std::string_view text, std::size_t count) {
  std::size_t position = 0;
  while (count-- > 0 && position < text.size()) (void)nextCharacter(text, position);
  return position;
}

std::string_view middle(std::string_view text, std::size_t start, std::size_t count) {
  text.remove_prefix(offsetOfCharacter(text, start));
  return text.substr(0, offsetOfCharacter(text, count));
}

std::u32string toCharacters(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t position = 0; position < text.size();)
    characters += nextCharacter(text, position);
  return characters;
}

std::string fromCharacters(std::u32string_view characters) {
  std::string text;
  for (const char32_t character : characters) appendCharacter(text, character);
  return text;
}

}  // namespace text
