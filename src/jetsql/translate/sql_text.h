// Pieces of SQLite SQL with the Jet type that they stand for, and how they are made into one
// another: constants, conversions, calls, truth values.
//
//   Sql price{"t0.c3", VariantType::kCurrency};
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

struct Sql {
  std::string text;
  values::VariantType type = values::VariantType::kNull;
  bool truth = false;  // a Yes/No as SQLite computes it: 1 or 0
  // Of a + b + c: the operator and its operands. Chains are written flat, since SQLite's parser
  // takes only so much nesting.
  std::string_view chain{};
  std::vector<Sql> parts{};
  bool literal = false;  // a constant, and not Null
};

// " = ", " <= ", ... of a comparison.
[[nodiscard]] std::string_view comparisonSymbol(Operator operation);

[[nodiscard]] std::string quotedName(std::string_view name);  // "a""b"
[[nodiscard]] std::string quotedText(std::string_view text);  // 'it''s'
[[nodiscard]] std::string joined(std::span<const std::string> parts, std::string_view separator);

// A value as it is written into the SQL, in the encoding of its type.
[[nodiscard]] Sql constant(const values::Variant& value);

// Yes/No as -1 or 0; everything else as it is.
[[nodiscard]] std::string valueOf(const Sql& sql);

// What stands behind WHERE: anything but 0 is true. Error 3464 for a text.
[[nodiscard]] std::string truthOf(const Sql& sql);

// Text with the collation by which it is compared, ordered and grouped.
[[nodiscard]] std::string collated(const Sql& sql);

[[nodiscard]] Sql convertTo(const Sql& sql, values::VariantType type);

// jet_<name>('sig', arguments); the name may begin with op_.
[[nodiscard]] std::string callText(std::string_view name, values::VariantType result,
                                   std::span<const Sql> arguments);
[[nodiscard]] Sql unaryCall(std::string_view name, const Sql& operand);
[[nodiscard]] Sql binaryCall(std::string_view name, const Sql& left, const Sql& right);

// Operands of And or Or as SQLite has them.
[[nodiscard]] Sql truthChain(std::string_view keyword, const Sql& left, const Sql& right);

// Converts all of them so that SQLite's own comparison is Jet's. `mismatch` is the number of the
// error for a text beside a number or a date.
void makeComparable(std::span<Sql> operands, int mismatch);

// The type that holds all of them, which they become.
[[nodiscard]] values::VariantType makeAlike(std::span<Sql> values);

}  // namespace jetsql
