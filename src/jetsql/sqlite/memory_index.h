// An index built in memory for a column that has none in the file, or for an expression: key and
// row number of every row, sorted, 16 bytes a row. Keys of numbers and dates keep their order and
// serve ranges; texts, Numerics and binary are hashed and serve equality only. A lookup may give
// rows too many, never too few: the caller compares again.
//
//   MemoryIndex index(MemoryIndex::read(table, KeyReader(table, column), {}), {});   // all keys
//   for (const auto& entry : index.range({key, key})) use(entry.row);
//
// An index of a part of the keys knows nothing about the others: see covers(). A snapshot of the
// moment of building. Null keys are left out. Errors: the Jet engine's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "jet/table.h"
#include "jetsql/sqlite/row_expression.h"
#include "jetsql/sqlite/value_encoding.h"

namespace jetsql {

// Keys from first to last, both included; empty when first > last.
struct KeyInterval {
  std::int64_t first = INT64_MIN;
  std::int64_t last = INT64_MAX;

  [[nodiscard]] bool has(std::int64_t key) const { return first <= key && key <= last; }
  [[nodiscard]] bool isOneKey() const { return first == last; }
};

// Reads the key of a column, or of an expression, from rows.
class KeyReader {
 public:
  KeyReader(const jet::Table& table, std::size_t column)
      : type_(table.definition().columns[column].variantType()), column_(column) {}
  explicit KeyReader(const RowExpression& expression)  // which outlives this
      : type_(values::VariantType::kText), expression_(&expression) {}

  // Nothing for Null.
  [[nodiscard]] std::optional<std::int64_t> key(const jet::Row& row);

 private:
  values::VariantType type_;
  std::size_t column_ = 0;
  const RowExpression* expression_ = nullptr;
  std::string text_;
  std::vector<std::byte> binary_;
};

// The rows of a table whose key lies in an interval, in the order of the file. The others are
// passed over by the bytes that the key is made of.
class KeyScan {
 public:
  KeyScan(jet::Table& table, KeyReader reader, const KeyInterval& keys)
      : scan_(table), reader_(std::move(reader)), keys_(keys) {}

  [[nodiscard]] bool next();
  [[nodiscard]] const jet::Row& row() const { return scan_.row(); }
  [[nodiscard]] std::int64_t key() const { return key_; }

 private:
  jet::TableCursor scan_;
  KeyReader reader_;
  KeyInterval keys_;
  std::int64_t key_ = 0;
};

class MemoryIndex {
 public:
  struct Entry {
    std::int64_t key;
    std::int64_t row;  // jet::RowId::number
  };

  // The entries of all rows whose keys are covered, in the order of the file.
  [[nodiscard]] static std::vector<Entry> read(jet::Table& table, KeyReader reader,
                                               const KeyInterval& covered);

  // Of entries of all rows, of which it takes those that are covered.
  MemoryIndex(std::vector<Entry> entries, const KeyInterval& covered);

  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  // Whether it has every row of these keys.
  [[nodiscard]] bool covers(const KeyInterval& keys) const {
    return covered_.has(keys.first) && covered_.has(keys.last);
  }
  [[nodiscard]] const KeyInterval& covered() const { return covered_; }

  // In the order of the keys, those of one key in the order of the file.
  [[nodiscard]] std::span<const Entry> range(const KeyInterval& keys) const;

 private:
  KeyInterval covered_;
  std::vector<Entry> entries_;
};

// True for types whose keys keep their order.
[[nodiscard]] bool hasOrderedKeys(values::VariantType type);

// The key of a column that is not Null and of such a type; nothing for what SQLite takes for Null.
[[nodiscard]] std::optional<std::int64_t> orderedKey(const jet::Row& row, std::size_t column,
                                                     values::VariantType type);

// The key of a value, in SQLite's encoding, among keys of a column's type. Nothing where no row can
// be equal to it.
[[nodiscard]] std::optional<std::int64_t> keyOf(const EncodedValue& value,
                                                values::VariantType type);

// The smallest interval known to hold what is >= (<=) the value. For types with ordered keys;
// empty for a value that is no number.
[[nodiscard]] KeyInterval keysFrom(const EncodedValue& value, values::VariantType type);
[[nodiscard]] KeyInterval keysUpTo(const EncodedValue& value, values::VariantType type);

}  // namespace jetsql
