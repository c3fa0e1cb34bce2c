// One walk of SQLite over a Jet table: begun by filter() with an access path and the values that it
// compares with, then row by row. Used through virtual_module.h. Private to the room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "jet/table.h"
#include "jetsql/sqlite/access_path.h"
#include "jetsql/sqlite/jet_table.h"
#include "jetsql/sqlite/memory_index.h"
#include "jetsql/sqlite/value_encoding.h"

struct sqlite3_context;

namespace jetsql {

class JetTableCursor {
 public:
  explicit JetTableCursor(JetTable& table) : table_(table) {}

  // `order`: the terms of RowSorter where the path says that its rows are to be sorted here.
  void filter(int packedPath, std::string_view order, std::span<const EncodedValue> values) {
    filter(AccessPath::unpacked(packedPath), order, values);
  }
  void filter(const AccessPath& path, std::string_view order, std::span<const EncodedValue> values);

  // Lets go of the rows and of what they are found by, until the next filter().
  void close();

  [[nodiscard]] bool atEnd() const { return atEnd_; }
  void next() { atEnd_ = !advance(); }

  // The row at hand, for who reads it without SQLite; valid until the next one.
  [[nodiscard]] const jet::Row& row() const;

  [[nodiscard]] std::int64_t rowid() const { return row().id().number(); }
  void setColumn(sqlite3_context* context, int column);

 private:
  // Rows by their numbers: the one of a rowid, or those that were sorted.
  struct RowNumbers {
    std::size_t next = 0;  // in rowNumbers_
  };
  struct MemoryIndexEntries {
    std::shared_ptr<const MemoryIndex> index;  // owns `entries`
    std::span<const MemoryIndex::Entry> entries;
  };
  // Where the rows come from; std::monostate: there are none.
  using RowSource = std::variant<std::monostate, jet::TableCursor, KeyScan, jet::IndexCursor,
                                 MemoryIndexEntries, RowNumbers>;

  void begin(const AccessPath& path, std::span<const EncodedValue> values);
  void beginRow(const EncodedValue& value);
  void beginFileIndex(const AccessPath& path, std::span<const EncodedValue> values);
  void beginWithoutKey(const AccessPath& path, const jet::KeyRange& before,
                       std::span<const EncodedValue> text);
  void beginMemoryIndex(const AccessPath& path, std::span<const EncodedValue> values);
  void sortRows(std::string_view order);

  // To the next row; false after the last.
  [[nodiscard]] bool advance();
  // The row of the next number that names one: an index may still name a row that is gone.
  template <typename NextNumber>
  [[nodiscard]] bool readNext(NextNumber nextNumber);

  void setComputed(sqlite3_context* context, const RowExpression& expression);

  JetTable& table_;
  RowSource source_;
  bool atEnd_ = true;
  jet::KeyRange range_;  // of an index of the file
  std::vector<std::int64_t> rowNumbers_;
  jet::Row row_;  // where source_ is no scan; scans have their own
  std::string text_;
  std::vector<std::byte> binary_;
};

}  // namespace jetsql
