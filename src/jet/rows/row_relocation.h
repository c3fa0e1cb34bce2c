// Moves a row that no longer fits its page to another page of its table.
//
//   RowRelocation relocation(definition);
//   relocation.move(edits, id, place, bytes);
//
// The row goes to the page that took the last one, to a page that the table's map of free space
// names, or to a new page. Order of writing: see jet/rows/row_update.h. Errors: 3049, and those of
// locking pages.
#pragma once

#include <cstdint>
#include <optional>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/pages/page_edits.h"

namespace jet {

class RowRelocation {
 public:
  // The definition must outlive it.
  explicit RowRelocation(const TableDefinition& definition) : definition_(definition) {}

  // `id` names the row; its bytes are at `place` until now: at `id`, or where it was forwarded to.
  void move(PageEdits& edits, RowId id, RowId place, Bytes bytes);

 private:
  [[nodiscard]] RowId put(PageEdits& edits, RowId id, RowId place, Bytes bytes);
  [[nodiscard]] std::optional<RowId> tryPage(PageEdits& edits, std::uint32_t page, Bytes bytes);
  [[nodiscard]] RowId putOnNewPage(PageEdits& edits, Bytes bytes);

  const TableDefinition& definition_;
  std::uint32_t lastTarget_ = 0;  // page that took the last row; 0: none yet
};

}  // namespace jet
