// The rows of a joined table that have a key, looked up again and again.
//
//   JoinedRows menu(table, column);
//   menu.forEach(7, [&](const jet::Row& row) { ... });   // rows whose whole-number column is 7
//
// A table of few rows is read once; of a larger one the rows are found by an index of the file, or
// by one in memory (jet_table.h). It lasts for one run of a query. Errors: the Jet engine's;
// NotWhole where neither index can be had. Private to the room.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "jet/table.h"
#include "jetsql/sqlite/jet_table.h"

namespace jetsql {

class JoinedRows {
 public:
  using EachRow = std::function<void(const jet::Row& row)>;

  // The table outlives this.
  JoinedRows(JetTable& table, std::size_t column);

  // Whether each row is at one address for good.
  [[nodiscard]] bool staysInMemory() const { return isSmall_; }

  void forEach(std::int64_t key, const EachRow& eachRow);

 private:
  void readAll();
  void visit(jet::RowId id, std::int64_t key, const EachRow& eachRow);
  [[nodiscard]] bool hasKey(const jet::Row& row, std::int64_t key) const {
    return !row.isNull(column_) && row.wholeNumber(column_) == key;
  }

  JetTable& table_;
  std::size_t column_;
  bool isSmall_;
  std::unordered_map<std::int64_t, std::vector<jet::Row>> rows_;  // of a small table, by key
  std::optional<std::size_t> fileIndex_;
  std::shared_ptr<const MemoryIndex> memoryIndex_;
  jet::Row row_;
};

}  // namespace jetsql
