// Builds the tree of one index from the entries of all its rows.
//
//   IndexTree tree;
//   tree.add(key, rowId);                       // for each row
//   BuiltIndex built = tree.build(file, definitionPage, /*unique=*/true, /*tails=*/false);
//
// Entries are kept in memory, a little more than their own bytes, and sorted at the end. Leaves are
// filled from the left and chained; on every page the bytes that all its entries begin with stand
// only once. A node repeats the last entry of each child. Error 3022 for a key that a unique index
// would hold twice, and 3001 for a key that no page has room for.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

struct BuiltIndex {
  std::uint32_t root = 0;
  std::uint32_t distinctKeys = 0;
  std::vector<std::uint32_t> pages;  // ascending
};

class IndexTree {
 public:
  void add(jet::Bytes key, jet::RowId row);

  // `tails`: as trees are that grew by appending, whose rightmost node names its last child apart
  // from its entries. Where there is one leaf only, it makes no difference.
  [[nodiscard]] BuiltIndex build(NewFile& file, std::uint32_t owner, bool unique, bool tails);

 private:
  struct Entry {
    std::uint32_t offset = 0;
    std::uint16_t size = 0;  // with the four bytes of the row
  };

  [[nodiscard]] jet::Bytes bytesOf(const Entry& entry) const {
    return jet::Bytes(bytes_).subspan(entry.offset, entry.size);
  }
  [[nodiscard]] std::uint32_t countDistinct(const NewFile& file, bool unique) const;

  std::vector<std::byte> bytes_;
  std::vector<Entry> entries_;
};

}  // namespace jetcreate
