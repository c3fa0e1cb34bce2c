// Cuts a query text into tokens without copying.
//
//   Scanner scanner("SELECT [no], 기념일_년 FROM t WHERE d = #8/2/2013#");
//   while (scanner.next()) use(scanner.token());
//
// Words are kept as written; keywords are recognised by context, since Jet takes many of them as
// names. Tokens refer to the text, which outlives them.
//
// Errors: 3075 (a text, name or date that does not end, a date that does not exist, a character
// that has no meaning).
#pragma once

#include <cstddef>
#include <string_view>

#include "values/variant.h"

namespace jetsql {

enum class TokenKind { kEnd, kWord, kBracketed, kLiteral, kSymbol };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string_view text;     // as written; a name in brackets or backticks without them
  std::size_t position = 0;  // of the first byte in the query text
  std::size_t end = 0;       // of the byte after the last
  std::size_t literal = 0;   // of a literal: its number among the literals of the text, from 0
};

// Whether the token is this word, written in any case: isWord(t, "SELECT").
[[nodiscard]] bool isWord(const Token& token, std::string_view upperCaseWord);
[[nodiscard]] bool isSymbol(const Token& token, std::string_view symbol);

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  // To the next token; false at the end of the text.
  bool next();

  [[nodiscard]] Token token() const;
  // Of a literal token: Integer, Long, Double, Text or DateTime.
  [[nodiscard]] values::Variant literal() const;

 private:
  [[nodiscard]] char at(std::size_t position) const {
    return position < text_.size() ? text_[position] : '\0';
  }
  [[nodiscard]] std::string_view written() const { return text_.substr(begin_, end_ - begin_); }
  [[nodiscard]] bool operandFollows() const;
  [[nodiscard]] std::size_t radixDigits() const;
  void scanRadixNumber();
  void scanQuoted(char quote);
  void scanUpTo(char last);
  void scanNumber();
  void scanSymbol();

  std::string_view text_;
  TokenKind kind_ = TokenKind::kEnd;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t literals_ = 0;  // up to and with the current token
};

}  // namespace jetsql
