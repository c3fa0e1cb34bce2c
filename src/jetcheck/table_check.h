// The rows of one table and the values that they hold on other pages.
//
//   TableCheck check(file, table, owners, faults);
//   check.run(rowPages, valuePages, valueColumns);
//   ... check.live() are the rows that the table's indexes must have ...
//
// Every row that is not deleted decodes; a forward pointer ends at a row of the table that bears
// the mark of an arrived one and that no other pointer names; a long value's pieces lie on pages of
// its column, are as long as it says, and each is used once. Last the definition's count of rows
// and its last AutoNumber.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/rows/row.h"
#include "jet/table.h"
#include "jet/table_definition_reader.h"
#include "jetcheck/fault_log.h"
#include "jetcheck/page_owners.h"
#include "jetcheck/row_set.h"

namespace jetcheck {

// Pages as the usage maps give them.
struct LongValuePages {
  std::size_t column = 0;  // position in the definition
  PageOwners::Id owner = PageOwners::kNobody;
};

class TableCheck {
 public:
  TableCheck(jet::PageFile& file, jet::Table& table, const PageOwners& owners, FaultLog& faults);

  // `rowPages` and `valuePages` ascending: of the rows, and of the values of all long columns.
  void run(const std::vector<std::uint32_t>& rowPages, const std::vector<std::uint32_t>& valuePages,
           const std::vector<LongValuePages>& columns);

  // The rows at their first places.
  [[nodiscard]] const RowSet& live() const { return live_; }

 private:
  // The rows of data pages that are not deleted.
  [[nodiscard]] RowSet rowsOf(const std::vector<std::uint32_t>& pages, std::uint32_t owner);
  void checkRow(jet::RowId id);
  void checkForward(jet::RowId id);
  void checkFields(const jet::Row& row);
  void checkLongValue(const jet::Row& row, std::size_t column);
  void followPieces(const jet::Row& row, jet::RowId pointer, std::size_t length,
                    PageOwners::Id owner);
  // The bytes of a piece, as long as `page` lives.
  [[nodiscard]] jet::Bytes piece(jet::RowId at, PageOwners::Id owner, jet::PagePtr& page);
  void noteAutonumber(const jet::Row& row, std::size_t column);
  void checkCounts();
  [[nodiscard]] std::string object() const { return "table '" + table_.name() + "'"; }

  jet::PageFile& file_;
  jet::Table& table_;
  const PageOwners& owners_;
  FaultLog& faults_;
  RowSet live_;
  RowSet arrived_;  // places where forward pointers end
  RowSet pieces_;
  RowSet usedPieces_;
  std::vector<PageOwners::Id> valueOwners_;  // by column; nobody for those that are no long values
  std::optional<std::int64_t> greatestAutonumber_;
  bool randomAutonumbers_ = false;
};

}  // namespace jetcheck
