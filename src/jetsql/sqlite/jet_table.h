// A Jet table as SQLite sees it: a virtual table whose columns are c0, c1, ... and whose rowid is
// jet::RowId::number. A column is decoded when SQLite asks for it.
//
// Equality and ranges use the file's own index where there is one that can be searched for these
// columns; otherwise an index built in memory, from the second lookup by the same column on;
// otherwise a scan. SQLite compares every row again, so each access path may give rows too many but
// none too few.
//
//   JetTable menu(database, database.openTable("Set_Menu1"), "Set_Menu1", "t3", callbacks);
//   menu.registerIn(connection);      // SELECT c0 FROM t3 WHERE c1 = ?
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/database.h"
#include "jet/table.h"
#include "jetsql/sqlite/build_age.h"
#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/memory_index.h"
#include "jetsql/sqlite/query_report.h"
#include "jetsql/translate/catalogue.h"

struct sqlite3;
struct sqlite3_index_info;

namespace jetsql {

class JetTable {
 public:
  // The database, its table and the callbacks outlive this; this outlives the connection it is
  // registered in.
  JetTable(jet::Database& database, jet::Table& table, std::string name, std::string sqliteName,
           CallbackContext& callbacks);
  JetTable(const JetTable&) = delete;
  JetTable& operator=(const JetTable&) = delete;
  ~JetTable() = default;

  void registerIn(sqlite3* connection);

  // Called by the planner; see access_path.h.
  void chooseAccessPath(sqlite3_index_info& info) const;

  // How a run by a plan reads the table.
  [[nodiscard]] QueryReport::TableRead describe(int plan, std::string_view order) const;
  // Of a column, for reports.
  [[nodiscard]] const std::string& nameOf(std::size_t column) const {
    return schema_.columns[column].name;
  }

  [[nodiscard]] const CatalogueTable& schema() const { return schema_; }
  [[nodiscard]] jet::Table& table() const { return table_; }
  [[nodiscard]] jet::Database& database() const { return database_; }
  [[nodiscard]] CallbackContext& callbacks() const { return callbacks_; }

  // Rows that the table may have, for estimates; at least 1.
  [[nodiscard]] double estimatedRows() const;

  // How often updateRows() has changed the column.
  [[nodiscard]] std::size_t changesOf(std::size_t column) const { return uses_[column].changes; }

  // Called once per lookup by the column: its index, from the second lookup on and up to a limit of
  // rows, else nullptr (the caller scans). One that other users' changes have outdated
  // (build_age.h) is built again.
  [[nodiscard]] std::shared_ptr<const MemoryIndex> indexFor(std::size_t column);

  // Saves the same values in fields of each of the rows and drops the indexes in memory on them.
  // The engine's errors: 3027, 3167, 3218, 3260, ...
  void updateRows(std::span<const jet::RowId> rows, std::span<const jet::FieldValue> fields);

 private:
  struct ColumnUse {
    int lookups = 0;
    std::size_t changes = 0;
    std::shared_ptr<const MemoryIndex> index;
    std::optional<BuildAge> age;  // of the index
  };

  jet::Database& database_;
  jet::Table& table_;
  CatalogueTable schema_;
  CallbackContext& callbacks_;
  std::vector<ColumnUse> uses_;
};

}  // namespace jetsql
