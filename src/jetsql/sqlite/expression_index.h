// Indexes over the values of expressions, kept in SQLite as temporary tables (key0, key1, ...,
// row):
//
//   SELECT * FROM qryCard WHERE day = '13.08.02'      where day is Left([date], 2) & '.' & ...
//
// No index of the file serves this condition, and a job asks it for day after day. So the
// expression is computed once for every row. Values are those of the moment of building; an index
// whose columns this session has written since, or that changes of other users have outdated
// (build_age.h), is rebuilt before the next query. Private to the room. Errors: whatever the
// expressions raise for a row.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "jetsql/sqlite/build_age.h"
#include "jetsql/translate/catalogue.h"

struct sqlite3;

namespace jetsql {

class JetTable;

class ExpressionIndexes {
 public:
  // The name of the temporary table, built on the first call; nothing where the table is too large,
  // there are too many, or an expression fails for a row.
  [[nodiscard]] std::optional<std::string> find(sqlite3* connection, const JetTable& table,
                                                const std::vector<IndexedExpression>& keys);

  // Rebuilds the indexes that writes to their tables have made stale.
  void refresh(sqlite3* connection);

 private:
  struct Index {
    const JetTable* table;
    std::vector<IndexedExpression> keys;
    std::string name;
    std::size_t changes = 0;  // writes to its columns before it was built
    BuildAge age;
  };

  static std::size_t changesOf(const Index& index);
  static bool build(sqlite3* connection, Index& index);

  std::vector<Index> indexes_;
};

}  // namespace jetsql
