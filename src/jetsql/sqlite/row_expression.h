// A text made of the fields of one row, computed from the row's bytes without SQLite:
//
//   RowExpression day(expression, callbacks.environment);      // Left([date], 2) & '.' & ...
//   values::Variant value = day.value(row);
//
// For expressions that are computed for every row of a table, which SQLite does ten times as
// slowly. The value is the one that the expression's SQL gives. The environment outlives this.
// Errors: those of the functions, and the Jet engine's. Private to the room.
#pragma once

#include <utility>

#include "jet/rows/row.h"
#include "jetsql/functions/environment.h"
#include "jetsql/translate/typed_expression.h"

namespace jetsql {

class RowExpression {
 public:
  // Whether it is a text, and made of fields of one table, constants, functions and & alone.
  [[nodiscard]] static bool canCompute(const typed::Expression& expression);

  RowExpression(typed::Expression expression, const Environment& environment)
      : expression_(std::move(expression)), environment_(environment) {}

  // Text or Null.
  [[nodiscard]] values::Variant value(const jet::Row& row) const;

 private:
  typed::Expression expression_;
  const Environment& environment_;
};

}  // namespace jetsql
