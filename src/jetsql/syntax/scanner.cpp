#include "jetsql/syntax/scanner.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

#include "jetsql/syntax/date_literal.h"
#include "text/ascii.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Every byte of a character beyond ASCII counts as part of a word, so Hangul names need no
// brackets.
bool isWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool isWordPart(char c) { return isWordStart(c) || isDigit(c) || c == '$' || c == '@'; }

[[noreturn]] void failSyntax(const std::string& what, std::string_view where) {
  throw RuntimeError(error::kExpressionSyntax,
                     what + " in query expression '" + std::string(where.substr(0, 80)) + "'.");
}

std::string unquote(std::string_view quoted) {
  std::string text;
  text.reserve(quoted.size());
  for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
    text += quoted[i];
    if (quoted[i] == quoted.front()) ++i;
  }
  return text;
}

values::Variant number(std::string_view digits) {
  std::int32_t whole = 0;
  const char* last = digits.data() + digits.size();
  const auto [stop, problem] = std::from_chars(digits.data(), last, whole);
  if (problem == std::errc() && stop == last) {
    if (whole <= std::numeric_limits<std::int16_t>::max()) {
      return values::Variant(static_cast<std::int16_t>(whole));
    }
    return {whole};
  }
  double value = 0;
  const auto read = std::from_chars(digits.data(), last, value);
  if (read.ec != std::errc()) failSyntax("Syntax error in number", digits);
  return {value};
}

// Words before which an & is no operator but begins a number.
constexpr std::string_view kBeforeOperand[] = {
    "SELECT", "DISTINCT", "DISTINCTROW", "ALL",   "WHERE",   "HAVING",    "ON",
    "BY",     "AND",      "OR",          "NOT",   "XOR",     "EQV",       "IMP",
    "MOD",    "IN",       "LIKE",        "ALIKE", "BETWEEN", "TRANSFORM", "PIVOT"};

// &H1F and &O17: 16 bits with a sign where they are enough, else 32.
values::Variant radixNumber(std::string_view token) {
  const bool isLong = token.back() == '&';
  const std::string_view digits = token.substr(2, token.size() - 2 - (isLong ? 1 : 0));
  std::uint32_t bits = 0;
  const char* last = digits.data() + digits.size();
  const int radix = token[1] == 'h' || token[1] == 'H' ? 16 : 8;
  if (std::from_chars(digits.data(), last, bits, radix).ptr != last) {
    failSyntax("Syntax error in number", token);
  }
  constexpr std::uint32_t kSmall = 0xFFFF;
  if (bits <= kSmall && !isLong) return static_cast<std::int16_t>(bits);
  return static_cast<std::int32_t>(bits);
}

}  // namespace

bool isWord(const Token& token, std::string_view upperCaseWord) {
  return token.kind == TokenKind::kWord && text::equalsIgnoringAsciiCase(token.text, upperCaseWord);
}

bool isSymbol(const Token& token, std::string_view symbol) {
  return token.kind == TokenKind::kSymbol && token.text == symbol;
}

bool Scanner::next() {
  const bool operand = operandFollows();
  const std::size_t previousEnd = end_;
  const TokenKind previous = kind_;
  while (end_ < text_.size() && isBlank(text_[end_])) ++end_;
  begin_ = end_;
  if (begin_ == text_.size()) {
    kind_ = TokenKind::kEnd;
    return false;
  }
  const char c = text_[begin_];
  // In t.5x the point belongs to the name before it, not to a number.
  const bool afterName =
      begin_ == previousEnd && (previous == TokenKind::kWord || previous == TokenKind::kBracketed);
  if (isWordStart(c)) {
    kind_ = TokenKind::kWord;
    while (isWordPart(at(end_))) ++end_;
  } else if (isDigit(c) || (c == '.' && isDigit(at(begin_ + 1)) && !afterName)) {
    scanNumber();
  } else if (c == '&' && operand && radixDigits() > 0) {
    scanRadixNumber();
  } else if (c == '\'' || c == '"') {
    scanQuoted(c);
  } else if (c == '#') {
    kind_ = TokenKind::kLiteral;
    scanUpTo('#');
  } else if (c == '[' || c == '`') {
    kind_ = TokenKind::kBracketed;
    scanUpTo(c == '[' ? ']' : c);
  } else {
    scanSymbol();
  }
  if (kind_ == TokenKind::kLiteral) ++literals_;
  return true;
}

