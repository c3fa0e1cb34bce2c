// The entry that a row has in an index, before and after a change of some of its fields.
//
//   const auto change = changedEntry(edits, definition, realIndex, id, before, after);
//   if (change) { remove(change->before); insert(change->after); }
//
// Fields of fixed size and Yes/No are encoded here. Other parts of a compound key (texts) are taken
// over from the old entry, which is then looked for in the index: quickly when such parts stand
// behind the known ones, by reading through the index when one stands in front.
// Errors: 3164 for an index whose entry cannot be worked out.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/pages/page_file.h"
#include "jet/rows/row_encode.h"

namespace jet {

struct EntryChange {
  std::vector<std::byte> keyBefore;  // empty: the row is not in the index
  std::vector<std::byte> keyAfter;   // empty: nor will it be
  bool nullAfter = false;            // a part of keyAfter is Null
};

// `before` and `after` give the fields of the row by position in definition.columns.
using FieldOf = std::function<StoredField(std::size_t column)>;

[[nodiscard]] EntryChange changedEntry(PageFile& file, const TableDefinition& definition,
                                       const RealIndex& index, RowId id, const FieldOf& before,
                                       const FieldOf& after);

// Key and row pointer, as an entry has them.
[[nodiscard]] std::vector<std::byte> entryOf(std::vector<std::byte> key, RowId id);

}  // namespace jet
