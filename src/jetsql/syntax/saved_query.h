// A saved query as the file keeps it - rows of MSysQueries, one clause each - made into Jet SQL.
//
//   SavedQuery query = rebuildQuery("qrySum", database.queryRows(entry));
//   query.text:  SELECT Selling.rDate, Sum(Selling.price) AS prices FROM [Selling] GROUP BY ...
//
// Pure over the rows, which come by attribute and then by order. Nothing is thrown: a query that
// gives no rows (action, data definition, pass-through) or whose rows make no sense carries the
// number of its refusal: 3219 not a query that gives rows, 3129 not to be understood.
#pragma once

#include <span>
#include <string>

#include "jet/format/query_attributes.h"

namespace jetsql {

struct SavedQuery {
  std::string name;    // as the catalogue writes it
  std::string text;    // Jet SQL; empty when refused
  int refusal = 0;     // error number by which any use of it is refused; 0: it can be read
  std::string reason;  // the refusal's description
};

[[nodiscard]] SavedQuery rebuildQuery(const std::string& name, std::span<const jet::QueryRow> rows);

}  // namespace jetsql
