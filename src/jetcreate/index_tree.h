// Builds the tree of one index from the entries of all its rows.
//
//   IndexTree tree;
//   tree.add(file.format(), definition, realIndex, values, rowId);   // for each row
//   BuiltIndex built = tree.build(file, definitionPage, /*unique=*/true, /*tails=*/false);
//
// Entries are kept in memory, a little more than their own bytes, and sorted at the end. Leaves are
// filled from the left and chained. A node repeats the last key and row of each child.
// Errors: 3022 for a key that a unique index would hold twice, 3314 for a Null where the index
// takes none, 3001 for a type or a character that has no keys here and for a key that no page has
// room for.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jetcreate/new_file.h"
#include "values/variant.h"

namespace jetcreate {

struct BuiltIndex {
  std::uint32_t root = 0;
  std::uint32_t distinctKeys = 0;
  std::vector<std::uint32_t> pages;  // ascending
};

class IndexTree {
 public:
  // `values` by position in the definition's columns; missing ones at the end are Null.
  void add(const jet::Format& format, const jet::TableDefinition& table,
           const jet::RealIndex& index, std::span<const values::Variant> values, jet::RowId row);

  // `tails`: as in trees that grew by appending, whose rightmost node has its last child as tail
  // and not as an entry. Where there is one leaf only, it makes no difference.
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
