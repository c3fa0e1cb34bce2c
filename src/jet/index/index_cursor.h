// The rows of a range of an index, in the order of its keys.
//
//   IndexCursor found(file, pages, definition, realIndex, {.equal = {Variant(std::int32_t{7})}});
//   while (found.next()) use(found.rowId());
//
// Each page is checked when it is met: kind, owner, order of its entries; depth and length are
// bounded. Errors: 3049 for a tree that contradicts itself, and those of encodeRange.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/index/index_page_cache.h"
#include "jet/index/key_range.h"
#include "jet/pages/page_file.h"

namespace jet {

// Of an index tree; one in a file of 2 GiB has five.
constexpr std::size_t kMaxIndexLevels = 16;

class IndexCursor {
 public:
  IndexCursor(PageFile& file, IndexPageCache& pages, const TableDefinition& definition,
              const RealIndex& index, const KeyRange& range);

  // False after the last entry of the range.
  [[nodiscard]] bool next();

  // Of the entry that next() reached.
  [[nodiscard]] RowId rowId() const { return rowId_; }

 private:
  void descend();
  [[nodiscard]] bool startsInRecentLeaf();
  void enter(IndexPagePtr leaf, std::size_t entry);
  void endOfRange();
  [[nodiscard]] bool tryDescend();
  [[nodiscard]] bool nextLeaf();

  PageFile* file_;
  IndexPageCache* pages_;
  IndexPageCache::RecentPlace* recent_;  // of this tree
  std::uint32_t owner_;                  // the table's definition page
  std::uint32_t root_;
  std::vector<std::byte> first_;  // encoded: entries from this prefix on ...
  std::vector<std::byte> last_;   // ... to this one, both included
  IndexPagePtr leaf_;
  std::size_t entry_ = 0;
  std::size_t end_ = 0;  // one past the last entry of the range in leaf_
  std::uint32_t leavesSeen_ = 0;
  bool atEnd_ = false;
  RowId rowId_;
};

}  // namespace jet
