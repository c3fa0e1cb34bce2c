// Pieces of SQLite SQL with the Jet type that they stand for, and how they are made into one
// another: constants, conversions, calls, truth values.
//
//   TypedSql price{"t0.c3", VariantType::kCurrency};
//   convertTo(price, VariantType::kDouble).text     // jet_convert('dc', t0.c3)
//
// A comparison in SQLite is 1 or 0, a Yes/No field in Jet -1 or 0: `truth` tells the two apart.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/functions/functions.h"
#include "jetsql/syntax/ast.h"
#include "values/variant.h"

namespace jetsql {

struct TypedSql {
  std::string text;
  values::VariantType type = values::VariantType::kNull;
  bool truth = false;  // a Yes/No as SQLite computes it: 1 or 0
  // Of a + b + c: the operator and its operands. Chains are written flat, since SQLite's parser
  // takes only so much nesting.
  std::string_view chain{};
  std::vector<TypedSql> parts{};
  bool literal = false;  // a constant, and not Null
};

// " = ", " <= ", ... of a comparison.
[[nodiscard]] std::string_view comparisonSymbol(Operator operation);

[[nodiscard]] std::string quotedName(std::string_view name);  // "a""b"
[[nodiscard]] std::string quotedText(std::string_view text);  // 'it''s'
[[nodiscard]] std::string joined(std::span<const std::string> parts, std::string_view separator);
// " WHERE a", or nothing without a text.
[[nodiscard]] std::string clause(std::string_view keyword, std::string_view text);

// A value as it is written into the SQL, in the encoding of its type.
[[nodiscard]] TypedSql constant(const values::Variant& value);

// "(text)", a truth value.
[[nodiscard]] TypedSql truth(const std::string& text);

// Yes/No as -1 or 0; everything else as it is.
[[nodiscard]] std::string valueOf(const TypedSql& sql);

// As a condition: anything but 0 is true.
[[nodiscard]] std::string conditionOf(const TypedSql& sql);

// Text with the collation by which it is compared, ordered and grouped.
[[nodiscard]] std::string collated(const TypedSql& sql);

[[nodiscard]] TypedSql convertTo(const TypedSql& sql, values::VariantType type);

// jet_<name>('sig', arguments); the name may begin with op_.
[[nodiscard]] std::string callText(std::string_view name, values::VariantType result,
                                   std::span<const TypedSql> arguments);
[[nodiscard]] TypedSql unaryCall(std::string_view name, values::VariantType result,
                                 const TypedSql& operand);
// A left operand that is itself a call of the operator is continued.
[[nodiscard]] TypedSql binaryCall(std::string_view name, values::VariantType result,
                                  const TypedSql& left, const TypedSql& right);

// The value, or its error as a value; see deferred_error.h.
[[nodiscard]] std::string guardedText(const std::string& value);

// Operands of And or Or as SQLite has them.
[[nodiscard]] TypedSql truthChain(std::string_view keyword, const TypedSql& left,
                                  const TypedSql& right);

}  // namespace jetsql
