// TRANSFORM ... PIVOT: a grouping whose columns are the values of an expression.
#include <array>

#include "jetsql/translate/translator.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr std::size_t kMaxColumns = 255;
constexpr std::string_view kNullHeading = "<>";

std::string headingName(const values::Variant& heading) {
  if (heading.isNull()) return std::string(kNullHeading);
  if (const auto* yes = heading.as<bool>()) return *yes ? "-1" : "0";
  return toText(heading);
}

}  // namespace

NestedQuery Translator::crosstab(const Query& query, const Use& use) {
  const Crosstab& crosstab = *query.crosstab;
  const bool around = std::exchange(inlineLiterals_, true);
  if (query.selects.front().groupBy.empty() || !containsAggregate(*crosstab.value))
    throw RuntimeError(error::kTransformSyntax,
                       "Syntax error in TRANSFORM statement: it needs an aggregate and GROUP BY.");
  SelectPlan rows = plan(query.selects.front(), {use.outer, use.keepOrder, {}});
  Place plain{.scope = &rows.scope,
              .aliases = &query.selects.front(),
              .aggregateError = error::kAggregateInGroupBy};
  const Sql pivot = expression(*crosstab.pivot, plain);
  Place grouped{.scope = &rows.scope, .groups = &rows.groups, .aggregateError = 0};
  for (const values::Variant& heading : headings(crosstab, rows, pivot))
    rows.outputs.push_back(cell(crosstab, grouped, pivot, heading));
  inlineLiterals_ = around;

  NestedQuery result;
  std::vector<std::string> values;
  for (const Output& output : rows.outputs) {
    result.columns.push_back({output.name, output.value.type});
    values.push_back(valueOf(output.value));
  }
  result.sql = render(rows, values, true);
  return result;
}

std::vector<values::Variant> Translator::headings(const Crosstab& crosstab, const SelectPlan& plan,
                                                  const Sql& pivot) {
  std::vector<values::Variant> values;
  for (const ExpressionPtr& heading : crosstab.headings) {
    if (heading->kind != Expression::Kind::kLiteral)
      throw RuntimeError(error::kTransformSyntax,
                         "Syntax error in TRANSFORM statement: a heading of PIVOT is no constant.");
    values.push_back(heading->value);
  }
  if (values.empty()) {
    failWhereUnknown();
    dataDependent_ = true;
    Translation query;
    const std::string conditions = joined(plan.conditions, " AND ");
    query.sql = "SELECT DISTINCT " + collated(pivot) + " AS c0 FROM " + plan.from +
                (conditions.empty() ? "" : " WHERE " + conditions) + " ORDER BY 1";
    query.columns.push_back({"c0", pivot.type, std::nullopt, 0});
    query.computedCount = 1;
    query.exactTextOnly = true;
    values = schema_.values(query);
  }
  if (values.size() + plan.outputs.size() > kMaxColumns)
    throw RuntimeError(error::kTooManyFields, "Too many fields defined: the crosstab has " +
                                                  std::to_string(values.size()) + " headings.");
  return values;
}

// A group without a row for the heading has Null there, whatever the aggregate: a count as well.
Output Translator::cell(const Crosstab& crosstab, Place place, const Sql& pivot,
                        const values::Variant& heading) {
  std::array<Sql, 2> operands{pivot, constant(heading)};
  makeComparable(operands, error::kCriteriaTypeMismatch);
  place.filter = collated(operands[0]) + " IS " + operands[1].text;
  const Sql value = expression(*crosstab.value, place);
  Output output;
  output.name = headingName(heading);
  output.named = true;
  output.value = {
      "CASE WHEN COUNT(*) FILTER (WHERE " + place.filter + ") > 0 THEN " + valueOf(value) + " END",
      value.type};
  return output;
}

}  // namespace jetsql
