#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "jetsql/functions/format_patterns.h"
#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"
#include "text/utf8.h"
#include "values/decimal.h"
#include "values/number_text.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

// 0.d1d2d3... times 10^exponent; no digits for zero.
struct Digits {
  bool negative = false;
  std::string digits;
  int exponent = 0;

  [[nodiscard]] char at(int place) const {  // place 0: behind the point; -1: units
    const int index = exponent + place;
    return index < 0 || index >= static_cast<int>(digits.size())
               ? '0'
               : digits[static_cast<std::size_t>(index)];
  }

  void strip() {
    const std::size_t lead = std::min(digits.find_first_not_of('0'), digits.size());
    digits.erase(0, lead);
    exponent -= static_cast<int>(lead);
    while (!digits.empty() && digits.back() == '0') digits.pop_back();
    if (digits.empty()) exponent = 0;
  }

  // To `places` digits behind the point, halves away from zero.
  void round(int places) {
    const int kept = exponent + places;
    if (kept >= static_cast<int>(digits.size())) return;
    const bool up = kept >= 0 && digits[static_cast<std::size_t>(kept)] >= '5';
    digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (up) increment();
    strip();
  }

 private:
  // One more at the last kept place; none kept means the place before the first digit.
  void increment() {
    for (std::size_t i = digits.size(); i-- > 0;) {
      if (digits[i] != '9') {
        ++digits[i];
        return;
      }
      digits[i] = '0';
    }
    digits.insert(0, "1");
    ++exponent;
  }
};

// Numbers that are exact are taken exactly, others with 15 significant digits.
Digits digitsOf(const Variant& value) {
  Digits result;
  if (value.type() == VariantType::kCurrency || value.type() == VariantType::kNumeric) {
    const values::Numeric number = values::toNumeric(value);
    result.negative = number.negative;
    result.digits = values::decimalText(false, number.magnitude, 0);
    result.exponent = static_cast<int>(result.digits.size()) - number.scale;
  } else {
    const double number = toDouble(value);
    if (!std::isfinite(number)) throwOverflow();
    std::array<char, 32> text{};
    const char* end = std::to_chars(text.data(), text.data() + text.size(), std::abs(number),
                                    std::chars_format::scientific, 14)
                          .ptr;
    const char* mark = std::find(text.data(), const_cast<char*>(end), 'e');
    std::copy_if(static_cast<const char*>(text.data()), mark, std::back_inserter(result.digits),
                 [](char c) { return c != '.'; });
    std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, result.exponent);
    ++result.exponent;
    result.negative = number < 0;
  }
  result.strip();
  return result;
}

struct Token {
  enum class Kind { kLiteral, kZero, kDigit, kPoint, kExponent } kind;
  std::string text;  // of a literal; of an exponent its sign: "+" or "-", and E or e before it
};

struct Section {
  std::vector<Token> tokens;
  int wholePlaces = 0;  // 0 and # before the point
  int places = 0;       // 0 and # behind the point
  int exponentZeros = 0;
  bool grouped = false;
  bool hasExponent = false;
  int shift = 0;  // powers of ten: 2 for each %, -3 for each comma behind the last whole digit
};

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
        if (behindPoint_) return add(Token::Kind::kLiteral, ".");
        endWhole();
        behindPoint_ = true;
        return add(Token::Kind::kPoint);
      case ',':
        pendingCommas_ += section_.wholePlaces > 0 && !behindPoint_ ? 1 : 0;
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
    if (behindPoint_) {
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

  // What stands behind a backslash, whole where it has several bytes.
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
  bool behindPoint_ = false;
  int pendingCommas_ = 0;
};

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
  bool behindPoint = false;
  for (const Token& token : section.tokens) {
    switch (token.kind) {
      case Token::Kind::kLiteral:
        text += token.text;
        break;
      case Token::Kind::kPoint:
        if (section.wholePlaces == 0 && digits.exponent > 0)
          appendWhole(text, digits, false, digits.exponent, 1);
        text += '.';
        behindPoint = true;
        break;
      case Token::Kind::kExponent:
        text += exponentText(section, token.text, exponent);
        break;
      default:
        if (behindPoint) {
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
    if (pattern[i] == '\\')
      ++i;
    else if (pattern[i] == ';' && !quoted) {
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
    return SectionParser(index < sections.size() && !sections[index].empty() ? sections[index]
                                                                             : sections[0])
        .run();
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
