// FROM: tables, saved queries and subqueries, and the joins between them.
#include <algorithm>

#include "jetsql/functions/text_compare.h"
#include "jetsql/translate/translator.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

ScopeSource tableSource(const SchemaTable& table, const std::string& alias) {
  ScopeSource source;
  source.table = &table;
  source.rowid = alias + ".rowid";
  for (std::size_t i = 0; i < table.columns.size(); ++i)
    source.columns.push_back(
        {table.columns[i].name, {alias + ".c" + std::to_string(i), table.columns[i].type}});
  return source;
}

ScopeSource querySource(const NestedQuery& query, const std::string& alias) {
  ScopeSource source;
  for (std::size_t i = 0; i < query.columns.size(); ++i)
    source.columns.push_back(
        {query.columns[i].name, {alias + ".c" + std::to_string(i), query.columns[i].type}});
  return source;
}

void append(std::vector<std::string>& to, std::vector<std::string>& from) {
  to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

}  // namespace

void Translator::planFrom(SelectPlan& plan, const std::vector<Demand>& demands) {
  const Select& select = *plan.select;
  if (select.from.empty()) return;
  // The order of a query's rows lasts through a SELECT that does nothing to change it.
  const bool keepOrder = select.from.size() == 1 && !plan.grouped && select.orderBy.empty();
  const Use use{nullptr, keepOrder, demands};
  Fragment whole = fragment(select.from.front(), plan.scope, use);
  for (std::size_t i = 1; i < select.from.size(); ++i)
    whole = innerJoin(std::move(whole), fragment(select.from[i], plan.scope, use), "");
  plan.from = whole.sql;
  append(plan.conditions, whole.conditions);
}

Translator::Fragment Translator::fragment(const TableReference& table, Scope& scope,
                                          const Use& use) {
  return table.kind == TableReference::Kind::kJoin ? join(table, scope, use)
                                                   : source(table, scope, use);
}

// Of the demands those on this source; an unqualified name may be a field of any.
Translator::Fragment Translator::source(const TableReference& table, Scope& scope, const Use& use) {
  const std::string& known = table.alias.empty() ? table.name : table.alias;
  Use own{nullptr, use.keepOrder, {}};
  for (const Demand& demand : use.demands)
    if (demand.path.size() == 1 || equalText(demand.path[demand.path.size() - 2], known))
      own.demands.push_back(demand);
  const std::string alias = nextAlias();
  ScopeSource source;
  std::string sql;
  if (table.kind == TableReference::Kind::kSubquery) {
    const NestedQuery query = nested(*table.query, own);
    source = querySource(query, alias);
    sql = "(" + query.sql + ")";
  } else {
    const SchemaObject object = schema_.find(table.name);
    if (object.table == nullptr && object.query == nullptr)
      throw RuntimeError(error::kUnknownTable,
                         "Could not find the input table or query '" + table.name + "'.");
    if (object.table != nullptr) {
      source = tableSource(*object.table, alias);
      sql = quotedName(object.table->sqliteName);
    } else {
      const NestedQuery query = savedQuery(*object.query, own);
      source = querySource(query, alias);
      sql = "(" + query.sql + ")";
    }
  }
  source.name = known;
  for (const ScopeSource& other : scope.sources)
    if (!source.name.empty() && equalText(other.name, source.name))
      throw RuntimeError(error::kNameTwiceInFrom,
                         "Cannot join more than one table with the same "
                         "name (" +
                             source.name + ").");
  scope.sources.push_back(std::move(source));
  return {sql + " AS " + alias, {}, scope.sources.size() - 1, scope.sources.size(), true};
}

// An outer join keeps the rows of one side, called left here whichever it was in the text.
Translator::Fragment Translator::join(const TableReference& table, Scope& scope, const Use& use) {
  const Use unordered{nullptr, false, use.demands};
  Fragment left = fragment(*table.left, scope, unordered);
  Fragment right = fragment(*table.right, scope, unordered);
  Place place{.scope = &scope,
              .aggregateError = error::kAggregateInJoin,
              .mismatch = error::kJoinTypeMismatch};
  if (table.joinType == TableReference::JoinType::kInner) {
    const std::string on = truthOf(expression(*table.on, place));
    return innerJoin(std::move(left), std::move(right), on);
  }
  if (table.joinType == TableReference::JoinType::kRight) std::swap(left, right);
  if (!right.single) derive(right, scope);
  Fragment result = std::move(left);
  result.sql += " LEFT JOIN " + right.sql + " ON " + truthOf(expression(*table.on, place));
  result.firstSource = std::min(result.firstSource, right.firstSource);
  result.lastSource = std::max(result.lastSource, right.lastSource);
  result.single = false;
  return result;
}

// a JOIN b LEFT JOIN c is the same whether b and c or a and b are joined first, so that nothing
// needs parentheses; what an inner join demands can as well be demanded of the result.
Translator::Fragment Translator::innerJoin(Fragment left, Fragment right,
                                           const std::string& on) const {
  Fragment result = std::move(left);
  result.sql += " JOIN " + right.sql;
  if (right.single && !on.empty()) result.sql += " ON " + on;
  append(result.conditions, right.conditions);
  if (!right.single && !on.empty()) result.conditions.push_back(on);
  result.firstSource = std::min(result.firstSource, right.firstSource);
  result.lastSource = std::max(result.lastSource, right.lastSource);
  result.single = false;
  return result;
}

// Makes a join one table: the side of an outer join that may be missing comes or goes as a whole.
void Translator::derive(Fragment& part, Scope& scope) {
  const std::string alias = nextAlias();
  std::vector<std::string> columns;
  const auto moved = [&](std::string& sql) {
    const std::string name = "c" + std::to_string(columns.size());
    columns.push_back(sql + " AS " + name);
    sql = alias + "." + name;
  };
  for (std::size_t i = part.firstSource; i < part.lastSource; ++i) {
    ScopeSource& source = scope.sources[i];
    if (!source.rowid.empty()) moved(source.rowid);
    for (auto& column : source.columns) moved(column.second.text);
  }
  const std::string conditions = joined(part.conditions, " AND ");
  part.sql = "(SELECT " + joined(columns, ", ") + " FROM " + part.sql +
             (conditions.empty() ? "" : " WHERE " + conditions) + ") AS " + alias;
  part.conditions.clear();
  part.single = true;
}

}  // namespace jetsql
