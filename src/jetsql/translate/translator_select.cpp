// One SELECT: its plan, and the SQL made of the plan.
#include <algorithm>

#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/translate/translator.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr int kFirstExpressionNumber = 1000;  // Expr1000, Expr1001, ... by place in the list

bool isGrouped(const Select& select) {
  if (!select.groupBy.empty()) return true;
  for (const SelectItem& item : select.items)
    if (item.expression && containsAggregate(*item.expression)) return true;
  for (const OrderItem& item : select.orderBy)
    if (containsAggregate(*item.expression)) return true;
  return select.having && containsAggregate(*select.having);
}

Output fieldOutput(const Scope& scope, std::size_t source, std::size_t column) {
  const ScopeSource& from = scope.sources[source];
  return {
      from.columns[column].first, false, from.columns[column].second, from.name, source, column};
}

std::string clause(std::string_view keyword, std::string_view text) {
  return text.empty() ? std::string() : " " + std::string(keyword) + " " + std::string(text);
}

// SQLite would take a whole number behind GROUP BY or ORDER BY for the place of a column.
std::string sortKey(const Sql& sql) {
  if (sql.text.find_first_not_of("-0123456789") == std::string::npos)
    return "CAST(" + sql.text + " AS INTEGER)";
  return collated(sql);
}

// Types of which values that compare equal are the same, whatever they are compared with.
bool hasOneFormEach(values::VariantType type) {
  return isWholeNumber(type) || type == values::VariantType::kSingle ||
         type == values::VariantType::kDouble || type == values::VariantType::kDateTime;
}

std::string columnList(std::string_view prefix, std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back(std::string(prefix) + std::to_string(i));
  return joined(names, ", ");
}

}  // namespace

SelectPlan Translator::plan(const Select& select, const Use& use) {
  SelectPlan result;
  result.select = &select;
  result.scope.outer = use.outer;
  result.grouped = isGrouped(select);
  planFrom(result, demandsOf(select, use));
  Place place{.scope = &result.scope, .aliases = &select};
  if (select.from.empty() && select.where)
    throw RuntimeError(error::kNoInputTable,
                       "Query input must contain at least one table or query.");
  if (select.where) {
    Place where{.scope = &result.scope};
    result.conditions.push_back(truthOf(expression(*select.where, where)));
  }
  for (const ExpressionPtr& group : select.groupBy) {
    Place plain{.scope = &result.scope, .aggregateError = error::kAggregateInGroupBy};
    result.groups.push_back(expression(*group, plain));
  }
  if (result.grouped) {
    place.groups = &result.groups;
    place.aggregateError = 0;
  }
  for (ScopeSource& source : result.scope.sources) source.used = false;
  planOutputs(result, place);
  planDistinctRow(result);
  applyDemands(result, use);
  if (select.having) {
    if (!result.grouped)
      throw RuntimeError(error::kHavingWithoutGroups, "HAVING clause (" + select.having->source +
                                                          ") without grouping or aggregation.");
    result.having = truthOf(expression(*select.having, place));
  }
  planOrder(result, place);
  seekByKeys(result, use);
  return result;
}

// What the FROM may be asked for: what was asked of the select, and what its own WHERE asks.
std::vector<Demand> Translator::demandsOf(const Select& select, const Use& use) {
  std::vector<Demand> demands = handedOn(select, use.demands);
  Scope none;
  Place place{.scope = &none};
  for (const DemandShape& shape : demandShapes(select.where.get())) {
    Demand demand{shape.column->path, shape.kind, shape.operation, {}};
    for (const Expression* value : shape.values) demand.values.push_back(expression(*value, place));
    demands.push_back(std::move(demand));
  }
  return demands;
}

// SQLite takes a condition into a subquery by itself; into a grouped one only behind the grouping,
// unless it is put before it here.
void Translator::applyDemands(SelectPlan& plan, const Use& use) const {
  if (!plan.grouped || plan.select->top) return;
  for (const Demand& demand : use.demands)
    for (const Output& output : plan.outputs)
      if (equalText(output.name, demand.path.back()) &&
          std::any_of(plan.groups.begin(), plan.groups.end(),
                      [&](const Sql& group) { return group.text == output.value.text; })) {
        plan.conditions.push_back(demandText(demand, output.value));
        if (demand.kind == Expression::Kind::kBinary && demand.operation == Operator::kEqual &&
            hasOneFormEach(output.value.type))
          plan.fixed.push_back(output.value.text);
      }
}

