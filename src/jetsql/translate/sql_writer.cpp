#include "jetsql/translate/sql_writer.h"

#include <charconv>
#include <optional>
#include <utility>

#include "jetsql/translate/fields_read.h"
#include "jetsql/translate/sql_writer_expression.h"
#include "jetsql/translate/sql_writer_select.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr std::string_view kNamePrefix = "nested_";

}  // namespace

RelationNames namesUnder(const std::string& alias, const typed::Relation& relation) {
  RelationNames names;
  if (relation.table != nullptr) names.rowid = alias + ".rowid";
  for (std::size_t i = 0; i < relation.columns().size(); ++i) {
    names.columns.push_back(alias + ".c" + std::to_string(i));
  }
  return names;
}

Translation SqlWriter::statement(const typed::Query& query) {
  if (query.selects.size() == 1 && !query.crosstab) return rows(query.selects.front());
  Translation result;
  result.sql = withNamed(this->query(query));
  for (const CatalogueColumn& column : query.columns) {
    result.columns.push_back({column.name, column.type, std::nullopt, result.computedCount++});
  }
  return result;
}

// A select that keeps rows apart gives row identities where it can; any other gives values.
Translation SqlWriter::rows(const typed::Select& select) {
  const SelectWriter writer(*this, select);
  Translation result;
  const bool keepsRows = !select.grouped && select.duplicates != Select::Duplicates::kDistinct;
  const auto sourceOf = [&](const typed::Output& output) {
    const auto* field = keepsRows && output.isField ? output.value.as<typed::Field>() : nullptr;
    const bool lasts =
        field != nullptr && field->relation->table != nullptr && field->relation->table->updatable;
    return lasts ? field : nullptr;
  };
  std::unordered_map<const typed::Relation*, std::size_t> position;
  std::vector<std::string> projection;
  for (const typed::Output& output : select.outputs) {
    const typed::Field* field = sourceOf(output);
    if (field == nullptr || !position.emplace(field->relation, result.sources.size()).second) {
      continue;
    }
    result.sources.push_back({field->relation->table, field->relation->name});
    projection.push_back(names(field->relation).rowid);
  }
  const std::vector<std::string> values = writer.values();
  for (std::size_t i = 0; i < select.outputs.size(); ++i) {
    const typed::Output& output = select.outputs[i];
    Translation::Column column{output.name, output.value.type(), std::nullopt, 0};
    if (const typed::Field* field = sourceOf(output)) {
      column.base = {position.at(field->relation), field->column};
    } else {
      column.computed = result.computedCount++;
      projection.push_back(values[i]);
    }
    result.columns.push_back(std::move(column));
  }
  if (keepsRows && select.relations.size() == 1 && result.sources.size() == 1) result.updatable = 0;
  result.sql = withNamed(writer.sql(projection, true));
  return result;
}

Translation SqlWriter::distinctValues(const typed::Select& select, const typed::Expression& value) {
  Translation result;
  result.sql = withNamed(SelectWriter(*this, select).distinctValues(value));
  result.columns.push_back({"c0", value.type(), std::nullopt, 0});
  result.computedCount = 1;
  result.exactTextOnly = true;
  return result;
}

std::string SqlWriter::query(const typed::Query& query) {
  if (query.crosstab) return crosstab(query);
  if (query.selects.size() > 1) return unionOf(query);
  const SelectWriter writer(*this, query.selects.front());
  return writer.sql(writer.values(), query.keepsOrder);
}

// SQLite's parser takes some 14 queries inside each other. Common table expressions are expanded
// later, by code that takes more, and their names are resolved where the table is mentioned: a
// query that reads fields of the queries around it still finds them, since no two relations of a
// statement have the same alias.
SqlWriter::Nested SqlWriter::nested(const typed::Query& query, Mentions mentions) {
  constexpr std::size_t kMaxNested = 5;
  constexpr std::size_t kMaxLength = 1'000'000;  // what SQLite takes
  ++depth_;
  std::string sql = this->query(query);
  const std::size_t length = expandedLength(sql);
  if (length > kMaxLength) throw RuntimeError(error::kQueryTooComplex, "Query is too complex.");
  if (--depth_ < kMaxNested && mentions == Mentions::kOne) return {std::move(sql), false};
  std::string name = std::string(kNamePrefix) + std::to_string(named_.size());
  named_.push_back({name + " AS (" + sql + ")", length});
  return {std::move(name), true};
}

