#include "sql_lexer.h"

#include <algorithm>

#include "text/ascii.h"

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Names hold letters, digits, _ and $, and everything outside ASCII.
bool isWordPart(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool isQuote(char c) { return c == '\'' || c == '"' || c == '`'; }

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr std::string_view kOperatorCharacters = "+-*/%&|^~!=<>";
constexpr std::string_view kPairs[] = {"<=>", "<<", ">>", "<=", ">=", "<>", "!=", "||", "&&"};

}  // namespace

Token SqlLexer::token(TokenKind kind, std::size_t length) {
  const Token token{kind, text_.substr(at_, length), at_};
  at_ += token.text.size();
  return token;
}

void SqlLexer::skipBlanksAndComments() {
  while (at_ < text_.size()) {
    const std::string_view rest = text_.substr(at_);
    if (isBlank(rest[0])) {
      ++at_;
    } else if (rest[0] == '#' ||
               (rest.starts_with("--") && (rest.size() == 2 || isBlank(rest[2])))) {
      at_ = std::min(text_.size(), text_.find('\n', at_));
    } else if (const std::size_t end = rest.find("*/", 2);
               rest.starts_with("/*") && end != std::string_view::npos) {
      at_ += end + 2;
    } else {
      return;
    }
  }
}

Token SqlLexer::quoted(TokenKind closed, char quote) {
  const bool escapes = quote != '`';
  for (std::size_t i = at_ + 1; i < text_.size(); ++i) {
    if (escapes && text_[i] == '\\') {
      ++i;
    } else if (text_[i] == quote) {
      if (i + 1 < text_.size() && text_[i + 1] == quote) {
        ++i;
      } else {
        return token(closed, i + 1 - at_);
      }
    }
  }
  return token(TokenKind::kOpenString, text_.size() - at_);
}

Token SqlLexer::variable() {
  SqlLexer rest(text_);
  rest.at_ = at_ + 1;
  const bool nameFollows =
      rest.at_ < text_.size() && (isWordPart(text_[rest.at_]) || isQuote(text_[rest.at_]));
  if (!nameFollows) return token(TokenKind::kOther, 1);
  const Token name = rest.next();
  return token(name.kind == TokenKind::kOpenString ? name.kind : TokenKind::kVariable,
               name.text.size() + 1);
}

// Digits followed by letters are a name, unless they are an exponent, a fraction or 0x.
Token SqlLexer::wordOrNumber() {
  std::size_t end = at_;
  if (text_.substr(at_).starts_with("0x")) {
    end = std::min(text_.find_first_not_of("0123456789abcdefABCDEF", at_ + 2), text_.size());
    const bool whole = end > at_ + 2 && (end == text_.size() || !isWordPart(text_[end]));
    if (whole) return token(TokenKind::kNumber, end - at_);
    end = at_;
  }
  const auto skipDigits = [&] {
    while (end < text_.size() && isDigit(text_[end])) ++end;
  };
  skipDigits();
  bool number = end > at_;
  const bool digitBehind = end + 1 < text_.size() && isDigit(text_[end + 1]);
  if (end < text_.size() && text_[end] == '.' && (number || digitBehind)) {
    number = true;
    ++end;
    skipDigits();
  }
  if (number && end < text_.size() && text::lowerAscii(text_[end]) == 'e') {
    std::size_t digits = end + 1;
    if (digits < text_.size() && (text_[digits] == '+' || text_[digits] == '-')) ++digits;
    if (digits < text_.size() && isDigit(text_[digits])) {
      end = digits;
      skipDigits();
    }
  }
  if (number && (end == text_.size() || !isWordPart(text_[end]))) {
    return token(TokenKind::kNumber, end - at_);
  }
  end = at_;
  while (end < text_.size() && isWordPart(text_[end])) ++end;
  return end == at_ ? token(TokenKind::kOther, 1) : token(TokenKind::kWord, end - at_);
}

Token SqlLexer::next() {
  skipBlanksAndComments();
  if (at_ >= text_.size()) return token(TokenKind::kEnd, 0);
  switch (const char c = text_[at_]) {
    case '\'':
    case '"':
      return quoted(TokenKind::kString, c);
    case '`':
      return quoted(TokenKind::kWord, c);
    case '@':
      return variable();
    case '(':
      return token(TokenKind::kOpen, 1);
    case ')':
      return token(TokenKind::kClose, 1);
    case ',':
      return token(TokenKind::kComma, 1);
    case ';':
      return token(TokenKind::kSemicolon, 1);
    default:
      break;
  }
  for (const std::string_view pair : kPairs) {
    if (text_.substr(at_).starts_with(pair)) return token(TokenKind::kOperator, pair.size());
  }
  if (kOperatorCharacters.find(text_[at_]) != std::string_view::npos) {
    return token(TokenKind::kOperator, 1);
  }
  return wordOrNumber();
}