void Translator::planOutputs(SelectPlan& plan, Place& place) {
  for (const SelectItem& item : plan.select->items) {
    if (!item.expression) {
      addStar(plan, item.starTable);
      continue;
    }
    Output output;
    output.value = expression(*item.expression, place);
    if (item.expression->kind == Expression::Kind::kName) {
      const auto found = findColumn(plan.scope, item.expression->path);
      if (found && found->scope == &plan.scope)
        output = fieldOutput(plan.scope, found->source, found->column);
    }
    if (!item.alias.empty()) {
      output.name = item.alias;
      output.named = true;
    } else if (output.name.empty()) {
      output.name =
          "Expr" + std::to_string(kFirstExpressionNumber + static_cast<int>(plan.outputs.size()));
    }
    plan.outputs.push_back(std::move(output));
  }
  nameOutputs(plan);
}

void Translator::addStar(SelectPlan& plan, const std::string& table) {
  if (plan.grouped)
    throw RuntimeError(error::kGroupOnStar, "Cannot group on fields selected with '*'.");
  bool found = false;
  for (std::size_t i = 0; i < plan.scope.sources.size(); ++i) {
    ScopeSource& source = plan.scope.sources[i];
    if (!table.empty() && !equalText(source.name, table)) continue;
    found = source.used = true;
    for (std::size_t column = 0; column < source.columns.size(); ++column)
      plan.outputs.push_back(fieldOutput(plan.scope, i, column));
  }
  if (found) return;
  if (table.empty())
    throw RuntimeError(error::kNoInputTable,
                       "Query input must contain at least one table or query.");
  throw RuntimeError(error::kUnknownTable,
                     "Could not find the input table or query '" + table + "'.");
}

// Fields of the same name from different tables are told apart as table.field.
void Translator::nameOutputs(SelectPlan& plan) const {
  std::vector<bool> doubled(plan.outputs.size());
  for (std::size_t i = 0; i < plan.outputs.size(); ++i)
    for (std::size_t j = i + 1; j < plan.outputs.size(); ++j)
      if (equalText(plan.outputs[i].name, plan.outputs[j].name)) doubled[i] = doubled[j] = true;
  for (std::size_t i = 0; i < plan.outputs.size(); ++i) {
    Output& output = plan.outputs[i];
    if (doubled[i] && !output.named && output.source)
      output.name = output.sourceName + "." + output.name;
  }
}

void Translator::planOrder(SelectPlan& plan, Place& place) {
  const bool distinct = plan.select->duplicates == Select::Duplicates::kDistinct;
  for (const OrderItem& item : plan.select->orderBy) {
    const Expression& by = *item.expression;
    Sql term;
    if (by.kind == Expression::Kind::kLiteral && by.literalOrdinal >= 0) {
      const int ordinal = by.value.type() == values::VariantType::kText ? 0 : toLong(by.value);
      if (ordinal < 1 || static_cast<std::size_t>(ordinal) > plan.outputs.size())
        throw RuntimeError(error::kOrderBySyntax,
                           "Syntax error in ORDER BY clause: no column " + toText(by.value) + ".");
      term = plan.outputs[static_cast<std::size_t>(ordinal) - 1].value;
    } else {
      term = expression(by, place);
    }
    if (distinct &&
        std::none_of(plan.outputs.begin(), plan.outputs.end(),
                     [&](const Output& output) { return output.value.text == term.text; }))
      throw RuntimeError(error::kOrderConflictsWithDistinct,
                         "ORDER BY clause (" + by.source + ") conflicts with DISTINCT.");
    plan.order.emplace_back(std::move(term), item.descending);
  }
}

