// A text made of the fields of one row, computed from the row's bytes without SQLite:
//
//   RowExpression day(expression, callbacks.environment);      // Left([date], 2) & '.' & ...
//   values::Variant value = day.value(row);
//
// For expressions that are computed for every row of a table, which SQLite does ten times as
// slowly. The value is the one that the expression's SQL gives. The environment outlives this.
// Errors: those of the functions, and the Jet engine's. Private to the room.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "jet/rows/row.h"
#include "jetsql/functions/environment.h"
#include "jetsql/translate/typed_expression.h"

namespace jetsql {

// A text put together from constants, texts of the row and parts of these: the form of most keys.
class RowText {
 public:
  struct Part {  // of a text, in characters
    std::size_t start = 0;
    std::size_t count = 0;
  };
  struct Piece {
    std::optional<std::size_t> column = {};  // else a constant:
    std::string text = {};
    std::optional<Part> part = {};
  };

  // Nothing where the expression has another form.
  [[nodiscard]] static std::optional<RowText> of(const typed::Expression& expression);

  // False for Null, which it is where there is neither a constant nor a text that is not Null.
  [[nodiscard]] bool append(const jet::Row& row, std::string& to) const;

 private:
  explicit RowText(std::vector<Piece> pieces) : pieces_(std::move(pieces)) {}

  std::vector<Piece> pieces_;
};

class RowExpression {
 public:
  // Whether it is a text, and made of fields of one table, constants, functions and & alone.
  [[nodiscard]] static bool canCompute(const typed::Expression& expression);

  RowExpression(typed::Expression expression, const Environment& environment)
      : expression_(std::move(expression)),
        text_(RowText::of(expression_)),
        environment_(environment) {}

  // Text or Null.
  [[nodiscard]] values::Variant value(const jet::Row& row) const;

 private:
  typed::Expression expression_;
  std::optional<RowText> text_;  // of the same
  const Environment& environment_;
};

}  // namespace jetsql