// A query may be mentioned several times in the text around it: those within each other would grow
// without end.
std::size_t SqlWriter::expandedLength(std::string_view sql) const {
  std::size_t length = sql.size();
  for (auto at = sql.find(kNamePrefix); at != sql.npos; at = sql.find(kNamePrefix, at + 1)) {
    std::size_t number = 0;
    const char* digits = sql.data() + at + kNamePrefix.size();
    std::from_chars(digits, sql.data() + sql.size(), number);
    if (number < named_.size()) length += named_[number].length;
  }
  return length;
}

std::string SqlWriter::withNamed(const std::string& sql) const {
  std::string named;
  for (const CommonTable& table : named_) named += (named.empty() ? "" : ", ") + table.sql;
  return named.empty() ? sql : "WITH " + named + " " + sql;
}

std::string SqlWriter::derived(const typed::Query& query) {
  Nested inside = nested(query, Mentions::kOne);
  return inside.isName ? std::move(inside.sql) : "(" + inside.sql + ")";
}

// Beside another relation it might be computed again for each row of that.
std::string SqlWriter::onlySource(const typed::Query& query) {
  if (aggregates_) {
    if (auto table = catalogue_.aggregateTable(query)) return *std::move(table);
  }
  return derived(query);
}

std::string SqlWriter::subquery(const typed::Query& query, Mentions mentions) {
  const ColumnErrors around = std::exchange(errors_, ColumnErrors::kRaise);
  Nested inside = nested(query, mentions);
  errors_ = around;
  return inside.isName ? "SELECT * FROM " + inside.sql : std::move(inside.sql);
}

std::optional<std::string> SqlWriter::keyTable(const typed::Relation& relation,
                                               const std::vector<typed::Expression>& keys,
                                               double minRows) {
  if (relation.table == nullptr || relation.table->rows < minRows) return std::nullopt;
  std::vector<IndexedExpression> indexed;
  indexed.reserve(keys.size());
  for (const typed::Expression& key : keys) indexed.push_back(this->indexed(relation, key));
  return catalogue_.expressionIndex(*relation.table, indexed);
}

std::optional<std::string> SqlWriter::computedColumn(const typed::Relation& relation,
                                                     const typed::Expression& key) {
  if (relation.table == nullptr) return std::nullopt;
  return catalogue_.computedColumn(*relation.table, indexed(relation, key));
}

IndexedExpression SqlWriter::indexed(const typed::Relation& relation,
                                     const typed::Expression& key) {
  RelationNames around = std::exchange(names(&relation), namesUnder("k", relation));
  IndexedExpression indexed{valueOf(ExpressionWriter(*this).write(key)), columnsRead(key),
                            key.type() == values::VariantType::kText, key};
  names(&relation) = std::move(around);
  return indexed;
}

std::string SqlWriter::unionOf(const typed::Query& query) {
  std::string sql;
  for (std::size_t i = 0; i < query.selects.size(); ++i) {
    if (i > 0) sql += query.keepsAll[i - 1] ? " UNION ALL " : " UNION ";
    sql += unionPart(query, query.selects[i]);
  }
  std::vector<std::string> terms;
  for (const typed::UnionOrder& order : query.order) {
    terms.push_back(
        std::to_string(order.column + 1) +
        (query.columns[order.column].type == values::VariantType::kText ? " COLLATE JET" : "") +
        (order.descending ? " DESC" : ""));
  }
  return sql + clause("ORDER BY", joined(terms, ", "));
}

std::string SqlWriter::unionPart(const typed::Query& query, const typed::Select& select) {
  const SelectWriter writer(*this, select);
  std::vector<std::string> values;
  for (std::size_t i = 0; i < query.columns.size(); ++i) {
    const TypedSql value = convertTo(writer.outputs()[i], query.columns[i].type);
    values.push_back(collated({valueOf(value), value.type}));
  }
  std::string sql = writer.sql(values, true);
  if (!select.top && select.order.empty()) return sql;
  return "SELECT " + numberedColumns("c", values.size()) + " FROM (" + sql + ")";
}

}  // namespace jetsql
