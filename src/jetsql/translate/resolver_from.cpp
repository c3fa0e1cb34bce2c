// FROM: tables, saved queries and subqueries, and the joins between them.
#include "jetsql/functions/text_compare.h"
#include "jetsql/translate/resolver_select.h"
#include "jetsql/translate/typing.h"
#include "values/runtime_error.h"

namespace jetsql {

void SelectResolver::from() {
  // The order of a query's rows lasts through a SELECT that does nothing to change it.
  const bool keepsOrder = source_.from.size() == 1 && !result_.grouped && source_.orderBy.empty();
  for (const TableReference& table : source_.from) result_.from.push_back(item(table, keepsOrder));
}

typed::FromItem SelectResolver::item(const TableReference& table, bool keepsOrder) {
  if (const auto* join = std::get_if<Join>(&table.node)) return this->join(*join);
  if (const auto* derived = std::get_if<DerivedTable>(&table.node)) {
    return this->derived(*derived, keepsOrder);
  }
  return this->table(std::get<NamedTable>(table.node), keepsOrder);
}

typed::FromItem SelectResolver::join(const Join& join) {
  typed::Join result{join.type, {}, {}, {}};
  result.left = std::make_unique<typed::FromItem>(item(*join.left, false));
  result.right = std::make_unique<typed::FromItem>(item(*join.right, false));
  result.on = condition(*join.on, {.scope = &scope_,
                                   .aggregateError = error::kAggregateInJoin,
                                   .mismatch = error::kJoinTypeMismatch});
  return {std::move(result)};
}

typed::FromItem SelectResolver::table(const NamedTable& table, bool keepsOrder) {
  const auto& database = table.database ? table.database : resolver_.database();
  const CatalogueObject object = resolver_.find(table.name, database);
  auto relation = std::make_unique<typed::Relation>();
  relation->name = table.alias.empty() ? table.name : table.alias;
  relation->table = object.table;
  if (object.query != nullptr) {
    relation->query = std::make_unique<typed::Query>(
        resolver_.savedQuery(*object.query, {.keepsOrder = keepsOrder}, database));
  } else if (object.table == nullptr) {
    throw RuntimeError(error::kUnknownTable,
                       "Could not find the input table or query '" + table.name + "'.");
  }
  return add(std::move(relation));
}

typed::FromItem SelectResolver::derived(const DerivedTable& table, bool keepsOrder) {
  auto relation = std::make_unique<typed::Relation>();
  relation->name = table.alias;
  relation->query =
      std::make_unique<typed::Query>(resolver_.query(*table.query, {.keepsOrder = keepsOrder}));
  return add(std::move(relation));
}

typed::FromItem SelectResolver::add(std::unique_ptr<typed::Relation> relation) {
  for (const auto& other : result_.relations) {
    if (!relation->name.empty() && equalText(other->name, relation->name)) {
      throw RuntimeError(
          error::kNameTwiceInFrom,
          "Cannot join more than one table with the same name (" + relation->name + ").");
    }
  }
  scope_.relations.push_back(relation.get());
  result_.relations.push_back(std::move(relation));
  return {result_.relations.size() - 1};
}

}  // namespace jetsql
