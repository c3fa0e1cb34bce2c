#include "jetsql/functions/text_compare.h"

#include <algorithm>

#include "text/letter_case.h"
#include "text/utf8.h"

namespace jetsql {
namespace {

// Sigma and final sigma are one letter to a comparison.
char32_t folded(char32_t character) {
  const char32_t lower = text::lowerCase(character);
  return lower == 0x3C2 ? 0x3C3 : lower;
}

// Begins with one of the characters from U+2000 to U+EFFF, Hangul among them: they have no case,
// and their bytes are in the order of their code points.
bool isCaseless(std::string_view text) {
  if (text.size() < 3 || !text::continuesCharacter(text[1]) || !text::continuesCharacter(text[2])) {
    return false;
  }
  const auto first = static_cast<unsigned char>(text[0]);
  const bool isSurrogate = first == 0xED && static_cast<unsigned char>(text[1]) >= 0xA0;
  return first >= 0xE2 && first <= 0xEE && !isSurrogate;
}

}  // namespace

int compareText(std::string_view left, std::string_view right) {
  if (left == right) return 0;
  // What is the same byte for byte needs no decoding; a difference inside a character steps back
  // to the character's first byte.
  const std::size_t shorter = std::min(left.size(), right.size());
  std::size_t same = static_cast<std::size_t>(
      std::mismatch(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(shorter),
                    right.begin())
          .first -
      left.begin());
  if (same < shorter) {
    while (same > 0 &&
           (text::continuesCharacter(left[same]) || text::continuesCharacter(right[same]))) {
      --same;
    }
  }
  const int order = left.substr(same, 3).compare(right.substr(same, 3));
  if (order != 0 && isCaseless(left.substr(same)) && isCaseless(right.substr(same))) {
    return order < 0 ? -1 : 1;
  }
  std::size_t l = same;
  std::size_t r = same;
  while (l < left.size() && r < right.size()) {
    const char32_t a = folded(text::nextCharacter(left, l));
    const char32_t b = folded(text::nextCharacter(right, r));
    if (a != b) return a < b ? -1 : 1;
  }
  if (l < left.size()) return 1;
  return r < right.size() ? -1 : 0;
}

bool equalText(std::string_view left, std::string_view right) {
  return compareText(left, right) == 0;
}

std::uint64_t hashText(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325U;  // FNV-1a over characters
  for (std::size_t position = 0; position < text.size();) {
    hash = (hash ^ folded(text::nextCharacter(text, position))) * 0x100000001B3U;
  }
  return hash;
}

void appendFolded(std::string_view text, std::string& result) {
  for (std::size_t position = 0; position < text.size();) {
    text::appendCharacter(result, folded(text::nextCharacter(text, position)));
  }
}

}  // namespace jetsql
