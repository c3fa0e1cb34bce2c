// Values of a row to the bytes of a row, long values to their own pages.
//
//   RowEncoder encoder(file, definition);
//   Bytes row = encoder.encode(values);   // valid until the next call
//   encoder.finish();
//
// `values` follow the definition's columns; fewer values make a row as it was before the columns
// behind were added. Values are converted to the column's type. Errors, with table and column: 6
// and 13 from the conversion, 3163 text or bytes longer than the column, 3047 row too long.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "jet/format/byte_buffer.h"
#include "jet/format/table_definition.h"
#include "jetcreate/data_pages.h"
#include "jetcreate/new_file.h"
#include "values/variant.h"

namespace jetcreate {

class RowEncoder {
 public:
  // Keeps a reference to the definition, whose columns stand in the order of their numbers.
  RowEncoder(NewFile& file, const jet::TableDefinition& definition);

  [[nodiscard]] jet::Bytes encode(std::span<const values::Variant> values);

  // Writes the long-value pages that are still open.
  void finish();

  // Pages of each memo and OLE column, by position.
  [[nodiscard]] const std::map<std::size_t, DataPages>& longValues() const { return longValues_; }

 private:
  void putFixed(std::span<const values::Variant> values);
  void putVariable(std::span<const values::Variant> values);
  void putNullMask(std::span<const values::Variant> values);
  [[nodiscard]] std::vector<std::byte> variableBytes(std::size_t position,
                                                     const values::Variant& value);
  [[nodiscard]] std::vector<std::byte> placeLongValue(std::size_t position, jet::Bytes bytes);

  NewFile& file_;
  const jet::TableDefinition& definition_;
  std::map<std::size_t, DataPages> longValues_;
  jet::ByteBuffer row_;
};

}  // namespace jetcreate
