// Expressions over whole numbers, computed from rows of Jet tables without SQLite: Yes/No, Byte,
// Integer, Long, and Currency in ten-thousandths. They give what the SQL written for the same typed
// expression gives.
//
//   WholeCompiler compiler(from);
//   WholeExpression price = compiler.compile(expression);   // empty: not of this kind
//   const WholeValue value = price({{&item, &menu}, parameters});
//
// Fields, literals, + and -, comparisons (of dates and doubles, too, and whether texts are equal),
// And, Or, Not, Is Null and IIf are compiled; anything else, such as a division, is not.
//
// Errors: NotWhole where a result leaves the range of its type, or a parameter has another type
// than its literal: the query is SQLite's then. 3049 as jet/rows/row.h. Private to the room.
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/rows/row.h"
#include "jetsql/sqlite/flat_from.h"
#include "jetsql/sqlite/value_encoding.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

class NotWhole : public std::exception {};

struct WholeValue {
  std::int64_t number = 0;
  bool isNull = true;

  [[nodiscard]] bool isTrue() const { return !isNull && number != 0; }
};

// What an expression is computed from. The parameters are those of WholeCompiler::parameters().
struct JoinedRow {
  std::array<const jet::Row*, 2> rows{};  // nullptr: the empty side of an outer join
  std::span<const EncodedValue> parameters;
  std::optional<std::size_t> joinedNumber = {};  // of rows[1]: the same whenever it is that row
  std::span<const EncodedValue> grouped = {};    // outputs of FlatFrom::grouped, instead of rows
};

// Empty, or computes a value; fields and constants, as most operands are, without a call.
class WholeExpression {
 public:
  WholeExpression() = default;
  explicit WholeExpression(const TableField& field) : kind_(Kind::kField), field_(field) {}
  explicit WholeExpression(const WholeValue& value) : kind_(Kind::kConstant), constant_(value) {}
  template <std::invocable<const JoinedRow&> Function>
  requires(!std::same_as<Function, WholeExpression>) WholeExpression(Function function)
      : kind_(Kind::kFunction), function_(std::move(function)) {}

  explicit operator bool() const { return kind_ != Kind::kNone; }

  WholeValue operator()(const JoinedRow& row) const {
    if (kind_ == Kind::kFunction) return function_(row);
    if (kind_ == Kind::kConstant) return constant_;
    const jet::Row* from = row.rows[field_.table];
    if (from == nullptr || from->isNull(field_.column)) return {};
    return {from->wholeNumber(field_.column), false};
  }

 private:
  enum class Kind : unsigned char { kNone, kField, kConstant, kFunction };
  Kind kind_ = Kind::kNone;
  TableField field_;
  WholeValue constant_;
  std::function<WholeValue(const JoinedRow&)> function_;
};

using RealExpression = std::function<std::optional<double>(const JoinedRow&)>;
// Nothing for Null. The text may lie in `scratch`, in the row's page or in a parameter.
using TextExpression =
    std::function<std::optional<std::string_view>(const JoinedRow&, std::string& scratch)>;

// The text of a field or, where there is a count, so many of its characters from `start` on.
struct TextPart {
  std::optional<TableField> field;
  WholeExpression start;
  WholeExpression count;
  TextExpression text;  // of what is no field
};

[[nodiscard]] bool isWholeType(values::VariantType type);  // one of those above

class WholeCompiler {
 public:
  // Keeps a reference.
  explicit WholeCompiler(const FlatFrom& from) : from_(from) {}

  [[nodiscard]] WholeExpression compile(const typed::Expression& expression);
  // Single, Double and date: fields and literals.
  [[nodiscard]] RealExpression compileReal(const typed::Expression& expression);
  // Fields, literals, & and the functions Left and Mid.
  [[nodiscard]] TextExpression compileText(const typed::Expression& expression);

  // The field of a table that the expression is, seen through the queries.
  [[nodiscard]] std::optional<TableField> fieldOf(const typed::Expression& expression) const;

  // Numbers of the statement's parameters in the order in which compiled expressions expect them.
  [[nodiscard]] const std::vector<std::size_t>& parameters() const { return parameters_; }
  // The place of one among them, which is added where it is not there.
  [[nodiscard]] std::size_t placeOf(std::size_t parameter);

  // A field of a query as what it is made of, any other expression as it is.
  [[nodiscard]] typed::Expression seenThrough(const typed::Expression& expression) const;

  // The output of FlatFrom::grouped that the expression is.
  [[nodiscard]] std::optional<std::size_t> outputOf(const typed::Expression& expression) const;

 private:
  // Empty for a kind of node that is not compiled.
  template <typename Node>
  [[nodiscard]] WholeExpression node(const Node&, values::VariantType) {
    return {};
  }
  [[nodiscard]] WholeExpression node(const typed::Literal& literal, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Field& field, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Conversion& conversion, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Operation& operation, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Not& negation, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Junction& junction, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Comparison& test, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::IsNull& test, values::VariantType type);
  [[nodiscard]] WholeExpression node(const typed::Case& choice, values::VariantType type);
  [[nodiscard]] WholeExpression textEquality(const typed::Comparison& test);
  [[nodiscard]] TextExpression textLiteral(const typed::Literal& literal);
  // Adds what & puts together; false where a part is not compiled.
  [[nodiscard]] bool addParts(const typed::Expression& seen, std::vector<TextPart>& parts);
  // Of Left(text, n), Mid(text, start, n) or another text.
  [[nodiscard]] std::optional<TextPart> textPart(const typed::Expression& seen);
  // As an operand of the type: whole numbers become amounts where that is Currency.
  [[nodiscard]] WholeExpression operand(const typed::Expression& expression,
                                        values::VariantType type);

  const FlatFrom& from_;
  std::vector<std::size_t> parameters_;
};

}  // namespace jetsql
