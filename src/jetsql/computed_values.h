// The computed values of a query's rows, packed: a few bytes a value instead of a Variant.
//
//   ComputedValues values(types);          // Text, Long
//   values.append(statement, 1);       // columns 1 and 2 of the current row
//   VariantView text = values.get(0, 0);   // row, value
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "jetsql/sqlite/value_encoding.h"
#include "values/variant.h"

namespace jetsql {

class ComputedValues {
 public:
  // The types, in the order of the values, outlive this.
  explicit ComputedValues(const std::vector<values::VariantType>& types) : types_(types) {}

  void append(sqlite3_stmt* statement, int firstColumn);
  void append(std::span<const EncodedValue> values);  // as many as there are types
  // A text or a binary lives as long as this.
  [[nodiscard]] values::VariantView get(std::size_t row, std::size_t value) const;
  // Puts the rows in the order of these numbers.
  void reorder(std::span<const std::int64_t> order);
  [[nodiscard]] std::size_t bytes() const { return bytes_; }  // that the rows take

 private:
  struct Block {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  // Space for one row in the last block, or in a new one.
  [[nodiscard]] char* reserve(std::size_t size);

  const std::vector<values::VariantType>& types_;
  std::vector<Block> blocks_;
  std::vector<const char*> rows_;
  std::vector<EncodedValue> scratch_;
  std::size_t bytes_ = 0;
};

}  // namespace jetsql
