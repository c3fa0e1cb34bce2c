// A table as a till changes it: rows come, change and go, with their index entries, pages, and the
// count of rows and last AutoNumber of the definition.
//
//   PageEdits edits(file, locks);
//   const std::int32_t number = sales.nextNumber(edits);
//   const RowId id = sales.insert(edits, sales.patched(oldRow, {{"S_ID", number}, {"rDate",
//   day}})); sales.change(edits, id, {{"rDate", otherDay}}); sales.remove(edits, id);
//   edits.writeAll();
//
// Written to be killed: rows come before their entries and entries go before their rows, so after
// each write no entry names a row that is not there, every page has one owner, and repair() can
// make the rest follow from the rows. Rows are made of others, with fields of fixed size patched;
// those with values on pages of their own are no templates and are not removed.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "jet/index/index_edit.h"
#include "jet/pages/data_page.h"
#include "jet/pages/page_edits.h"
#include "jet/rows/row_patch.h"
#include "jet/rows/row_update.h"
#include "jet/table.h"

namespace till {

class TillTable {
 public:
  using RowBytes = std::vector<std::byte>;
  using Fields = std::vector<jet::FieldValue>;

  explicit TillTable(jet::Table& table)
      : table_(table), file_(table.file()), definition_(table.definition()) {}

  [[nodiscard]] jet::Table& rows() { return table_; }
  [[nodiscard]] std::size_t column(std::string_view name) const {
    return definition_.findColumn(name).value();
  }

  // Whether a new row may be made from this one.
  [[nodiscard]] bool isTemplate(const jet::Row& row) const;
  [[nodiscard]] RowBytes patched(jet::Bytes row, const Fields& fields) const;

  [[nodiscard]] std::int32_t nextNumber(jet::PageEdits& edits) const;
  jet::RowId insert(jet::PageEdits& edits, const RowBytes& row);
  void change(jet::PageEdits& edits, jet::RowId id, const Fields& fields);
  void remove(jet::PageEdits& edits, jet::RowId id);

  // Takes further columns from the rows that lack some already, and leaves no room on any page: a
  // mark then makes a row longer, and some must move. What fills the pages is a deleted row, such
  // as a move leaves that was cut short.
  void ageRows(jet::LockFile& locks);

  // Of a table whose numbers were given by its maker; the last one is set by repair().
  void makeFirstColumnAutonumber(jet::LockFile& locks);

  // Counts the rows, finds the last AutoNumber, in the first column, and builds every index again:
  // after a kill in the middle of a write.
  void repair(jet::LockFile& locks);

 private:
  // Where the row's bytes are.
  [[nodiscard]] jet::ForwardedRow find(jet::PageEdits& edits, jet::RowId id) const;
  [[nodiscard]] jet::RowId place(jet::PageEdits& edits, const RowBytes& row);
  [[nodiscard]] std::vector<std::byte> entry(const jet::RealIndex& index, jet::Bytes row,
                                             jet::RowId id) const;
  void count(jet::PageEdits& edits, std::int32_t difference) const;
  void emptyTree(jet::PageEdits& edits, const jet::RealIndex& index) const;

  jet::Table& table_;
  jet::PageFile& file_;
  const jet::TableDefinition& definition_;
};

// The process kills itself after so many writes of pages; 0: it does not. In page_edits.cpp.
void dieAfterWrites(int writes);

}  // namespace till
