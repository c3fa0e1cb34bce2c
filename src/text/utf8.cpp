#include "text/utf8.h"

#include <array>

namespace text {

void appendCharacter(std::string& text, char32_t character) {
  std::array<char, kMaxCharacterBytes> bytes;
  text.append(bytes.data(), putCharacter(bytes.data(), character));
}

std::size_t characterLength(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && length < kMaxCharacterBytes && continuesCharacter(text[length])) {
    ++length;
  }
  return length;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count) {
    (void)nextCharacter(text, position);
  }
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
  for (std::size_t position = 0; position < text.size();) {
    characters += nextCharacter(text, position);
  }
  return characters;
}

std::string fromCharacters(std::u32string_view characters) {
  std::string text;
  for (const char32_t character : characters) appendCharacter(text, character);
  return text;
}

}  // namespace text
