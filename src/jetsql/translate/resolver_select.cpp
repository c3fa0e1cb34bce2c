#include "jetsql/translate/resolver_select.h"

#include <algorithm>

#include "jetsql/functions/text_compare.h"
#include "jetsql/translate/predicate_pushdown.h"
#include "jetsql/translate/resolver_expression.h"
#include "jetsql/translate/typing.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr std::size_t kFirstExpressionNumber = 1000;  // Expr1000, Expr1001, ... by place

bool isGrouped(const Select& select) {
  if (!select.groupBy.empty()) return true;
  for (const SelectItem& item : select.items) {
    if (item.expression && containsAggregate(*item.expression)) return true;
  }
  for (const OrderItem& item : select.orderBy) {
    if (containsAggregate(*item.expression)) return true;
  }
  return select.having && containsAggregate(*select.having);
}

[[noreturn]] void failWithoutFrom() {
  throw RuntimeError(error::kNoInputTable, "Query input must contain at least one table or query.");
}

}  // namespace

SelectResolver::SelectResolver(Resolver& resolver, const Select& select, const Scope* outer)
    : resolver_(resolver), source_(select), scope_{{}, outer} {
  result_.duplicates = select.duplicates;
  result_.top = select.top;
  result_.topIsPercent = select.topIsPercent;
  result_.grouped = isGrouped(select);
  from();
  whereAndGroups();
  ExpressionContext context{.scope = &scope_, .aliases = &select};
  if (result_.grouped) {
    context.groups = &result_.groups;
    context.aggregateError = 0;
  }
  outputs(context);
  if (select.having) {
    if (!result_.grouped) {
      throw RuntimeError(error::kHavingWithoutGroups, "HAVING clause (" + select.having->source +
                                                          ") without grouping or aggregation.");
    }
    result_.having = condition(*select.having, context);
  }
  order(context);
  pushDown(result_);
}

typed::Expression SelectResolver::resolve(const Expression& expression,
                                          const ExpressionContext& context) const {
  return ExpressionResolver(resolver_, context).resolve(expression);
}

typed::Expression SelectResolver::condition(const Expression& expression,
                                            const ExpressionContext& context) const {
  typed::Expression result = resolve(expression, context);
  requireCondition(result);
  return result;
}

typed::Expression SelectResolver::plain(const Expression& expression) const {
  return resolve(
      expression,
      {.scope = &scope_, .aliases = &source_, .aggregateError = error::kAggregateInGroupBy});
}

typed::Expression SelectResolver::overGroups(const Expression& expression) const {
  return resolve(expression, {.scope = &scope_, .groups = &result_.groups, .aggregateError = 0});
}

void SelectResolver::whereAndGroups() {
  if (source_.where) {
    if (source_.from.empty()) failWithoutFrom();
    result_.conditions.push_back(condition(*source_.where, {.scope = &scope_}));
  }
  for (const ExpressionPtr& group : source_.groupBy) {
    result_.groups.push_back(
        {resolve(*group, {.scope = &scope_, .aggregateError = error::kAggregateInGroupBy})});
  }
}

void SelectResolver::outputs(const ExpressionContext& context) {
  for (const auto& relation : result_.relations) relation->read = false;
  for (const SelectItem& item : source_.items) {
    if (item.expression) {
      field(item, context);
    } else {
      addStar(item.starTable);
    }
  }
  nameDoubles();
  if (source_.duplicates == Select::Duplicates::kDistinctRow && !result_.grouped) distinctRow();
}

// DISTINCTROW drops rows that differ only in relations of which nothing is shown.
void SelectResolver::distinctRow() {
  const auto isRead = [](const auto& relation) { return relation->read; };
  if (std::all_of(result_.relations.begin(), result_.relations.end(), isRead)) return;
  for (const auto& relation : result_.relations) {
    if (relation->read) result_.identities.push_back(relation.get());
  }
}

void SelectResolver::field(const SelectItem& item, const ExpressionContext& context) {
  typed::Output output;
  output.value = resolve(*item.expression, context);
  if (const auto* name = item.expression->as<Name>()) {
    const auto found = findColumn(scope_, name->path);
    const auto* field = output.value.as<typed::Field>();
    output.isField = found && found->scope == &scope_ && field != nullptr &&
                     *field == typed::Field{found->relation, found->column};
    if (output.isField) output.name = found->relation->columns()[found->column].name;
  }
  if (!item.alias.empty()) {
    output.name = item.alias;
    output.aliased = true;
  } else if (output.name.empty()) {
    output.name = "Expr" + std::to_string(kFirstExpressionNumber + result_.outputs.size());
  }
  result_.outputs.push_back(std::move(output));
}

void SelectResolver::addStar(const std::string& table) {
  if (result_.grouped) {
    throw RuntimeError(error::kGroupOnStar, "Cannot group on fields selected with '*'.");
  }
  bool found = false;
  for (const auto& relation : result_.relations) {
    if (!table.empty() && !equalText(relation->name, table)) continue;
    found = relation->read = true;
    const auto columns = relation->columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      result_.outputs.push_back(
          {columns[i].name, false, true, {columns[i].type, typed::Field{relation.get(), i}}});
    }
  }
  if (found) return;
  if (table.empty()) failWithoutFrom();
  throw RuntimeError(error::kUnknownTable,
                     "Could not find the input table or query '" + table + "'.");
}

// Fields of the same name from different relations are told apart as table.field.
void SelectResolver::nameDoubles() {
  auto& outputs = result_.outputs;
  std::vector<bool> doubled(outputs.size());
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    for (std::size_t j = i + 1; j < outputs.size(); ++j) {
      if (equalText(outputs[i].name, outputs[j].name)) doubled[i] = doubled[j] = true;
    }
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    if (doubled[i] && !outputs[i].aliased && outputs[i].isField) {
      outputs[i].name.insert(0, outputs[i].value.as<typed::Field>()->relation->name + ".");
    }
  }
}

void SelectResolver::order(const ExpressionContext& context) {
  for (const OrderItem& item : source_.orderBy) {
    typed::Expression value = orderValue(*item.expression, context);
    if (result_.duplicates == Select::Duplicates::kDistinct &&
        std::none_of(result_.outputs.begin(), result_.outputs.end(),
                     [&](const typed::Output& output) { return output.value == value; })) {
      throw RuntimeError(
          error::kOrderConflictsWithDistinct,
          "ORDER BY clause (" + item.expression->source + ") conflicts with DISTINCT.");
    }
    result_.order.push_back({std::move(value), item.descending});
  }
}

// A literal is the number of an item of the select list.
typed::Expression SelectResolver::orderValue(const Expression& by,
                                             const ExpressionContext& context) const {
  const auto* literal = by.as<Literal>();
  if (literal == nullptr || !literal->number) return resolve(by, context);
  const int ordinal =
      literal->value.type() == values::VariantType::kText ? 0 : toLong(literal->value);
  if (ordinal < 1 || static_cast<std::size_t>(ordinal) > result_.outputs.size()) {
    throw RuntimeError(error::kOrderBySyntax, "Syntax error in ORDER BY clause: no column " +
                                                  toText(literal->value) + ".");
  }
  return result_.outputs[static_cast<std::size_t>(ordinal) - 1].value;
}

}  // namespace jetsql
