// The key that a row has in an index, as far as the key codec can tell it.
//
//   const RowKey key = rowKey(definition, index, row);
//   if (!key.matches(entryKey)) ...
//
// Texts and Numerics are not encoded: of a key that has one, the parts before the first and after
// the last of them are compared.
#pragma once

#include <cstddef>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/table_definition.h"
#include "jet/rows/row.h"

namespace jetcheck {

struct RowKey {
  std::vector<std::byte> front;  // the whole key where `whole`
  std::vector<std::byte> back;
  bool whole = true;
  bool anyNull = false;
  bool allNull = true;

  [[nodiscard]] bool matches(jet::Bytes key) const;
};

// Error 3049 for a field that does not fit the row.
[[nodiscard]] RowKey rowKey(const jet::TableDefinition& definition, const jet::RealIndex& index,
                            const jet::Row& row);

}  // namespace jetcheck
