// Rows by an index: equality on the leading columns of its key, then a range on the next one.
//
//   KeyRange range{.equal = {Variant(std::int32_t{7})}};
//   KeyRange days{.lower = KeyBound{from}, .upper = KeyBound{to, /*inclusive=*/false}};
//
// Values are compared as numbers with the key column's type, exactly: 2.5 finds nothing among whole
// numbers, ">= 2.5" begins at 3. A Null value finds nothing, as in a comparison. Rows whose key
// column is Null are outside every range. Values may be numbers, Currency, dates and Yes/No. Each
// page is checked when it is met: kind, owner, order of its entries; depth and length are bounded.
// Errors: 3049 for a tree that contradicts itself, 3001 for a key column or value that has no
// encoding here (text, GUID, binary, Numeric).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/index/index_page.h"
#include "jet/pages/page_file.h"
#include "values/variant.h"

namespace jet {

struct KeyBound {
  values::Variant value;
  bool inclusive = true;
};

// In the sense of the values, whatever the index's direction: lower is the smaller value.
struct KeyRange {
  std::vector<values::Variant> equal = {};  // values of the leading key columns
  std::optional<KeyBound> lower = {};       // of the column behind them
  std::optional<KeyBound> upper = {};
};

class IndexCursor {
 public:
  IndexCursor(PageFile& file, IndexPageCache& pages, const TableDefinition& definition,
              const RealIndex& index, const KeyRange& range);

  // False behind the last entry of the range.
  [[nodiscard]] bool next();

  // Of the entry that next() reached.
  [[nodiscard]] RowId rowId() const { return rowId_; }

 private:
  void descend();
  [[nodiscard]] bool tryDescend();
  [[nodiscard]] bool nextLeaf();

  PageFile* file_;
  IndexPageCache* pages_;
  std::uint32_t owner_;  // the table's definition page
  std::uint32_t root_;
  std::vector<std::byte> first_;  // encoded: entries from this prefix on ...
  std::vector<std::byte> last_;   // ... to this one, both included
  IndexPagePtr leaf_;
  std::size_t entry_ = 0;
  std::uint32_t leavesSeen_ = 0;
  bool atEnd_ = false;
  RowId rowId_;
};

}  // namespace jet
