#include "jetsql/translate/sql_writer_from.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "jetsql/translate/sql_writer_expression.h"

namespace jetsql {

FromWriter::Fragment FromWriter::write() {
  Fragment whole;
  for (std::size_t i = 0; i < select_.from.size(); ++i) {
    Fragment next = item(select_.from[i]);
    whole = i == 0 ? std::move(next) : innerJoin(std::move(whole), std::move(next), "");
  }
  return whole;
}

FromWriter::Fragment FromWriter::item(const typed::FromItem& item) {
  if (const auto* join = std::get_if<typed::Join>(&item.node)) return this->join(*join);
  return relation(std::get<std::size_t>(item.node));
}

FromWriter::Fragment FromWriter::relation(std::size_t number) {
  const typed::Relation& relation = *select_.relations[number];
  const std::string alias = writer_.nextAlias();
  const std::string sql = relation.table != nullptr ? quotedName(relation.table->sqliteName)
                                                    : "(" + writer_.query(*relation.query) + ")";
  RelationNames& names = writer_.names(&relation) = namesUnder(alias, relation);
  if (relation.table == nullptr && writer_.defersErrors()) {
    for (std::string& column : names.columns) column.insert(0, "jet_check(").append(")");
  }
  return {sql + " AS " + alias, {}, number, number + 1, true};
}

// An outer join keeps the rows of one side, called left here whichever it was in the text.
FromWriter::Fragment FromWriter::join(const typed::Join& join) {
  Fragment left = item(*join.left);
  Fragment right = item(*join.right);
  const auto on = [&] { return conditionOf(ExpressionWriter(writer_).write(join.on)); };
  if (join.type == Join::Type::kInner) return innerJoin(std::move(left), std::move(right), on());
  if (join.type == Join::Type::kRight) std::swap(left, right);
  if (!right.single) derive(right);
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
void FromWriter::derive(Fragment& part) {
  const std::string alias = writer_.nextAlias();
  std::vector<std::string> columns;
  const auto moved = [&](std::string& name) {
    const std::string column = "c" + std::to_string(columns.size());
    columns.push_back(name + " AS " + column);
    name = alias + "." + column;
  };
  for (std::size_t i = part.firstRelation; i < part.lastRelation; ++i) {
    RelationNames& names = writer_.names(select_.relations[i].get());
    if (!names.rowid.empty()) moved(names.rowid);
    std::ranges::for_each(names.columns, moved);
  }
  part.sql = "(SELECT " + joined(columns, ", ") + " FROM " + part.sql +
             clause("WHERE", joined(part.conditions, " AND ")) + ") AS " + alias;
  part.conditions.clear();
  part.single = true;
}

}  // namespace jetsql
