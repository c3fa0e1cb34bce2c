// The FROM of a select as one table, as two that are joined, or as the groups of a query, with the
// queries without grouping that stand between looked through.
//
//   SELECT * FROM qryCards WHERE kind <> 3        qryCards: SELECT ... FROM Credit2 WHERE price > 0
//   flatFrom(select):  tables {Credit2}, queries {qryCards}, conditions {kind <> 3, price > 0}
//
// Refers to the tree that it is made from. Private to the room.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "jetsql/translate/typed_tree.h"

namespace jetsql {

struct FlatFrom {
  std::vector<const typed::Relation*> tables;   // rows[0], rows[1] of a JoinedRow
  std::vector<const typed::Relation*> queries;  // whose outputs are made of the tables' fields
  const typed::Join* join = nullptr;            // of the two tables
  const typed::Relation* grouped = nullptr;     // a query with groups; then there are no tables
  std::vector<typed::Expression> conditions;    // of the select and the queries
  std::vector<typed::IndexedLookup> lookups;    // which repeat some of the conditions
};

struct TableField {
  std::size_t table = 0;  // of FlatFrom::tables
  std::size_t column = 0;

  bool operator==(const TableField&) const = default;
};

// The select of a query that is nothing else, and has all rows that its FROM and conditions give.
[[nodiscard]] const typed::Select* onlySelect(const typed::Query& query);

// Nothing for a FROM of another form.
[[nodiscard]] std::optional<FlatFrom> flatFrom(const typed::Select& select);

}  // namespace jetsql
