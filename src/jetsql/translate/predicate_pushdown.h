// Predicates on the columns of saved queries and subqueries, pushed down to where the rows are
// read.
//
//   SELECT * FROM qrySum WHERE rdate = #8/2/2013#      the conjunct rdate = #8/2/2013#
//   qrySum: SELECT day AS rdate, Sum(net) FROM qryBase GROUP BY day
//                                                      gets the condition day = #8/2/2013#
//
// SQLite moves a condition into one grouped subquery, but not through it into the next, so that a
// day of a sum over a sum would read every day. The predicate itself stays where it was: pushed
// down, it only keeps rows away earlier.
#pragma once

#include "jetsql/translate/typed_tree.h"

namespace jetsql {

// Pushes the conjuncts of the select's conditions that compare a column of a query in its FROM with
// constants (=, <, <=, >, >=, Between, In) into that query and those within. All of them fail for
// Null, so that they hold as well on the optional side of an outer join. To be done once for each
// select, after the selects within.
void pushDown(typed::Select& select);

}  // namespace jetsql