Token Scanner::token() const {
  Token token{.kind = kind_, .text = written(), .position = begin_, .end = end_};
  if (kind_ == TokenKind::kBracketed) token.text = token.text.substr(1, token.text.size() - 2);
  if (kind_ == TokenKind::kLiteral) token.literal = literals_ - 1;
  return token;
}

// Whether what comes next begins an operand rather than continuing one.
bool Scanner::operandFollows() const {
  if (kind_ == TokenKind::kEnd) return true;
  if (kind_ == TokenKind::kSymbol) return written() != ")";
  return kind_ == TokenKind::kWord &&
         std::any_of(std::begin(kBeforeOperand), std::end(kBeforeOperand),
                     [this](auto word) { return text::equalsIgnoringAsciiCase(written(), word); });
}

// Digits after &H or &O at the beginning of the token.
std::size_t Scanner::radixDigits() const {
  const char radix = at(begin_ + 1);
  const bool isHexadecimal = radix == 'h' || radix == 'H';
  if (!isHexadecimal && radix != 'o' && radix != 'O') return 0;
  const std::string_view digits = isHexadecimal ? "0123456789abcdefABCDEF" : "01234567";
  const std::size_t end = text_.find_first_not_of(digits, begin_ + 2);
  return std::min(end, text_.size()) - begin_ - 2;
}

// An & right after the digits makes it a Long, where it is not followed by an operand.
void Scanner::scanRadixNumber() {
  kind_ = TokenKind::kLiteral;
  end_ = begin_ + 2 + radixDigits();
  if (at(end_) != '&') return;
  const std::size_t next = text_.find_first_not_of(" \t\r\n", end_ + 1);
  constexpr std::string_view kAfterOperand = "=<>+-*/\\^&),;";
  if (next == std::string_view::npos || kAfterOperand.find(text_[next]) != std::string_view::npos) {
    ++end_;
  }
}

void Scanner::scanQuoted(char quote) {
  kind_ = TokenKind::kLiteral;
  for (++end_; end_ < text_.size(); ++end_) {
    if (text_[end_] != quote) continue;
    ++end_;
    if (at(end_) != quote) return;
  }
  failSyntax("Syntax error in string", text_.substr(begin_));
}

void Scanner::scanUpTo(char last) {
  end_ = text_.find(last, begin_ + 1);
  if (end_ == std::string_view::npos) {
    end_ = text_.size();
    failSyntax(last == '#' ? "Syntax error in date" : "Invalid bracketing of name",
               text_.substr(begin_));
  }
  ++end_;
}

void Scanner::scanNumber() {
  kind_ = TokenKind::kLiteral;
  while (isDigit(at(end_))) ++end_;
  if (at(end_) == '.') {
    ++end_;
    while (isDigit(at(end_))) ++end_;
  }
  if (at(end_) != 'e' && at(end_) != 'E') return;
  std::size_t exponent = end_ + 1;
  if (at(exponent) == '+' || at(exponent) == '-') ++exponent;
  if (!isDigit(at(exponent))) return;
  while (isDigit(at(exponent))) ++exponent;
  end_ = exponent;
}

void Scanner::scanSymbol() {
  kind_ = TokenKind::kSymbol;
  const std::string_view two = text_.substr(begin_, 2);
  if (two == "<>" || two == "<=" || two == ">=") {
    end_ = begin_ + 2;
    return;
  }
  if (std::string_view("=<>+-*/\\^&(),;.!").find(text_[begin_]) == std::string_view::npos) {
    failSyntax("Syntax error (missing operator)", text_.substr(begin_));
  }
  end_ = begin_ + 1;
}

values::Variant Scanner::literal() const {
  const std::string_view token = written();
  if (token.front() == '\'' || token.front() == '"') return {unquote(token)};
  if (token.front() == '&') return radixNumber(token);
  if (token.front() != '#') return number(token);
  const auto date = parseDateLiteral(token.substr(1, token.size() - 2));
  if (!date) failSyntax("Syntax error in date", token);
  return {*date};
}

}  // namespace jetsql
