// Tokens of Jet's SQL.
//
//   for (const Token& t : tokenize("SELECT [no], 기념일_년 FROM t WHERE d = #8/2/2013#")) ...
//
// Words are kept as written; keywords are told by context, since Jet takes many of them as names.
// Errors: 3075 (a text, name or date that does not end, a date that does not exist, a character
// that has no meaning).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "values/variant.h"

namespace jetsql {

enum class TokenKind { kEnd, kWord, kBracketed, kLiteral, kSymbol };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;          // word; bracketed name without brackets; symbol
  values::Variant value;     // Literal: Integer, Long, Double, Text or DateTime
  int literalOrdinal = -1;   // Literal: its place among the literals
  std::size_t position = 0;  // first byte in the text
  std::size_t end = 0;       // behind the last byte
};

// The last token is End.
[[nodiscard]] std::vector<Token> tokenize(std::string_view text);

// Whether the token is this word, written in any case: isWord(t, "SELECT").
[[nodiscard]] bool isWord(const Token& token, std::string_view upperCaseWord);
[[nodiscard]] bool isSymbol(const Token& token, std::string_view symbol);

}  // namespace jetsql
