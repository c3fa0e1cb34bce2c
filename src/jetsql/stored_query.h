// A saved query as the file keeps it - rows of MSysQueries, one attribute each - made into Jet SQL.
//
//   SavedQuery query = rebuildQuery("qrySum", rows);
//   query.text:  SELECT Selling.rDate, Sum(Selling.price) AS prices FROM [Selling] GROUP BY ...
//
// Pure over the rows, in any order. Nothing is thrown: a query that gives no rows (action, data
// definition, pass-through) or whose rows make no sense carries the number of its refusal:
// 3219 not a query that gives rows, 3129 not to be understood.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jetsql/schema.h"

namespace jetsql {

// The columns of MSysQueries; Null texts are empty.
struct QueryRow {
  int attribute = 0;
  std::string order;  // the bytes of the column Order; rows of one attribute sort by it
  std::string name1;
  std::string name2;
  std::string expression;
  std::int32_t flag = 0;
};

[[nodiscard]] SavedQuery rebuildQuery(const std::string& name, std::vector<QueryRow> rows);

}  // namespace jetsql
