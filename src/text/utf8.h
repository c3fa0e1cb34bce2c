// Characters of UTF-8 text: decoding, counting and cutting. A character is a code point; a byte
// that is no valid UTF-8 counts as one character and is kept as it is when text is cut.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace text {

// The code point at `position`, which moves behind it. An invalid byte b gives kInvalidByte + b.
// Precondition: position < text.size().
constexpr char32_t kInvalidByte = 0x110000;
[[nodiscard]] char32_t nextCharacter(std::string_view text, std::size_t& position);
void appendCharacter(std::string& text, char32_t character);

[[nodiscard]] std::size_t characterCount(std::string_view text);

// Byte offset behind the first `count` characters; the size of the text when it has fewer.
[[nodiscard]] std::size_t offsetOfCharacter(std::string_view text, std::size_t count);

// `count` characters from the one at index `start` (from 0); what there is of them.
[[nodiscard]] std::string_view middle(std::string_view text, std::size_t start, std::size_t count);

[[nodiscard]] std::u32string toCharacters(std::string_view text);
[[nodiscard]] std::string fromCharacters(std::u32string_view characters);

}  // namespace text
