// Values as keys of an index: bytes that compare as the values do.
//
// In front of each column stands a byte that tells Null from a value and sorts Nulls to the front
// (ascending) or the end; numbers follow with their sign turned over and the high byte first. A
// descending column has every byte complemented.
//
//   KeyInterval keys = encodeRange(definition, index, range);   // from keys.first to keys.last
//
// Errors: 3001 for a column or a value that has no encoding here.
#pragma once

#include <cstddef>
#include <vector>

#include "jet/format/table_definition.h"
#include "jet/index/index_cursor.h"

namespace jet {

// Yes/No, whole numbers, Currency, single, double, date.
[[nodiscard]] bool hasKeyEncoding(ColumnType type);

// Entries whose leading bytes are neither below `first` nor above `last`.
struct KeyInterval {
  bool empty = false;
  std::vector<std::byte> first;
  std::vector<std::byte> last;
};

[[nodiscard]] KeyInterval encodeRange(const TableDefinition& definition, const RealIndex& index,
                                      const KeyRange& range);

}  // namespace jet
