// The words of a statement, as the central MySQL server reads them: backslash escapes on, a quote
// doubled inside quotes is one quote, double quotes are quotes too, # and "-- " open comments.
//
//   SqlLexer lexer("Values ('it\\'s', 7)");
//   for (Token token = lexer.next(); token.kind != TokenKind::kEnd; token = lexer.next()) ...
//
// Works on bytes of code page 949, none of whose second bytes is a quote or a backslash. Views
// point into the text. Never fails: what is left open is a token of its own.
#pragma once

#include <cstddef>
#include <string_view>

enum class TokenKind {
  kEnd,
  kString,      // with its quotes
  kOpenString,  // up to the end of the text
  kNumber,
  kWord,      // a keyword or a name; `quoted` ones too
  kVariable,  // @name, @'name'
  kOperator,  // + - * / % & | ^ ~ ! = < > and their pairs
  kOpen,      // (
  kClose,     // )
  kComma,
  kSemicolon,
  kOther,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string_view text;
  std::size_t at = 0;  // offset of the first byte
};

class SqlLexer {
 public:
  explicit SqlLexer(std::string_view text) : text_(text) {}

  [[nodiscard]] Token next();

 private:
  void skipBlanksAndComments();
  [[nodiscard]] Token token(TokenKind kind, std::size_t length);
  [[nodiscard]] Token quoted(TokenKind closed, char quote);
  [[nodiscard]] Token variable();
  [[nodiscard]] Token wordOrNumber();

  std::string_view text_;
  std::size_t at_ = 0;
};
