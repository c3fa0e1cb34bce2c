// Calls of functions and aggregates.
#include <algorithm>
#include <array>

#include "jetsql/functions/value_types.h"
#include "jetsql/translate/translator.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::VariantType;

constexpr std::array<std::string_view, 11> kAggregates{
    "sum", "avg", "count", "min", "max", "first", "last", "stdev", "stdevp", "var", "varp"};

// Functions of which only the argument asked for may be computed: IIf(n = 0, 0, x / n).
constexpr std::array<std::string_view, 4> kChoices{"iif", "switch", "choose", "isnull"};

template <std::size_t n>
bool isOneOf(const std::array<std::string_view, n>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string functionName(const Expression& call) {
  std::string name = text::lowerCase(call.path.front());
  if (!name.empty() && name.back() == '$') name.pop_back();
  return name;
}

[[noreturn]] void failArgumentCount(const Expression& call) {
  throw RuntimeError(error::kExpressionSyntax,
                     "Wrong number of arguments used with function in query expression '" +
                         call.path.front() + "'.");
}

VariantType averageType(VariantType type) {
  return type == VariantType::kCurrency || type == VariantType::kNumeric ? type
                                                                         : VariantType::kDouble;
}

// Whole numbers of 32 bits are summed up as Double, as the engine does; SQLite adds them exactly.
Sql sumOf(const Sql& argument, const std::string& filter) {
  const VariantType type = argument.type;
  if (type == VariantType::kCurrency) return {"SUM(" + argument.text + ")" + filter, type};
  if (type == VariantType::kNumeric)
    return {callText("sum", type, std::array{argument}) + filter, type};
  if (isWholeNumber(type) && type != VariantType::kLong)
    return {callText("sum", VariantType::kLong, std::array{argument}) + filter, VariantType::kLong};
  return {"CAST(SUM(" + valueOf(argument) + ")" + filter + " AS REAL)", VariantType::kDouble};
}

}  // namespace

bool isAggregateCall(const Expression& expression) {
  return expression.kind == Expression::Kind::kCall &&
         isOneOf(kAggregates, functionName(expression));
}

bool containsAggregate(const Expression& expression) {
  return isAggregateCall(expression) ||
         std::any_of(expression.arguments.begin(), expression.arguments.end(),
                     [](const ExpressionPtr& argument) { return containsAggregate(*argument); });
}

std::vector<Sql> Translator::arguments(const Expression& expression, Place& place) {
  std::vector<Sql> result;
  result.reserve(expression.arguments.size());
  for (const ExpressionPtr& argument : expression.arguments)
    result.push_back(this->expression(*argument, place));
  return result;
}

Sql Translator::call(const Expression& expression, Place& place) {
  const std::string name = functionName(expression);
  if (isAggregateCall(expression)) return aggregate(expression, place);
  const Function* function = findFunction(name);
  if (function == nullptr)
    throw RuntimeError(error::kUnknownFunction,
                       "Undefined function '" + expression.path.front() + "' in expression.");
  const int count = static_cast<int>(expression.arguments.size());
  if (count < function->minArguments || count > function->maxArguments)
    failArgumentCount(expression);
  if (isOneOf(kChoices, name)) return choice(expression, place);
  const std::vector<Sql> values = arguments(expression, place);
  std::vector<VariantType> types;
  types.reserve(values.size());
  for (const Sql& value : values) types.push_back(value.type);
  const VariantType type = function->resultType(types);
  return {callText(name, type, values), type};
}

Sql Translator::choice(const Expression& expression, Place& place) {
  const std::string name = functionName(expression);
  std::vector<Sql> values = arguments(expression, place);
  if (name == "isnull") return {"(" + valueOf(values[0]) + " IS NULL)", VariantType::kYesNo, true};
  if (name == "iif") {
    const VariantType type = makeAlike(std::span(values).subspan(1));
    return {"CASE WHEN " + truthOf(values[0]) + " THEN " + values[1].text + " ELSE " +
                values[2].text + " END",
            type};
  }
  std::vector<Sql> results;
  std::string sql = "CASE";
  if (name == "choose") {
    results.assign(values.begin() + 1, values.end());
    sql += " " + convertTo(values[0], VariantType::kLong).text;
  } else {
    if (values.size() % 2 != 0) failArgumentCount(expression);
    for (std::size_t i = 1; i < values.size(); i += 2) results.push_back(values[i]);
  }
  const VariantType type = makeAlike(results);
  for (std::size_t i = 0; i < results.size(); ++i)
    sql += " WHEN " + (name == "choose" ? std::to_string(i + 1) : truthOf(values[2 * i])) +
           " THEN " + results[i].text;
  return {sql + " END", type};
}

Sql Translator::aggregate(const Expression& expression, Place& place) {
  const std::string name = functionName(expression);
  if (place.aggregateError != 0)
    throw RuntimeError(place.aggregateError, "Cannot have aggregate function in this place (" +
                                                 expression.path.front() + ").");
  if (expression.arguments.size() != 1) failArgumentCount(expression);
  const std::string filter = place.filter.empty() ? "" : " FILTER (WHERE " + place.filter + ")";
  if (expression.arguments.front()->kind == Expression::Kind::kStar) {
    if (name != "count") failArgumentCount(expression);
    return {"COUNT(*)" + filter, VariantType::kLong};
  }
  Place inside = place;
  inside.groups = nullptr;
  inside.filter.clear();
  inside.aggregateError = error::kAggregateInAggregate;
  const Sql value = this->expression(*expression.arguments.front(), inside);
  const Sql argument{valueOf(value), value.type};
  if (name == "count") return {"COUNT(" + argument.text + ")" + filter, VariantType::kLong};
  if (name == "min" || name == "max")
    return {name + "(" + collated(argument) + ")" + filter, argument.type};
  if (name == "first" || name == "last")
    return {callText(name, argument.type, std::array{argument}) + filter, argument.type};
  if (argument.type == VariantType::kText || argument.type == VariantType::kBinary)
    throw RuntimeError(error::kCriteriaTypeMismatch, "Data type mismatch in criteria expression.");
  if (name == "sum") return sumOf(argument, filter);
  const VariantType type = name == "avg" ? averageType(argument.type) : VariantType::kDouble;
  return {callText(name, type, std::array{argument}) + filter, type};
}

}  // namespace jetsql
