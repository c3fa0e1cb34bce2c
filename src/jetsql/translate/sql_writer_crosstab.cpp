// TRANSFORM ... PIVOT: the columns of the grouping, then one for each heading.
#include "jetsql/translate/sql_writer_expression.h"
#include "jetsql/translate/sql_writer_select.h"

namespace jetsql {

std::string SqlWriter::crosstab(const typed::Query& query) {
  const SelectWriter rows(*this, query.selects.front());
  std::vector<std::string> columns;
  for (const TypedSql& output : rows.outputs()) columns.push_back(valueOf(output));
  const ExpressionWriter plain(*this);
  for (const typed::Crosstab::Cell& cell : query.crosstab->cells) {
    const TypedSql pivot{valueOf(plain.write(cell.pivot)), cell.pivot.type()};
    const std::string filter = collated(pivot) + " IS " + valueOf(plain.write(cell.heading));
    const ExpressionWriter filtered(*this, filter);
    // A group without a row for the heading has Null there, whatever the aggregate: a count as
    // well.
    columns.push_back("CASE WHEN COUNT(*) FILTER (WHERE " + filter + ") > 0 THEN " +
                      valueOf(filtered.write(query.crosstab->value)) + " END");
  }
  return rows.sql(columns, true);
}

}  // namespace jetsql
