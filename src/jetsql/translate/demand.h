// Conditions that a query puts on the columns of a saved query in its FROM, as they are handed down
// into it. SQLite moves a condition into one grouped subquery, but not through it into the next, so
// that a day of a sum over a sum would read every day; handed down, it stands where the rows are
// read. The condition itself stays where it was: a demand only keeps rows away earlier.
//
//   SELECT * FROM qrySum WHERE rdate = #8/2/2013#      gives the demand {rdate} = #8/2/2013#
//   qrySum: SELECT day AS rdate, Sum(net) FROM qryBase GROUP BY day
//                                                      hands {day} = #8/2/2013# on to qryBase
#pragma once

#include <string>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/sql_text.h"

namespace jetsql {

// column <operation> values[0], column Between values[0] And values[1], or column In (values): all
// of them fail for Null, so that they hold as well beneath the optional side of an outer join.
struct Demand {
  std::vector<std::string> path;  // the column, as a name of the FROM that it is handed to
  Expression::Kind kind = Expression::Kind::kBinary;
  Operator operation = Operator::kEqual;
  std::vector<Sql> values;
};

struct DemandShape {
  const Expression* column = nullptr;  // a Name
  Expression::Kind kind = Expression::Kind::kBinary;
  Operator operation = Operator::kEqual;
  std::vector<const Expression*> values;  // without names in them
};

// Those of the conditions joined by And that can be handed down.
[[nodiscard]] std::vector<DemandShape> demandShapes(const Expression* where);

// Which item of the select list the demand is on, as a demand on the select's own FROM; nothing
// where the item is no plain field.
[[nodiscard]] std::vector<Demand> handedOn(const Select& select,
                                           const std::vector<Demand>& demands);

// The names by which a select's items are known outside; empty for * and unnamed expressions.
[[nodiscard]] std::vector<std::string> itemNames(const Select& select);

// The demands of a union's first part as those of another part of it, column by column.
[[nodiscard]] std::vector<Demand> renamed(const std::vector<Demand>& demands, const Select& from,
                                          const Select& to);

// The condition on a value.
[[nodiscard]] std::string demandText(const Demand& demand, const Sql& value);

}  // namespace jetsql
