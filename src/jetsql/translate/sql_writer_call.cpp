// Calls of functions and aggregates.
#include <array>

#include "jetsql/functions/value_types.h"
#include "jetsql/translate/sql_writer_expression.h"

namespace jetsql {
namespace {

using values::VariantType;

// SQLite adds whole numbers of 32 bits exactly; Jet's sum of them is a Double.
TypedSql sumOf(const TypedSql& argument, VariantType type, const std::string& filter) {
  if (type == VariantType::kDouble) {
    return {"CAST(SUM(" + argument.text + ")" + filter + " AS REAL)", type};
  }
  if (type == VariantType::kCurrency) return {"SUM(" + argument.text + ")" + filter, type};
  return {callText("sum", type, std::array{argument}) + filter, type};
}

}  // namespace

// True for an error in the argument, which is computed in a guard of its own.
TypedSql ExpressionWriter::isError(const typed::Expression& expression) const {
  const ExpressionWriter inside(writer_, filter_, Constants::kEveryRow);
  return {"jet_is_error(" + guardedText(inside.value(expression).text) + ")", VariantType::kYesNo};
}

TypedSql ExpressionWriter::node(const typed::Call& call, Type type) const {
  if (call.function->name == "IsError") return isError(call.arguments.front());
  std::vector<TypedSql> arguments;
  arguments.reserve(call.arguments.size());
  for (const typed::Expression& argument : call.arguments) arguments.push_back(write(argument));
  return {callText(call.function->name, type, arguments), type};
}

TypedSql ExpressionWriter::node(const typed::Case& choice, Type type) const {
  std::string sql = "CASE";
  if (choice.selector) sql += " " + value(choice.selector).text;
  for (const typed::Case::Branch& branch : choice.branches) {
    sql += " WHEN " + conditionOf(write(branch.when)) + " THEN " + value(branch.then).text;
  }
  if (choice.otherwise) sql += " ELSE " + value(choice.otherwise).text;
  return {sql + " END", type};
}

TypedSql ExpressionWriter::node(const typed::Aggregate& aggregate, Type type) const {
  using Kind = typed::AggregateKind;
  const std::string filter = filter_.empty() ? "" : " FILTER (WHERE " + filter_ + ")";
  if (!aggregate.argument) return {"COUNT(*)" + filter, type};
  const TypedSql argument = value(aggregate.argument);
  const std::string_view name = typed::kAggregateNames[static_cast<std::size_t>(aggregate.kind)];
  switch (aggregate.kind) {
    case Kind::kCount:
      return {"COUNT(" + argument.text + ")" + filter, type};
    case Kind::kMin:
    case Kind::kMax:
      return {std::string(name) + "(" + collated(argument) + ")" + filter, type};
    case Kind::kSum:
      return sumOf(argument, type, filter);
    default:
      return {callText(name, type, std::array{argument}) + filter, type};
  }
}

}  // namespace jetsql
