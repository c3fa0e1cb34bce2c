// An index built in memory for a column that has none in the file: key and row number of every row,
// sorted, 16 bytes a row. Keys of numbers and dates keep their order and serve ranges; texts,
// Numerics and binary are hashed and serve equality only. A lookup may give rows too many, never
// too few: the caller compares again.
//
//   MemoryIndex index(table, column);
//   for (const auto& entry : index.range({key, key})) use(entry.row);
//
// A snapshot of the moment of building. Null keys are left out. Errors: the Jet engine's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "jet/table.h"

struct sqlite3_value;

namespace jetsql {

// Keys from first to last, both included; empty when first > last.
struct KeyInterval {
  std::int64_t first = INT64_MIN;
  std::int64_t last = INT64_MAX;
};

class MemoryIndex {
 public:
  struct Entry {
    std::int64_t key;
    std::int64_t row;  // jet::RowId::number
  };

  MemoryIndex(jet::Table& table, std::size_t column);

  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  // In the order of the keys, those of one key in the order of the file.
  [[nodiscard]] std::span<const Entry> range(const KeyInterval& keys) const;

 private:
  std::vector<Entry> entries_;
};

// True for types whose keys keep their order.
[[nodiscard]] bool hasOrderedKeys(values::VariantType type);

// The key of a column that is not Null and of such a type; nothing for what SQLite takes for Null.
[[nodiscard]] std::optional<std::int64_t> orderedKey(const jet::Row& row, std::size_t column,
                                                     values::VariantType type);

// The key of a value, in SQLite's encoding, among keys of a column's type. Nothing where no row can
// be equal to it.
[[nodiscard]] std::optional<std::int64_t> keyOf(sqlite3_value* value, values::VariantType type);

// The smallest interval known to hold what is >= (<=) the value. For types with ordered keys;
// empty for a value that is no number.
[[nodiscard]] KeyInterval keysFrom(sqlite3_value* value, values::VariantType type);
[[nodiscard]] KeyInterval keysUpTo(sqlite3_value* value, values::VariantType type);

}  // namespace jetsql
