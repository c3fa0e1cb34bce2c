// Cuts a query text into tokens without copying: what the lexer and the cache of prepared
// statements have in common, so that both see the same literals in the same order.
#pragma once

#include <cstddef>
#include <string_view>

#include "jetsql/syntax/lexer.h"
#include "values/variant.h"

namespace jetsql {

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  // To the next token; false at the end. Errors: 3075.
  bool next();

  [[nodiscard]] TokenKind kind() const { return kind_; }
  [[nodiscard]] std::size_t begin() const { return begin_; }
  [[nodiscard]] std::size_t end() const { return end_; }
  [[nodiscard]] std::string_view text() const { return text_.substr(begin_, end_ - begin_); }

  // Of a literal token. Error 3075 for a date that does not exist.
  [[nodiscard]] values::Variant literal() const;

 private:
  [[nodiscard]] char at(std::size_t position) const {
    return position < text_.size() ? text_[position] : '\0';
  }
  void scanQuoted(char quote);
  void scanUpTo(char last);
  void scanNumber();
  void scanSymbol();

  std::string_view text_;
  TokenKind kind_ = TokenKind::kEnd;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace jetsql
