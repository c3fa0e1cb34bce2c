// A table: its rows in the order of the file, one row by its RowId, and rows by an index.
//
//   auto scan = table.scan();
//   while (scan.next()) use(scan.row().value(column));
//
//   auto found = table.seek(realIndex, {.equal = {Variant(saleId)}});
//   while (found.next()) use(table.read(found.rowId()));
//
// A Table belongs to its Database, which must outlive it; cursors and rows refer to the Table.
// The point-of-sale program may change the file meanwhile: each page is checked as it is read.
// Errors: 3049 damage (a damaged index is never taken for an answer), 3167 a row that is gone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/index/index_cursor.h"
#include "jet/pages/page_file.h"
#include "jet/rows/row.h"

namespace jet {

class Table;

// Walks every row once. A row forwarded to another page comes at its first place.
class TableCursor {
 public:
  explicit TableCursor(Table& table);

  // False after the last row.
  [[nodiscard]] bool next();

  // The row that next() reached; valid until the next call, unless copied.
  [[nodiscard]] const Row& row() const { return row_; }

  // Starts again, with the pages that the table has now.
  void rewind();

 private:
  [[nodiscard]] bool nextPage();

  Table* table_;
  std::vector<std::uint32_t> pages_;
  std::size_t nextPage_ = 0;
  PagePtr page_;
  std::uint16_t nextRow_ = 0;
  std::uint16_t rowsOnPage_ = 0;
  Row row_;
};

class Table {
 public:
  enum class Freshness { kCached, kFresh };

  Table(PageFile& file, TextDecoder& text, TableDefinition definition);
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  ~Table();

  [[nodiscard]] const TableDefinition& definition() const { return definition_; }
  [[nodiscard]] const std::string& name() const { return definition_.name; }
  [[nodiscard]] PageFile& file() { return file_; }

  [[nodiscard]] TableCursor scan() { return TableCursor(*this); }

  // The row of that id. Error 3167 when it is deleted or was never there. Fresh reads the file even
  // where the cache has the page: for a row that is about to be edited.
  [[nodiscard]] Row read(RowId id, Freshness freshness = Freshness::kCached);

  // The same into an existing Row; false instead of 3167.
  [[nodiscard]] bool tryRead(RowId id, Row& row, Freshness freshness = Freshness::kCached);

  // The same as cached, for a walk over rows of which many follow on one page: the page is taken
  // from `row` where that was read from it, as it was then, unless another user has changed the
  // file since.
  [[nodiscard]] bool tryReadNext(RowId id, Row& row);

  // The same, however old the page is: for a walk that began with a row of its own or a current
  // one. Asking whether others have changed the file takes a third of the whole.
  [[nodiscard]] bool tryReadInWalk(RowId id, Row& row);

  // True when an index's first `columns` key columns are of kinds that seek can encode: Yes/No,
  // whole numbers, Currency, single, double, date; for equalities alone and where hasKey: text in
  // the sort order "General", GUID, binary, ascending Numeric.
  [[nodiscard]] bool canSeek(std::size_t realIndex, std::size_t columns = 1) const;

  // The rows that a range of an index names, in the index's order; see jet/index/key_range.h. An
  // empty range names all rows that are in the index.
  // `realIndex` is a position in definition().realIndexes. Error 3001 for a range that canSeek
  // denies.
  [[nodiscard]] IndexCursor seek(std::size_t realIndex, const KeyRange& range);

  // A data page of this table, checked: kind, owner, row offsets.
  [[nodiscard]] PagePtr dataPage(std::uint32_t number, Freshness freshness = Freshness::kCached);

 private:
  friend class TableCursor;

  // False for a deleted row; follows forward pointers.
  [[nodiscard]] bool rowAt(const PagePtr& page, std::uint16_t row, Row& out, Freshness freshness);

  PageFile& file_;
  TableDefinition definition_;
  RowContext context_;
  IndexPageCache indexPages_;
};

}  // namespace jet
