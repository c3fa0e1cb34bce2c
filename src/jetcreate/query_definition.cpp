#include "jetcreate/query_definition.h"

#include <map>
#include <utility>

namespace jetcreate {

using namespace jet;

namespace {

values::Variant textOrNull(const std::string& text) {
  return text.empty() ? values::Variant() : values::Variant(text);
}

// What a clause says, beside its attribute.
struct Clause {
  std::int16_t flag = 0;
  std::string expression = {};
  std::string name1 = {};
  std::string name2 = {};
};

class RowList {
 public:
  void add(QueryAttribute attribute, const Clause& clause = {}) {
    QueryRow row;
    row.attribute = attribute;
    row.flag = clause.flag;
    row.expression = textOrNull(clause.expression);
    row.name1 = textOrNull(clause.name1);
    row.name2 = textOrNull(clause.name2);
    const std::uint32_t place = ++counts_[attribute];  // high byte first
    for (int shift : {24, 16, 8, 0}) row.order.push_back(static_cast<std::byte>(place >> shift));
    rows_.push_back(std::move(row));
  }

  [[nodiscard]] std::vector<QueryRow> take() { return std::move(rows_); }

 private:
  std::map<QueryAttribute, std::uint32_t> counts_;
  std::vector<QueryRow> rows_;
};

void addSources(const QueryDefinition& query, RowList& rows) {
  for (const auto& table : query.tables) {
    rows.add(QueryAttribute::kTable, {.name1 = table.name, .name2 = table.alias});
  }
  int number = 0;
  for (const std::string& select : query.unionSelects) {
    rows.add(QueryAttribute::kTable,
             {.expression = select, .name2 = "X7YZ_____" + std::to_string(++number)});
  }
}

}  // namespace

std::vector<QueryRow> queryRows(const QueryDefinition& query) {
  RowList rows;
  rows.add(QueryAttribute::kStart);
  rows.add(QueryAttribute::kEnd);
  rows.add(QueryAttribute::kKind, {.flag = static_cast<std::int16_t>(query.kind),
                                   .expression = query.passThrough,
                                   .name1 = query.connect});
  for (const auto& parameter : query.parameters) {
    rows.add(QueryAttribute::kParameter, {.flag = parameter.type, .name1 = parameter.name});
  }
  rows.add(QueryAttribute::kOptions, {.flag = query.options, .name1 = query.top});
  addSources(query, rows);
  for (const auto& column : query.columns) {
    rows.add(QueryAttribute::kColumn,
             {.flag = column.crosstab, .expression = column.expression, .name1 = column.alias});
  }
  for (const auto& join : query.joins) {
    rows.add(QueryAttribute::kJoin, {.flag = static_cast<std::int16_t>(join.kind),
                                     .expression = join.condition,
                                     .name1 = join.left,
                                     .name2 = join.right});
  }
  if (!query.where.empty()) rows.add(QueryAttribute::kWhere, {.expression = query.where});
  for (const auto& group : query.groupBy) {
    rows.add(QueryAttribute::kGroupBy, {.flag = group.crosstab, .expression = group.expression});
  }
  if (!query.having.empty()) rows.add(QueryAttribute::kHaving, {.expression = query.having});
  for (const auto& order : query.orderBy) {
    rows.add(QueryAttribute::kOrderBy,
             {.expression = order.expression, .name1 = order.descending ? "D" : ""});
  }
  return rows.take();
}

std::uint32_t catalogueFlags(QueryKind kind) {
  switch (kind) {
    case QueryKind::kCrosstab:
      return 16;
    case QueryKind::kPassThrough:
      return 112;
    case QueryKind::kUnion:
      return 128;
    default:
      return 0;
  }
}

}  // namespace jetcreate
