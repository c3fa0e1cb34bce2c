// Conditions on computed columns of a saved query, such as a day put together from parts of a text:
// the rows are found by a table of the expression's values, where the schema keeps one, and the
// columns take their values from there.
#include <algorithm>
#include <array>

#include "jetsql/functions/text_compare.h"
#include "jetsql/translate/translator.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using Kind = Expression::Kind;

// The one table that an expression reads, and which of its columns.
struct Reads {
  std::optional<std::size_t> source;
  std::vector<std::size_t> columns;
};

// False for an expression that is not made of fields of one table and constants alone.
bool collect(const Expression& expression, Scope& scope, Reads& reads) {
  switch (expression.kind) {
    case Kind::kLiteral:
      return true;
    case Kind::kName: {
      const auto found = findColumn(scope, expression.path);
      if (!found || found->scope != &scope) return false;
      if (reads.source && *reads.source != found->source) return false;
      reads.source = found->source;
      reads.columns.push_back(found->column);
      return true;
    }
    case Kind::kCall: {
      const Function* function = findFunction(expression.path.front());
      if (function == nullptr || !function->deterministic) return false;
      break;
    }
    case Kind::kUnary:
    case Kind::kBinary:
    case Kind::kBetween:
    case Kind::kInList:
    case Kind::kIsNull:
      break;
    default:
      return false;
  }
  return std::all_of(expression.arguments.begin(), expression.arguments.end(),
                     [&](const auto& argument) { return collect(*argument, scope, reads); });
}

}  // namespace

void Translator::seekByKeys(SelectPlan& plan, const Use& use) {
  const Select& select = *plan.select;
  // Literals that are lifted differ from run to run; the missing side of an outer join has no row.
  if (select.top || !inlineLiterals_ || plan.scope.sources.size() != 1) return;
  const std::vector<std::string> names = itemNames(select);
  for (const Demand& demand : use.demands) {
    if (demand.kind != Kind::kBinary || demand.operation != Operator::kEqual) continue;
    for (std::size_t i = 0; i < names.size(); ++i) {
      const Expression* expression = select.items[i].expression.get();
      if (expression == nullptr || expression->kind == Kind::kName ||
          !equalText(names[i], demand.path.back()))
        continue;
      seekByKey(plan, demand, *expression);
    }
  }
}

void Translator::seekByKey(SelectPlan& plan, const Demand& demand, const Expression& expression) {
  Reads reads;
  if (!collect(expression, plan.scope, reads) || !reads.source) return;
  const ScopeSource& source = plan.scope.sources[*reads.source];
  if (source.table == nullptr) return;

  Place here{.scope = &plan.scope};
  const Sql value = this->expression(expression, here);
  if (plan.grouped && std::none_of(plan.groups.begin(), plan.groups.end(),
                                   [&](const Sql& group) { return group.text == value.text; }))
    return;
  std::array<Sql, 2> operands{Sql{"key", value.type}, demand.values.front()};
  makeComparable(operands, error::kCriteriaTypeMismatch);
  if (operands[0].text != "key") return;

  Scope alone;
  alone.sources.push_back(source);
  auto& columns = alone.sources.front().columns;
  for (std::size_t i = 0; i < columns.size(); ++i)
    columns[i].second.text = "k.c" + std::to_string(i);
  Place there{.scope = &alone};
  const ComputedKey key{valueOf(this->expression(expression, there)), reads.columns,
                        value.type == values::VariantType::kText};
  const auto table = schema_.keyTable(*source.table, key);
  if (!table) return;
  const std::string keys = nextAlias();
  // SQLite keeps the order of a CROSS JOIN: from the keys to their rows.
  plan.from = *table + " AS " + keys + " CROSS JOIN " + plan.from;
  plan.conditions.push_back(keys + ".key = " + operands[1].text);
  plan.conditions.push_back(source.rowid + " = " + keys + ".row");
  if (plan.grouped) return;
  for (Output& output : plan.outputs)
    if (output.value.text == value.text) output.value = {keys + ".key", value.type};
  for (auto& term : plan.order)
    if (term.first.text == value.text) term.first = {keys + ".key", value.type};
}

}  // namespace jetsql
