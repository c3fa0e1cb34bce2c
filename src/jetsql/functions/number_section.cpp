#include "jetsql/functions/number_section.h"

#include <algorithm>
#include <utility>

#include "text/utf8.h"

namespace jetsql {
namespace {

using Token = NumberToken;
using Section = NumberSection;

class SectionParser {
 public:
  explicit SectionParser(std::string_view pattern) : pattern_(pattern) {}

  Section run() {
    for (; position_ < pattern_.size(); ++position_) step(pattern_[position_]);
    endWhole();
    return std::move(section_);
  }

 private:
  void add(Token::Kind kind, std::string text = {}) {
    section_.tokens.push_back({kind, std::move(text)});
  }

  void step(char c) {
    switch (c) {
      case '0':
      case '#':
        return digit(c);
      case '.':
        if (afterPoint_) return add(Token::Kind::kLiteral, ".");
        endWhole();
        afterPoint_ = true;
        return add(Token::Kind::kPoint);
      case ',':
        pendingCommas_ += section_.wholePlaces > 0 && !afterPoint_ ? 1 : 0;
        return;
      case '%':
        section_.shift += 2;
        return add(Token::Kind::kLiteral, "%");
      case '\\':
        return add(Token::Kind::kLiteral, std::string(character()));
      case '"':
        return quoted();
      case 'E':
      case 'e':
        if (exponent()) return;
        [[fallthrough]];
      default:
        return add(Token::Kind::kLiteral, std::string(1, c));
    }
  }

  void digit(char c) {
    if (section_.hasExponent) {
      section_.exponentZeros += c == '0' ? 1 : 0;
      return;
    }
    if (afterPoint_) {
      ++section_.places;
    } else {
      section_.grouped = section_.grouped || pendingCommas_ > 0;
      pendingCommas_ = 0;
      ++section_.wholePlaces;
    }
    add(c == '0' ? Token::Kind::kZero : Token::Kind::kDigit);
  }

  // Commas that no digit follows divide by a thousand each.
  void endWhole() {
    section_.shift -= 3 * pendingCommas_;
    pendingCommas_ = 0;
  }

  // The character after a backslash, with all of its bytes.
  std::string_view character() {
    std::size_t end = ++position_;
    if (end < pattern_.size()) ++end;
    while (end < pattern_.size() && text::continuesCharacter(pattern_[end])) ++end;
    const std::string_view text =
        pattern_.substr(std::min(position_, pattern_.size()), end - position_);
    position_ = end - 1;
    return text;
  }

  void quoted() {
    const std::size_t end = std::min(pattern_.find('"', position_ + 1), pattern_.size());
    add(Token::Kind::kLiteral, std::string(pattern_.substr(position_ + 1, end - position_ - 1)));
    position_ = end;
  }

  bool exponent() {
    if (section_.hasExponent || position_ + 1 >= pattern_.size()) return false;
    const char sign = pattern_[position_ + 1];
    if (sign != '+' && sign != '-') return false;
    endWhole();
    section_.hasExponent = true;
    add(Token::Kind::kExponent, std::string(pattern_.substr(position_, 2)));
    ++position_;
    return true;
  }

  std::string_view pattern_;
  std::size_t position_ = 0;
  Section section_;
  bool afterPoint_ = false;
  int pendingCommas_ = 0;
};

}  // namespace

NumberSection parseNumberSection(std::string_view pattern) { return SectionParser(pattern).run(); }

}  // namespace jetsql
