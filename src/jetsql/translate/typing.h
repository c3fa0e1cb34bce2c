// Typed expressions made of others: where Jet converts values before it compares or unites them,
// conversions are put in, so that SQLite's own comparison is Jet's.
//
//   comparison(Operator::kEqual, price /* Currency */, seven /* Integer */, mismatch)
//       price = Conversion(seven) to Currency; a Yes/No
#pragma once

#include <span>

#include "jetsql/translate/typed_expression.h"

namespace jetsql {

// The expression itself where it has the type.
[[nodiscard]] typed::Expression converted(typed::Expression expression, values::VariantType type);

// Converts all of them so that they compare. `mismatch` is the number of the error for a text
// beside a number or a date: 3464 or 3615.
void makeComparable(std::span<typed::Expression> operands, int mismatch);

// Converts all of them to the type that holds each, and gives that.
values::VariantType unifyTypes(std::span<typed::Expression> operands);

[[nodiscard]] bool isComparison(Operator operation);  // = <> < <= > >=
[[nodiscard]] typed::Expression comparison(Operator operation, typed::Expression left,
                                           typed::Expression right, int mismatch);
[[nodiscard]] typed::Expression between(typed::Expression value, typed::Expression low,
                                        typed::Expression high, bool negated, int mismatch);
[[nodiscard]] typed::Expression inList(typed::Expression value,
                                       std::span<const typed::Expression> items, bool negated,
                                       int mismatch);

// The operand of conversions, as the query has it.
[[nodiscard]] typed::Expression unconverted(typed::Expression expression);

// Whether the expression can stand as a condition: error 3464 for a text.
void requireCondition(const typed::Expression& expression);

}  // namespace jetsql
