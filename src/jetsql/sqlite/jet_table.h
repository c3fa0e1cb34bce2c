// A Jet table as SQLite sees it: a virtual table whose columns are c0, c1, ... and whose rowid is
// jet::RowId::number. A column is decoded when SQLite asks for it. Columns x0, x1, ... are texts
// that queries compute from a row's fields and compare; they are found by an index in memory.
//
// Equality and ranges use the file's own index where there is one that can be searched for these
// columns; otherwise an index built in memory (see indexFor); otherwise a scan. SQLite compares
// every row again, so each access path may give rows too many but none too few.
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
#include "jetsql/sqlite/row_expression.h"
#include "jetsql/translate/catalogue.h"

struct sqlite3;
struct sqlite3_index_info;

namespace jetsql {

class JetTable {
 public:
  static constexpr std::size_t kComputedColumns = 16;

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
  [[nodiscard]] const std::string& nameOf(std::size_t column) const;

  [[nodiscard]] const CatalogueTable& schema() const { return schema_; }
  [[nodiscard]] jet::Table& table() const { return table_; }
  [[nodiscard]] jet::Database& database() const { return database_; }
  [[nodiscard]] CallbackContext& callbacks() const { return callbacks_; }

  // Rows that the table may have, for estimates; at least 1.
  [[nodiscard]] double estimatedRows() const;

  // A column's type: of the schema, then of the computed ones that are in use.
  [[nodiscard]] std::size_t columnCount() const {
    return schema_.columns.size() + computed_.size();
  }
  [[nodiscard]] values::VariantType typeOf(std::size_t column) const;

  // The name of the column that has the expression's values; nothing where it is not computed from
  // single rows, has failed for one, or all columns are taken.
  [[nodiscard]] std::optional<std::string> computedColumn(const IndexedExpression& key);

  // Of a computed column: its value. Null where the schema has the column.
  [[nodiscard]] const RowExpression* expressionOf(std::size_t column) const;

  // How often updateRows() has changed the column.
  [[nodiscard]] std::size_t changesOf(std::size_t column) const { return uses_[column].changes; }
  [[nodiscard]] std::size_t changes() const { return changes_; }  // of any column

  // Called once per lookup by the column: its index, or nullptr, for which the caller scans. The
  // first key that is asked for gets an index of its rows alone, so that a job of one day scans
  // once and keeps nothing of other days; a second key, or any lookup after a first range, one of
  // all rows, up to a limit. One that other users' changes have outdated (build_age.h) is built
  // again.
  [[nodiscard]] std::shared_ptr<const MemoryIndex> indexFor(std::size_t column,
                                                            const KeyInterval& keys);

  // Whether the column's index, as far as it covers keys, has every row of the file as it is known.
  [[nodiscard]] bool hasCurrentIndex(std::size_t column) const {
    return uses_[column].index != nullptr && uses_[column].age->isCurrent();
  }

  // Saves the same values in fields of each of the rows and drops the indexes in memory on them.
  // The engine's errors: 3027, 3167, 3218, 3260, ...
  void updateRows(std::span<const jet::RowToUpdate> rows, std::span<const jet::FieldValue> fields);

 private:
  struct ColumnUse {
    bool lookedUp = false;
    std::size_t changes = 0;
    std::shared_ptr<const MemoryIndex> index;
    // Where that is of one key of a computed column: the entries of all keys, which took most of
    // the time, for the index of all rows.
    std::vector<MemoryIndex::Entry> entries;
    std::optional<BuildAge> age;  // of both

    void forget() {
      index = nullptr;
      entries.clear();
    }
  };

  struct ComputedColumn {
    std::string sql;   // of the expression
    std::string name;  // for reports
    std::vector<std::size_t> reads;
    std::unique_ptr<RowExpression> expression;
    bool failed = false;  // with an error for some row
  };

  [[nodiscard]] std::shared_ptr<const MemoryIndex> build(std::size_t column,
                                                         const KeyInterval& covered);
  [[nodiscard]] std::shared_ptr<const MemoryIndex> memoryIndex(std::size_t column,
                                                               const KeyInterval& covered);
  [[nodiscard]] std::shared_ptr<const MemoryIndex> computedIndex(std::size_t column,
                                                                 const KeyInterval& covered);

  jet::Database& database_;
  jet::Table& table_;
  CatalogueTable schema_;
  CallbackContext& callbacks_;
  std::vector<ColumnUse> uses_;
  std::size_t changes_ = 0;
  std::vector<ComputedColumn> computed_;
};

}  // namespace jetsql
