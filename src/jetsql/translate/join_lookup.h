// Equalities of computed values between the relations of a FROM, by which rows are looked up.
//
//   Sales AS a INNER JOIN Items AS b ON CStr(a.id) = CStr(b.s_id) AND CStr(a.day) = b.day & ''
//       a lookup of the rows of a: CStr(a.id) by CStr(b.s_id), CStr(a.day) by b.day & ''
//
// No index of a table serves them, so that every row of one side would be compared with every row
// of the other. An equality of a plain field is left to the access paths of its table.
#pragma once

#include <vector>

#include "jetsql/translate/fields_read.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

struct JoinLookup {
  struct Key {
    typed::Expression expression;  // of the fields of what is looked up, and constants
    typed::Expression value;       // of other relations
  };

  const typed::Join* join = nullptr;  // whose ON has the equalities; none: the WHERE
  // Whose rows are looked up. Of a join that is the optional side of an outer one: its first.
  const typed::Relation* relation = nullptr;
  bool isJoin = false;
  Relations others;  // that the values are of
  std::vector<Key> keys;

  // By a lasting table of keys; else by keys among the columns of the rows, computed for the query.
  [[nodiscard]] bool hasLastingRows() const {
    return !isJoin && relation->table != nullptr && relation->table->updatable;
  }
};

// At most one for each relation: of two tables the one with the fewer rows, of a query or a join
// only where the other side is none or cannot be looked up.
[[nodiscard]] std::vector<JoinLookup> joinLookups(const typed::Select& select);

}  // namespace jetsql
