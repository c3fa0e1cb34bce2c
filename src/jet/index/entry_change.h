// The key that a row has in an index, before and after a change of some of its fields.
//
//   const EntryChange change = entryChange(file, definition, realIndex, id, before, after);
//   if (!change.keyAfter.empty()) edit.insert(leafEntry(change.keyAfter, id));
//   if (!change.keyBefore.empty()) edit.remove(leafEntry(change.keyBefore, id));
//
// Fields of fixed size and Yes/No are encoded. Other parts of a compound key (texts) are taken over
// from the old entry, which is then looked for in the index: quickly when such parts come after the
// encoded ones, by reading through the index when one comes first.
// Errors: 3049 when the old entry is not in the index, 3164 when the new key cannot be told.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/pages/page_file.h"

namespace jet {

// Both are empty where the key stays as it is.
struct EntryChange {
  std::vector<std::byte> keyBefore;  // empty: the row is not in the index
  std::vector<std::byte> keyAfter;   // empty: the row will not be in the index
  bool nullAfter = false;            // a part of keyAfter is Null
};

// Gives a field of the row, as a row stores it, by its position in definition.columns.
using FieldOf = std::function<std::optional<std::vector<std::byte>>(std::size_t column)>;

[[nodiscard]] EntryChange entryChange(PageFile& file, const TableDefinition& definition,
                                      const RealIndex& index, RowId id, const FieldOf& before,
                                      const FieldOf& after);

}  // namespace jet
