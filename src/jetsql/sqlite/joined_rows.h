// The rows of a joined table that have a key, looked up again and again.
//
//   JoinedRows menu(table, column);
//   menu.forEach(7, [&](const JoinedRows::Found& found) { ... });   // whose column is 7
//
// A table of few rows is read once; of a larger one the rows are found by an index of the file, or
// by one in memory (jet_table.h). It lasts for one run of a query. Errors: the Jet engine's;
// NotWhole where neither index can be had. Private to the room.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "jet/table.h"
#include "jetsql/sqlite/jet_table.h"

namespace jetsql {

class JoinedRows {
 public:
  struct Found {
    const jet::Row& row;
    std::optional<std::size_t> number;  // of a small table: the same whenever this row is found
  };

  // The table outlives this.
  JoinedRows(JetTable& table, std::size_t column);

  // Gives them one after the other; a row lasts for the call.
  template <typename EachRow>
  void forEach(std::int64_t key, const EachRow& eachRow);

 private:
  struct KeptRow {
    std::int64_t key = 0;
    jet::Row row;
  };

  void readAll();
  [[nodiscard]] jet::IndexCursor entriesOf(std::int64_t key);
  // Into row_; false where the row has not the key. An index may name a row that has changed since,
  // or is gone.
  [[nodiscard]] bool tryRead(jet::RowId id, std::int64_t key) {
    return table_.table().tryReadNext(id, row_) && !row_.isNull(column_) &&
           row_.wholeNumber(column_) == key;
  }

  JetTable& table_;
  std::size_t column_;
  bool isSmall_;
  std::vector<KeptRow> rows_;  // of a small table, in the order of their keys
  std::optional<std::size_t> fileIndex_;
  jet::KeyRange range_;  // of it
  std::shared_ptr<const MemoryIndex> memoryIndex_;
  jet::Row row_;
};

template <typename EachRow>
void JoinedRows::forEach(std::int64_t key, const EachRow& eachRow) {
  if (isSmall_) {
    auto kept = std::ranges::lower_bound(rows_, key, {}, &KeptRow::key);
    for (; kept != rows_.end() && kept->key == key; ++kept) {
      eachRow(Found{kept->row, static_cast<std::size_t>(kept - rows_.begin())});
    }
  } else if (fileIndex_) {
    jet::IndexCursor entries = entriesOf(key);
    while (entries.next()) {
      if (tryRead(entries.rowId(), key)) eachRow(Found{row_, {}});
    }
  } else {
    for (const MemoryIndex::Entry& entry : memoryIndex_->range({key, key})) {
      if (tryRead(jet::RowId::fromNumber(entry.row), key)) eachRow(Found{row_, {}});
    }
  }
}

}  // namespace jetsql
