#include <algorithm>
#include <cmath>
#include <vector>

#include "jetsql/functions/decimal_digits.h"
#include "jetsql/functions/format_patterns.h"
#include "jetsql/functions/number_section.h"

namespace jetsql {
namespace {

using values::Variant;
using Token = NumberToken;
using Section = NumberSection;

std::string exponentText(const Section& section, const std::string& mark, int exponent) {
  std::string digits = std::to_string(std::abs(exponent));
  while (static_cast<int>(digits.size()) < section.exponentZeros) digits.insert(0, "0");
  const std::string sign = exponent < 0 ? "-" : (mark[1] == '+' ? "+" : "");
  return mark.substr(0, 1) + sign + digits;
}

// Whole digits from `first` (counted from the point to the left, units 1) down to `last`.
void appendWhole(std::string& text, const Digits& digits, bool grouped, int first, int last) {
  for (int place = first; place >= last; --place) {
    text += digits.at(-place);
    if (grouped && place > 1 && place % 3 == 1) text += ',';
  }
}

std::string render(const Section& section, Digits digits) {
  digits.exponent += digits.digits.empty() ? 0 : section.shift;
  int exponent = 0;
  if (section.hasExponent && !digits.digits.empty()) {
    exponent = digits.exponent - section.wholePlaces;
    digits.exponent = section.wholePlaces;
    digits.round(section.places);
    if (digits.exponent > section.wholePlaces) {  // 9.99 became 10.0
      ++exponent;
      --digits.exponent;
    }
  }
  digits.round(section.places);
  std::string text;
  int wholeLeft = section.wholePlaces;
  int place = 0;
  // More digits than places go before the first place.
  int pending = std::max(digits.exponent, section.wholePlaces);
  bool started = false;
  const int lastDigit = static_cast<int>(digits.digits.size()) - digits.exponent;
  bool afterPoint = false;
  for (const Token& token : section.tokens) {
    switch (token.kind) {
      case Token::Kind::kLiteral:
        text += token.text;
        break;
      case Token::Kind::kPoint:
        if (section.wholePlaces == 0 && digits.exponent > 0) {
          appendWhole(text, digits, false, digits.exponent, 1);
        }
        text += '.';
        afterPoint = true;
        break;
      case Token::Kind::kExponent:
        text += exponentText(section, token.text, exponent);
        break;
      default:
        if (afterPoint) {
          if (token.kind == Token::Kind::kZero || place < lastDigit) text += digits.at(place);
          ++place;
          break;
        }
        started = started || token.kind == Token::Kind::kZero || digits.exponent >= wholeLeft;
        if (started) appendWhole(text, digits, section.grouped, pending, wholeLeft);
        --wholeLeft;
        pending = wholeLeft;
    }
  }
  return text;
}

bool roundsToZero(const Section& section, Digits digits) {
  if (section.hasExponent) return digits.digits.empty();
  digits.exponent += section.shift;
  digits.round(section.places);
  return digits.digits.empty();
}

}  // namespace

std::vector<std::string_view> splitSections(std::string_view pattern) {
  std::vector<std::string_view> sections;
  std::size_t start = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '"') quoted = !quoted;
    if (pattern[i] == '\\') {
      ++i;
    } else if (pattern[i] == ';' && !quoted) {
      sections.push_back(pattern.substr(start, i - start));
      start = i + 1;
    }
  }
  sections.push_back(pattern.substr(start));
  return sections;
}

std::string formatNumber(const Variant& value, std::string_view pattern) {
  const std::vector<std::string_view> sections = splitSections(pattern);
  // An empty section counts as the first.
  const auto section = [&](std::size_t index) {
    return parseNumberSection(index < sections.size() && !sections[index].empty() ? sections[index]
                                                                                  : sections[0]);
  };
  if (value.isNull()) return sections.size() > 3 ? render(section(3), {}) : std::string();
  const Digits digits = digitsOf(value);
  if (digits.digits.empty()) return render(section(sections.size() > 2 ? 2 : 0), digits);
  if (!digits.negative) return render(section(0), digits);
  const bool own = sections.size() > 1 && !sections[1].empty();
  const Section used = section(1);
  return (own || roundsToZero(used, digits) ? "" : "-") + render(used, digits);
}

}  // namespace jetsql
