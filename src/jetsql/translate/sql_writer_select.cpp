#include "jetsql/translate/sql_writer_select.h"

#include <algorithm>
#include <utility>

#include "jetsql/translate/fields_read.h"
#include "jetsql/translate/sql_writer_expression.h"
#include "jetsql/translate/sql_writer_from.h"

namespace jetsql {
namespace {

// SQLite would take a whole number after GROUP BY or ORDER BY for the number of a column.
std::string sortKey(const TypedSql& sql) {
  if (sql.text.find_first_not_of("-0123456789") == std::string::npos) {
    return "CAST(" + sql.text + " AS INTEGER)";
  }
  return collated(sql);
}

}  // namespace

std::string numberedColumns(std::string_view prefix, std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back(std::string(prefix) + std::to_string(i));
  return joined(names, ", ");
}

SelectWriter::SelectWriter(SqlWriter& writer, const typed::Select& select)
    : writer_(writer), select_(select) {
  const ExpressionWriter expressions(writer);
  auto from = FromWriter(writer, select).write();
  from_ = std::move(from.sql);
  conditions_ = std::move(from.conditions);
  for (const typed::Expression& condition : select.conditions) {
    conditions_.push_back(conditionOf(expressions.write(condition)));
  }
  for (const typed::Group& group : select.groups) groups_.push_back(expressions.write(group.value));
  const ExpressionWriter guarded(writer, {}, ExpressionWriter::Constants::kEveryRow);
  for (const typed::Output& output : select.outputs) {
    outputs_.push_back((isGuarded(output) ? guarded : expressions).write(output.value));
  }
  if (select.having) having_ = conditionOf(expressions.write(select.having));
  for (const typed::Order& order : select.order) order_.push_back(expressions.write(order.value));
  for (const typed::IndexedLookup& lookup : select.lookups) lookUp(lookup);
}

// An equality on an expression, such as a day put together from parts of a text: the rows are
// found by a computed column, or else by a table of the expression's values, where the catalogue
// has one, and the columns take their values from there.
void SelectWriter::lookUp(const typed::IndexedLookup& lookup) {
  const typed::Relation* relation = select_.relations.front().get();
  const ExpressionWriter expressions(writer_);
  const auto key = keyOf(lookup, *relation);
  if (!key) return;
  conditions_.push_back(collated(*key) + " = " + valueOf(expressions.write(lookup.value)));
  if (select_.grouped) return;
  for (std::size_t i = 0; i < outputs_.size(); ++i) {
    if (select_.outputs[i].value == lookup.expression) outputs_[i] = *key;
  }
  for (std::size_t i = 0; i < order_.size(); ++i) {
    if (select_.order[i].value == lookup.expression) order_[i] = *key;
  }
}

// The column that has the expression's values for the rows of the relation.
std::optional<TypedSql> SelectWriter::keyOf(const typed::IndexedLookup& lookup,
                                            const typed::Relation& relation) {
  const values::VariantType type = lookup.expression.type();
  const std::string rowid = writer_.names(&relation).rowid;
  if (const auto column = writer_.computedColumn(relation, lookup.expression)) {
    return TypedSql{rowid.substr(0, rowid.find('.') + 1) + *column, type};
  }
  constexpr double kMinRows = 1000;  // below that a scan is as fast
  const auto index = writer_.keyTable(relation, {lookup.expression}, kMinRows);
  if (!index) return std::nullopt;
  const std::string alias = writer_.nextAlias();
  // SQLite keeps the order of a CROSS JOIN: from the keys to their rows.
  from_ = *index + " AS " + alias + " CROSS JOIN " + from_;
  conditions_.push_back(rowid + " = " + alias + ".row");
  return TypedSql{alias + ".key0", type};
}

std::vector<std::string> SelectWriter::values() const {
  const bool compared = select_.duplicates == Select::Duplicates::kDistinct;
  std::vector<std::string> values;
  for (std::size_t i = 0; i < outputs_.size(); ++i) {
    const TypedSql& output = outputs_[i];
    std::string value = compared ? collated(output) : valueOf(output);
    if (isGuarded(select_.outputs[i])) value = guardedText(value);
    values.push_back(std::move(value));
  }
  return values;
}

// SQLite computes a subquery that refers to nothing outside once for all rows: an error in it
// cannot be told to the rows one by one.
bool SelectWriter::isGuarded(const typed::Output& output) const {
  const auto* field = output.value.as<typed::Field>();
  const bool canFail = output.value.as<typed::Literal>() == nullptr &&
                       (field == nullptr || field->relation->table == nullptr);
  return writer_.defersErrors() && canFail && !containsQuery(output.value) &&
         select_.duplicates != Select::Duplicates::kDistinct;
}

std::vector<std::string> SelectWriter::identities() const {
  std::vector<std::string> terms;
  for (const typed::Relation* relation : select_.identities) {
    const RelationNames& names = writer_.names(relation);
    if (!names.rowid.empty()) {
      terms.push_back(names.rowid);
      continue;
    }
    for (std::size_t i = 0; i < names.columns.size(); ++i) {
      terms.push_back(collated({names.columns[i], relation->columns()[i].type}));
    }
  }
  return terms;
}

// A group that has one value need not be sorted by, as long as another remains: without any, there
// would be a row where there is none.
std::vector<std::string> SelectWriter::groupTerms() const {
  std::vector<std::string> terms = identities();
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    if (!select_.groups[i].isFixed) terms.push_back(sortKey(groups_[i]));
  }
  if (terms.empty() && !groups_.empty()) terms.push_back(sortKey(groups_.front()));
  return terms;
}

