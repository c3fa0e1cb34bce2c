// Equalities of computed values between the relations of a FROM, by which rows are looked up.
//
//   Sales AS a INNER JOIN Items AS b ON CStr(a.id) = CStr(b.s_id)
//       a lookup of the rows of a: key CStr(a.id), value CStr(b.s_id)
//
// No index of a table serves them, so that every row of one side would be compared with every row
// of the other. An equality of a plain field is left to the access paths of its table.
#pragma once

#include <cstddef>
#include <vector>

#include "jetsql/translate/typed_tree.h"

namespace jetsql {

struct JoinLookup {
  const typed::Join* join = nullptr;  // whose ON has the equality; none: the WHERE
  const typed::Relation* relation = nullptr;
  typed::Expression key;             // of the relation's fields and constants
  std::vector<std::size_t> columns;  // of the relation that it reads
  typed::Expression value;           // of other relations

  // By a lasting table of keys; else by a key among the columns of the rows, computed for the
  // query.
  [[nodiscard]] bool hasLastingRows() const {
    return relation->table != nullptr && relation->table->updatable;
  }
};

// At most one for each equality and relation: of the table with the fewer rows, of a query only
// where the other side is none or cannot be looked up.
[[nodiscard]] std::vector<JoinLookup> joinLookups(const typed::Select& select);

}  // namespace jetsql
