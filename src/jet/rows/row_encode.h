// The bytes of a row with some of its fields changed.
//
//   RowEncoder row(file, pageNumber, definition, oldBytes);
//   row.set(column, encodeField(column, value));
//   bool inPlace = !row.grown();       // the same length: single bytes differ
//   write(row.bytes());
//
// A row holds as many columns as the table had when it was written. Setting a column that it does
// not hold yet gives it room up to that column, as a row written right after that column was added
// would have it; the columns between read as before: Null, and No for Yes/No. Fields of fixed size
// and Yes/No only. Errors: 3049 for a row that is not of the expected shape, 3164 for a field that
// is not of this kind or counts by itself, 6 and 13 for values that do not fit the column.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/table_definition.h"
#include "jet/pages/page_file.h"
#include "values/variant.h"

namespace jet {

// A field as stored; none for Null. Yes/No, which is a bit of the null mask, gives no bytes for
// Yes and none at all for No.
using StoredField = std::optional<std::vector<std::byte>>;

[[nodiscard]] StoredField encodeField(const Column& column, const values::Variant& value);

class RowEncoder {
 public:
  // `page` is where the row is from, for messages.
  RowEncoder(const PageFile& file, std::uint32_t page, const TableDefinition& definition,
             Bytes row);

  // The field as the row has it.
  [[nodiscard]] StoredField get(const Column& column) const;
  void set(const Column& column, const StoredField& field);

  // False as long as every change was one of bytes in their places.
  [[nodiscard]] bool grown() const { return grown_; }
  [[nodiscard]] const std::vector<std::byte>& bytes() const { return row_; }

 private:
  // Where the parts of the row stand.
  struct Frame {
    std::size_t columns = 0;
    std::size_t mask = 0;      // start of the null mask
    std::size_t fixedEnd = 0;  // behind the fixed fields
    bool hasVariablePart = false;
    std::vector<std::size_t> offsets;  // of the variable fields, and where the last one ends
  };

  [[nodiscard]] const Format& format() const { return file_->format(); }
  [[nodiscard]] Frame parse() const;
  [[nodiscard]] bool parseVariablePart(Frame& frame, bool certain) const;
  [[nodiscard]] std::size_t variableOffset(const Frame& frame, std::size_t entry, std::size_t count,
                                           std::size_t jumps) const;
  void makeRoomFor(const Column& column);
  [[nodiscard]] std::vector<std::byte> assemble(const Frame& frame, Bytes fixed, Bytes variable,
                                                Bytes mask) const;

  const PageFile* file_;
  std::uint32_t page_;
  const TableDefinition* definition_;
  std::vector<std::byte> row_;
  Frame frame_;
  bool grown_ = false;
};

}  // namespace jet