// DISTINCTROW drops rows that differ only in tables of which nothing is shown.
void Translator::planDistinctRow(SelectPlan& plan) const {
  if (plan.select->duplicates != Select::Duplicates::kDistinctRow || plan.grouped) return;
  const auto& sources = plan.scope.sources;
  if (std::all_of(sources.begin(), sources.end(), [](const auto& source) { return source.used; }))
    return;
  for (const ScopeSource& source : sources) {
    if (!source.used) continue;
    if (!source.rowid.empty()) {
      plan.identities.push_back(source.rowid);
      continue;
    }
    for (const auto& column : source.columns) plan.identities.push_back(collated(column.second));
  }
}

std::vector<std::string> Translator::orderTerms(const SelectPlan& plan) const {
  std::vector<std::string> terms;
  for (const auto& [sql, descending] : plan.order)
    terms.push_back(sortKey(sql) + (descending ? " DESC" : ""));
  return terms;
}

// A group that has one value need not be sorted by, as long as another remains: without any, there
// would be a row where there is none.
std::vector<std::string> Translator::groupTerms(const SelectPlan& plan) const {
  std::vector<std::string> terms = plan.identities;
  for (const Sql& group : plan.groups)
    if (std::find(plan.fixed.begin(), plan.fixed.end(), group.text) == plan.fixed.end())
      terms.push_back(sortKey(group));
  if (terms.empty() && !plan.groups.empty()) terms.push_back(sortKey(plan.groups.front()));
  return terms;
}

std::string Translator::render(const SelectPlan& plan, const std::vector<std::string>& projection,
                               bool keepOrder) const {
  const Select& select = *plan.select;
  const bool distinct = select.duplicates == Select::Duplicates::kDistinct;
  const std::vector<std::string> terms = orderTerms(plan);
  const bool ranks = select.top && (!terms.empty() || select.topIsPercent);
  std::vector<std::string> columns;
  for (std::size_t i = 0; i < projection.size(); ++i)
    columns.push_back(projection[i] + " AS c" + std::to_string(i));
  if (columns.empty()) columns.emplace_back("NULL AS c0");
  if (ranks && !distinct)
    for (std::size_t i = 0; i < plan.order.size(); ++i)
      columns.push_back(valueOf(plan.order[i].first) + " AS o" + std::to_string(i));

  const std::vector<std::string> groups = groupTerms(plan);
  std::string sql = std::string(distinct ? "SELECT DISTINCT " : "SELECT ") + joined(columns, ", ") +
                    clause("FROM", plan.from) + clause("WHERE", joined(plan.conditions, " AND ")) +
                    clause("GROUP BY", joined(groups, ", ")) + clause("HAVING", plan.having);
  if (!ranks) {
    if (keepOrder || select.top) sql += clause("ORDER BY", joined(terms, ", "));
    if (select.top) sql += " LIMIT " + std::to_string(*select.top);
    return sql;
  }
  return ranked(plan, sql, projection.size());
}

// TOP with an order or a percentage: rows that tie with the last one wanted are kept, which LIMIT
// would cut off.
std::string Translator::ranked(const SelectPlan& plan, const std::string& sql,
                               std::size_t columns) const {
  const Select& select = *plan.select;
  const bool distinct = select.duplicates == Select::Duplicates::kDistinct;
  std::vector<std::string> by;
  for (std::size_t i = 0; i < plan.order.size(); ++i) {
    std::string column = "o" + std::to_string(i);
    if (distinct) {
      const auto output =
          std::find_if(plan.outputs.begin(), plan.outputs.end(), [&](const Output& candidate) {
            return candidate.value.text == plan.order[i].first.text;
          });
      column = "c" + std::to_string(output - plan.outputs.begin());
    }
    by.push_back(collated({column, plan.order[i].first.type}) +
                 (plan.order[i].second ? " DESC" : ""));
  }
  const std::string names = columnList("c", std::max<std::size_t>(columns, 1));
  const std::string rank =
      by.empty() ? "row_number() OVER ()" : "rank() OVER (ORDER BY " + joined(by, ", ") + ")";
  const std::string most = select.topIsPercent
                               ? "(n * " + std::to_string(*select.top) + " + 99) / 100"
                               : std::to_string(*select.top);
  return "SELECT " + names + " FROM (SELECT " + names + ", " + rank +
         " AS k, count(*) OVER () AS n FROM (" + sql + ")) WHERE k <= " + most + " ORDER BY k";
}

}  // namespace jetsql
