// plainNumber and parseNumber: numbers as the platform's conversions read them on a Korean system.
#include <charconv>
#include <limits>

#include "text/ascii.h"
#include "values/number_text.h"

namespace values {
namespace {

constexpr std::string_view kWon = "₩";

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// What may stand around the digits: blanks, one sign before or after, one currency sign,
// parentheses for a negative number.
class NumberParser {
 public:
  explicit NumberParser(std::string_view text) : rest_(text) {}

  std::optional<std::string> run() {
    while (readBlank() || readSign() || readCurrency() || readOpening()) {
    }
    if (!readDigits() || !readExponent()) return std::nullopt;
    while (readBlank() || readSign() || readCurrency() || readClosing()) {
    }
    if (!rest_.empty() || isOpen_) return std::nullopt;
    return isNegative_ ? '-' + number_ : number_;
  }

 private:
  bool take(std::string_view mark) {
    if (!rest_.starts_with(mark)) return false;
    rest_.remove_prefix(mark.size());
    return true;
  }

  bool readBlank() {
    if (rest_.empty() || !isBlank(rest_.front())) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool readSign() {
    if (hasSign_ || rest_.empty() || (rest_.front() != '-' && rest_.front() != '+')) return false;
    hasSign_ = true;
    isNegative_ = rest_.front() == '-';
    rest_.remove_prefix(1);
    return true;
  }

  bool readCurrency() { return !hasCurrency_ && (hasCurrency_ = take(kWon)); }

  bool readOpening() {
    if (hasSign_ || !take("(")) return false;
    return hasSign_ = isNegative_ = isOpen_ = true;
  }

  bool readClosing() {
    if (!isOpen_ || !take(")")) return false;
    isOpen_ = false;
    return true;
  }

  // Commas may stand anywhere after the first digit of the whole part.
  bool readDigits() {
    bool any = false;
    bool hasPoint = false;
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      const char c = rest_.front();
      if (text::isAsciiDigit(c)) {
        number_ += c;
        any = true;
      } else if (c == '.' && !hasPoint) {
        number_ += c;
        hasPoint = true;
      } else if (c != ',' || !any || hasPoint) {
        break;
      }
    }
    return any;
  }

  bool readExponent() {
    if (!take("e") && !take("E")) return true;
    number_ += 'e';
    if (rest_.starts_with('-') || rest_.starts_with('+')) {
      if (rest_.front() == '-') number_ += '-';
      rest_.remove_prefix(1);
    }
    const std::size_t before = number_.size();
    for (; !rest_.empty() && text::isAsciiDigit(rest_.front()); rest_.remove_prefix(1)) {
      number_ += rest_.front();
    }
    return number_.size() > before;
  }

  std::string_view rest_;
  std::string number_;
  bool hasSign_ = false;
  bool isNegative_ = false;
  bool hasCurrency_ = false;
  bool isOpen_ = false;
};

// &H1F and &O17, of at most 32 bits with a sign.
std::optional<double> parseRadix(std::string_view text) {
  if (text.size() < 3 || text[0] != '&') return std::nullopt;
  const char radix = text::lowerAscii(text[1]);
  if (radix != 'h' && radix != 'o') return std::nullopt;
  std::uint32_t bits = 0;
  const auto [end, code] =
      std::from_chars(text.data() + 2, text.data() + text.size(), bits, radix == 'h' ? 16 : 8);
  if (code != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return static_cast<double>(static_cast<std::int32_t>(bits));
}

// Of a plain number beyond the range of doubles: infinity or zero.
double beyondRange(std::string_view plain) {
  if (plain.find("e-") != std::string_view::npos) return 0;
  const double infinity = std::numeric_limits<double>::infinity();
  return plain.starts_with('-') ? -infinity : infinity;
}

}  // namespace

std::optional<std::string> plainNumber(std::string_view text) { return NumberParser(text).run(); }

std::optional<double> parseNumber(std::string_view text) {
  double number = 0;
  // Nearly every text is a plain number already.
  if (!text.empty() && text::isAsciiDigit(text.front())) {
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (code == std::errc() && end == text.data() + text.size()) return number;
  }
  if (const auto radix = parseRadix(text::trimBlanks(text))) return radix;
  const auto plain = plainNumber(text);
  if (!plain) return std::nullopt;
  const auto code = std::from_chars(plain->data(), plain->data() + plain->size(), number).ec;
  return code == std::errc::result_out_of_range ? beyondRange(*plain) : number;
}

}  // namespace values
