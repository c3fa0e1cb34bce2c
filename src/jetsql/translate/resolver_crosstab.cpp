// TRANSFORM ... PIVOT: a grouping whose columns are the values of an expression.
#include <array>
#include <utility>

#include "jetsql/translate/resolver.h"
#include "jetsql/translate/resolver_expression.h"
#include "jetsql/translate/resolver_select.h"
#include "jetsql/translate/sql_writer.h"
#include "jetsql/translate/translation.h"
#include "jetsql/translate/typing.h"
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

typed::Query Resolver::crosstab(const Query& query, const QueryContext& context) {
  const Select& select = query.selects.front();
  if (select.groupBy.empty() || !containsAggregate(*query.crosstab->value)) {
    throw RuntimeError(error::kTransformSyntax,
                       "Syntax error in TRANSFORM statement: it needs an aggregate and GROUP BY.");
  }
  const bool around = std::exchange(parameterizes_, false);
  SelectResolver rows(*this, select, context.outer);
  const typed::Expression pivot = rows.plain(*query.crosstab->pivot);
  typed::Crosstab crosstab{rows.overGroups(*query.crosstab->value), {}};
  for (values::Variant& heading : headings(*query.crosstab, rows.select(), pivot)) {
    const values::VariantType type = heading.type();
    std::array<typed::Expression, 2> operands{pivot, {type, typed::Literal{heading, std::nullopt}}};
    makeComparable(operands, error::kCriteriaTypeMismatch);
    crosstab.cells.push_back({headingName(heading), operands[0], operands[1]});
  }
  parameterizes_ = around;

  typed::Query result;
  for (const typed::Output& output : rows.select().outputs) {
    result.columns.push_back({output.name, output.value.type()});
  }
  for (const auto& cell : crosstab.cells) {
    result.columns.push_back({cell.name, crosstab.value.type()});
  }
  result.selects.push_back(rows.take());
  result.crosstab = std::move(crosstab);
  return result;
}

// Those that the query lists, else the different values that the pivot has in the data.
std::vector<values::Variant> Resolver::headings(const Crosstab& crosstab, const typed::Select& rows,
                                                const typed::Expression& pivot) {
  std::vector<values::Variant> values;
  for (const ExpressionPtr& heading : crosstab.headings) {
    const auto* literal = heading->as<Literal>();
    if (literal == nullptr) {
      throw RuntimeError(error::kTransformSyntax,
                         "Syntax error in TRANSFORM statement: a heading of PIVOT is no constant.");
    }
    values.push_back(literal->value);
  }
  if (values.empty()) {
    failWhereUnknown();
    dataDependent_ = true;
    values = catalogue_.values(SqlWriter(catalogue_).distinctValues(rows, pivot));
  }
  if (values.size() + rows.outputs.size() > kMaxColumns) {
    throw RuntimeError(error::kTooManyFields, "Too many fields defined: the crosstab has " +
                                                  std::to_string(values.size()) + " headings.");
  }
  return values;
}

}  // namespace jetsql
