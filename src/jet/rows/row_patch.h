// The bytes of a row with some of its fields changed.
//
//   RowPatch row(file, pageNumber, definition, oldBytes);
//   row.set(column, encodeMark(column, value));
//   bool inPlace = !row.grown();       // the same length: single bytes differ
//   write(row.bytes());
//
// A row holds as many columns as the table had when it was written. Setting a column that it does
// not hold yet gives it room up to that column, as a row written right after that column was added
// would have it; the columns between read as before: Null, and No for Yes/No. Fields of fixed size
// and Yes/No only. Errors: 3049 for a row that is not of the expected shape, 3164 for a field that
// is not of this kind or is an AutoNumber, 6 and 13 for values that do not fit the column.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/field_codec.h"
#include "jet/format/table_definition.h"
#include "jet/pages/page_file.h"
#include "jet/rows/row_layout.h"
#include "values/variant.h"

namespace jet {

[[nodiscard]] StoredField encodeMark(const Column& column, const values::Variant& value);

class RowPatch {
 public:
  // `page` is where the row is from, for messages. Without a row, start() comes first.
  RowPatch(const PageFile& file, std::uint32_t page, const TableDefinition& definition)
      : file_(&file), page_(page), definition_(&definition) {}
  RowPatch(const PageFile& file, std::uint32_t page, const TableDefinition& definition, Bytes row)
      : RowPatch(file, page, definition) {
    start(row);
  }
  RowPatch(const RowPatch&) = delete;
  RowPatch& operator=(const RowPatch&) = delete;
  ~RowPatch() = default;

  // Another row of the page, in the memory of the one before.
  void start(Bytes row);

  // The field as the row has it.
  [[nodiscard]] StoredField get(const Column& column) const;
  void set(const Column& column, const StoredField& field);

  // False as long as every change was one of bytes in their places.
  [[nodiscard]] bool grown() const { return grown_; }
  [[nodiscard]] const std::vector<std::byte>& bytes() const { return row_; }

 private:
  void findParts();
  [[nodiscard]] bool findVariablePart(bool certain);
  [[nodiscard]] Bytes fixedFields() const {
    return Bytes(row_).subspan(layout_.fixedStart(), fixedEnd_ - layout_.fixedStart());
  }
  [[nodiscard]] std::vector<std::size_t> variableOffsets() const;
  void makeRoomFor(const Column& column);

  const PageFile* file_;
  std::uint32_t page_;
  const TableDefinition* definition_;
  std::vector<std::byte> row_;
  RowLayout layout_;                      // of row_
  std::size_t fixedEnd_ = 0;              // where the fixed fields end
  std::optional<VariablePart> variable_;  // that was found
  bool grown_ = false;
};

}  // namespace jet
