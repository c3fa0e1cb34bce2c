// Rows by the value of an expression over one table, kept in SQLite as temporary tables (key, row):
//
//   SELECT * FROM qryCard WHERE day = '13.08.02'      where day is Left([date], 2) & '.' & ...
//
// No index of the file helps there, and a job asks it for day after day. So the expression is
// computed once for every row; later days find their rows by it. Values are those of the moment of
// building; rows that this program has changed since are computed again before the next query.
// Private to the room. Errors: whatever the expression raises for a row.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "jetsql/translate/catalogue.h"

struct sqlite3;

namespace jetsql {

class JetTable;

class ComputedKeys {
 public:
  // The name of the table of keys, built by now; nothing where a scan is as good.
  [[nodiscard]] std::optional<std::string> find(sqlite3* connection, const JetTable& table,
                                                const ComputedKey& key);

  // Computes again what changes to the tables have made stale.
  void refresh(sqlite3* connection);

 private:
  struct Known {
    const JetTable* table;
    ComputedKey key;
    std::string name;
    std::size_t changes = 0;  // of its columns when it was built
  };

  static std::size_t changesOf(const Known& known);
  static bool build(sqlite3* connection, Known& known);

  std::vector<Known> known_;
};

}  // namespace jetsql
