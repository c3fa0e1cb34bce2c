#include "jetsql/translate/sql_writer_from.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "jetsql/translate/fields_read.h"
#include "jetsql/translate/sql_writer_expression.h"

namespace jetsql {

FromWriter::Fragment FromWriter::write() {
  Fragment whole;
  for (std::size_t i = 0; i < select_.from.size(); ++i) {
    Fragment next = item(select_.from[i]);
    whole = i == 0 ? std::move(next) : innerJoin(std::move(whole), std::move(next), "");
  }
  std::ranges::move(lookupsOf(nullptr), std::back_inserter(whole.conditions));
  return whole;
}

FromWriter::Fragment FromWriter::item(const typed::FromItem& item) {
  if (const auto* join = std::get_if<typed::Join>(&item.node)) return this->join(*join);
  return relation(std::get<std::size_t>(item.node));
}

FromWriter::Fragment FromWriter::relation(std::size_t number) {
  const typed::Relation& relation = *select_.relations[number];
  const std::string alias = writer_.nextAlias();
  std::string sql = source(relation);
  const JoinLookup* keyed = computedKeysOf(relation);
  if (keyed != nullptr) sql = withKeys(relation, sql, *keyed);
  RelationNames& names = writer_.names(&relation) = namesUnder(alias, relation);
  if (keyed != nullptr) {
    names.keys = alias;
    if (!names.rowid.empty()) names.rowid = alias + ".row";
  }
  if (relation.table == nullptr && writer_.defersErrors()) {
    for (std::string& column : names.columns) column.insert(0, "jet_check(").append(")");
  }
  return {sql + " AS " + alias, {}, number, number + 1, true};
}

std::string FromWriter::source(const typed::Relation& relation) {
  if (relation.table != nullptr) return quotedName(relation.table->sqliteName);
  if (select_.relations.size() == 1) return writer_.onlySource(*relation.query);
  return writer_.derived(*relation.query);
}

// None where errors are deferred: a key that fails would fail the whole query.
const JoinLookup* FromWriter::computedKeysOf(const typed::Relation& relation) const {
  if (writer_.defersErrors()) return nullptr;
  const auto found = std::ranges::find_if(lookups_, [&relation](const JoinLookup& lookup) {
    return lookup.relation == &relation && !lookup.isJoin && !lookup.hasLastingRows();
  });
  return found == lookups_.end() ? nullptr : &*found;
}

const JoinLookup* FromWriter::computedKeysOf(const typed::Join& join) const {
  if (writer_.defersErrors()) return nullptr;
  const auto found = std::ranges::find_if(lookups_, [&join](const JoinLookup& lookup) {
    return lookup.join == &join && lookup.isJoin;
  });
  return found == lookups_.end() ? nullptr : &*found;
}

void FromWriter::addKeys(const JoinLookup& lookup, std::vector<std::string>& columns) const {
  for (std::size_t i = 0; i < lookup.keys.size(); ++i) {
    const TypedSql key = ExpressionWriter(writer_).write(lookup.keys[i].expression);
    columns.push_back(collated({valueOf(key), key.type}) + " AS key" + std::to_string(i));
  }
}

// The LIMIT keeps SQLite from taking the subquery apart: it stores its rows, and indexes them by
// the keys where these are compared.
std::string FromWriter::withKeys(const typed::Relation& relation, const std::string& source,
                                 const JoinLookup& lookup) {
  const RelationNames& inner = writer_.names(&relation) = namesUnder("k", relation);
  std::vector<std::string> columns;
  if (!inner.rowid.empty()) columns.push_back(inner.rowid + " AS row");
  for (std::size_t i = 0; i < inner.columns.size(); ++i) {
    columns.push_back(inner.columns[i] + " AS c" + std::to_string(i));
  }
  addKeys(lookup, columns);
  return "(SELECT " + joined(columns, ", ") + " FROM " + source + " AS k LIMIT -1)";
}

std::vector<std::string> FromWriter::lookupsOf(const typed::Join* join) const {
  std::vector<std::string> conditions;
  for (const JoinLookup& lookup : lookups_) {
    if (lookup.join != join) continue;
    if (std::string text = condition(lookup); !text.empty()) conditions.push_back(std::move(text));
  }
  return conditions;
}

std::string FromWriter::condition(const JoinLookup& lookup) const {
  const RelationNames& names = writer_.names(lookup.relation);
  const auto equalities = [&](const std::string& table, std::size_t count) {
    std::vector<std::string> terms;
    for (std::size_t i = 0; i < count; ++i) {
      terms.push_back(table + "key" + std::to_string(i) + " = " +
                      valueOf(ExpressionWriter(writer_).write(lookup.keys[i].value)));
    }
    return joined(terms, " AND ");
  };
  std::size_t count = lookup.keys.size();
  if (!lookup.hasLastingRows()) {
    return names.keys.empty() ? "" : equalities(names.keys + ".", count);
  }
  auto keys = keyTable(lookup, count);
  // One of them may fail for a row.
  if (!keys && count > 1) keys = keyTable(lookup, count = 1);
  if (!keys) return {};
  return names.rowid + " IN (SELECT row FROM " + *keys + " WHERE " + equalities("", count) + ")";
}

std::optional<std::string> FromWriter::keyTable(const JoinLookup& lookup, std::size_t keys) const {
  constexpr double kMinRows = 10;
  std::vector<typed::Expression> expressions;
  for (const JoinLookup::Key& key : std::span(lookup.keys).first(keys)) {
    if (hasParameter(key.expression) && lookup.relation->table->rows >= kMinRows) {
      writer_.preferLiterals();
      return std::nullopt;
    }
    expressions.push_back(key.expression);
  }
  return writer_.keyTable(*lookup.relation, expressions, kMinRows);
}

// An outer join keeps the rows of one side, called left here whichever it was in the text.
FromWriter::Fragment FromWriter::join(const typed::Join& join) {
  Fragment left = item(*join.left);
  Fragment right = item(*join.right);
  const auto on = [&] {
    std::vector<std::string> conditions = lookupsOf(&join);
    conditions.insert(conditions.begin(), conditionOf(ExpressionWriter(writer_).write(join.on)));
    return joined(conditions, " AND ");
  };
  if (join.type == Join::Type::kInner) return innerJoin(std::move(left), std::move(right), on());
  if (join.type == Join::Type::kRight) std::swap(left, right);
  if (!right.single) derive(right, join);
  Fragment result = std::move(left);
  result.sql += " LEFT JOIN " + right.sql + " ON " + on();
  result.firstRelation = std::min(result.firstRelation, right.firstRelation);
  result.lastRelation = std::max(result.lastRelation, right.lastRelation);
  result.single = false;
  return result;
}

// a JOIN b LEFT JOIN c is the same whether b and c or a and b are joined first, so that nothing
// needs parentheses; a condition of an inner join can as well be one of the result.
FromWriter::Fragment FromWriter::innerJoin(Fragment left, Fragment right, const std::string& on) {
  Fragment result = std::move(left);
  result.sql += " JOIN " + right.sql;
  if (right.single && !on.empty()) result.sql += " ON " + on;
  std::ranges::move(right.conditions, std::back_inserter(result.conditions));
  if (!right.single && !on.empty()) result.conditions.push_back(on);
  result.firstRelation = std::min(result.firstRelation, right.firstRelation);
  result.lastRelation = std::max(result.lastRelation, right.lastRelation);
  result.single = false;
  return result;
}

// Makes a join one table: the side of an outer join that may be missing comes or goes as a whole.
void FromWriter::derive(Fragment& part, const typed::Join& join) {
  const std::string alias = writer_.nextAlias();
  std::vector<std::string> columns;
  const auto moved = [&](std::string& name) {
    const std::string column = "c" + std::to_string(columns.size());
    columns.push_back(name + " AS " + column);
    name = alias + "." + column;
  };
  std::vector<std::string> keys;
  const JoinLookup* lookup = computedKeysOf(join);
  if (lookup != nullptr) addKeys(*lookup, keys);
  for (std::size_t i = part.firstRelation; i < part.lastRelation; ++i) {
    RelationNames& names = writer_.names(select_.relations[i].get());
    if (!names.rowid.empty()) moved(names.rowid);
    std::ranges::for_each(names.columns, moved);
  }
  std::ranges::move(keys, std::back_inserter(columns));
  part.sql = "(SELECT " + joined(columns, ", ") + " FROM " + part.sql +
             clause("WHERE", joined(part.conditions, " AND ")) +
             (lookup != nullptr ? " LIMIT -1) AS " : ") AS ") + alias;
  if (lookup != nullptr) writer_.names(lookup->relation).keys = alias;
  part.conditions.clear();
  part.single = true;
}

}  // namespace jetsql
