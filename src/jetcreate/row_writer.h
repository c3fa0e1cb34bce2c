// Values of a row to the bytes of a row, long values to their own pages.
//
//   RowWriter writer(file, definition);
//   const std::vector<std::byte> row = writer.encode(values);
//   writer.finish();
//
// `values` follow the definition's columns; fewer values make a row as it was before the last
// columns were added. Values are converted to the column's type. Errors, with table and column: 6
// and 13 from the conversion, 3163 text or bytes longer than the column, 3047 row too long.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/table_definition.h"
#include "jetcreate/data_pages.h"
#include "jetcreate/new_file.h"
#include "values/variant.h"

namespace jetcreate {

class RowWriter {
 public:
  // Keeps a reference to the definition, whose columns stand in the order of their numbers.
  RowWriter(NewFile& file, const jet::TableDefinition& definition);

  [[nodiscard]] std::vector<std::byte> encode(std::span<const values::Variant> values);

  // What the long values of a deleted row leave: of one that shared a page, its place in the table
  // of offsets, without bytes; pages that one filled went back to the file.
  void leaveDeleted(std::span<const values::Variant> values);

  // Writes the long-value pages that are still open.
  void finish();

  // Pages of each memo and OLE column, by position.
  [[nodiscard]] const std::map<std::size_t, DataPages>& longValues() const { return longValues_; }

 private:
  [[nodiscard]] std::vector<std::byte> fixedFields(std::span<const values::Variant> values) const;
  [[nodiscard]] std::vector<std::byte> nullMask(std::span<const values::Variant> values) const;
  [[nodiscard]] std::vector<std::byte> variableField(std::size_t position,
                                                     const values::Variant& value);
  [[nodiscard]] std::vector<std::byte> placeLongValue(std::size_t position, jet::Bytes bytes);

  NewFile& file_;
  const jet::TableDefinition& definition_;
  std::map<std::size_t, DataPages> longValues_;
};

}  // namespace jetcreate
