// The parser's position in a scanned text: the next token, and how it is taken or refused.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "jetsql/syntax/normalized_query.h"

namespace jetsql {

class TokenStream {
 public:
  // The query outlives the stream. Throws its fault, where it has one.
  explicit TokenStream(const NormalizedQuery& query);

  [[nodiscard]] const Token& peek(std::size_t ahead = 0) const {
    const std::size_t at = position_ + ahead;
    return at < query_.tokens.size() ? query_.tokens[at] : query_.tokens.back();
  }
  const Token& take() {
    const Token& token = peek();
    if (token.kind != TokenKind::kEnd) ++position_;
    return token;
  }

  [[nodiscard]] bool atWord(std::string_view word) const { return isWord(peek(), word); }
  [[nodiscard]] bool atAnyWord(std::initializer_list<std::string_view> words) const;
  [[nodiscard]] bool atSymbol(std::string_view symbol) const { return isSymbol(peek(), symbol); }
  [[nodiscard]] bool atName() const {
    return peek().kind == TokenKind::kWord || peek().kind == TokenKind::kBracketed;
  }
  [[nodiscard]] bool atEnd() const { return peek().kind == TokenKind::kEnd; }

  // The value of a token of the kind kLiteral.
  [[nodiscard]] const values::Variant& literal(const Token& token) const {
    return query_.literals[token.literal];
  }

  // Takes the token when it is the one asked for.
  bool acceptWord(std::string_view word);
  bool acceptSymbol(std::string_view symbol);

  // Takes it or fails with the given number.
  void expectWord(std::string_view word, int errorNumber);
  void expectSymbol(std::string_view symbol, int errorNumber);

  // The text from the token at `first` to the last one taken.
  [[nodiscard]] std::size_t position() const { return position_; }
  [[nodiscard]] std::string textSince(std::size_t first) const;
  [[nodiscard]] bool anyLiteralSince(std::size_t first) const;

  [[noreturn]] void fail(int errorNumber) const;

 private:
  const NormalizedQuery& query_;
  std::size_t position_ = 0;
};

}  // namespace jetsql