std::vector<std::string> SelectWriter::orderTerms() const {
  std::vector<std::string> terms;
  for (std::size_t i = 0; i < order_.size(); ++i) {
    terms.push_back(sortKey(order_[i]) + (select_.order[i].descending ? " DESC" : ""));
  }
  return terms;
}

std::string SelectWriter::sql(const std::vector<std::string>& columns, bool keepsOrder) const {
  const bool distinct = select_.duplicates == Select::Duplicates::kDistinct;
  const std::vector<std::string> terms = orderTerms();
  const bool ranks = select_.top && (!terms.empty() || select_.topIsPercent);
  std::vector<std::string> list;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    list.push_back(columns[i] + " AS c" + std::to_string(i));
  }
  if (list.empty()) list.emplace_back("NULL AS c0");
  if (ranks && !distinct) {
    for (std::size_t i = 0; i < order_.size(); ++i) {
      list.push_back(valueOf(order_[i]) + " AS o" + std::to_string(i));
    }
  }

  std::string sql = std::string(distinct ? "SELECT DISTINCT " : "SELECT ") + joined(list, ", ") +
                    clause("FROM", from_) + clause("WHERE", joined(conditions_, " AND ")) +
                    clause("GROUP BY", joined(groupTerms(), ", ")) + clause("HAVING", having_);
  if (ranks) return ranked(sql, list.size() - (distinct ? 0 : order_.size()));
  if (keepsOrder || select_.top) sql += clause("ORDER BY", joined(terms, ", "));
  if (select_.top) sql += " LIMIT " + std::to_string(*select_.top);
  return sql;
}

// TOP with an order or a percentage: rows that tie with the last one wanted are kept, which LIMIT
// would cut off.
std::string SelectWriter::ranked(const std::string& sql, std::size_t columns) const {
  const bool distinct = select_.duplicates == Select::Duplicates::kDistinct;
  std::vector<std::string> by;
  for (std::size_t i = 0; i < order_.size(); ++i) {
    std::string column = "o" + std::to_string(i);
    if (distinct) {
      const auto output =
          std::ranges::find(select_.outputs, select_.order[i].value, &typed::Output::value);
      column = "c" + std::to_string(output - select_.outputs.begin());
    }
    by.push_back(collated({column, order_[i].type}) + (select_.order[i].descending ? " DESC" : ""));
  }
  const std::string names = numberedColumns("c", columns);
  const std::string rank =
      by.empty() ? "row_number() OVER ()" : "rank() OVER (ORDER BY " + joined(by, ", ") + ")";
  const std::string most = select_.topIsPercent
                               ? "(n * " + std::to_string(*select_.top) + " + 99) / 100"
                               : std::to_string(*select_.top);
  return "SELECT " + names + " FROM (SELECT " + names + ", " + rank +
         " AS k, count(*) OVER () AS n FROM (" + sql + ")) WHERE k <= " + most + " ORDER BY k";
}

std::string SelectWriter::distinctValues(const typed::Expression& value) const {
  return "SELECT DISTINCT " + collated(ExpressionWriter(writer_).write(value)) + " AS c0" +
         clause("FROM", from_) + clause("WHERE", joined(conditions_, " AND ")) + " ORDER BY 1";
}

}  // namespace jetsql
