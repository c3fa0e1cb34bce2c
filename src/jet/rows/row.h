// One row: the bytes of its page and what is needed to decode a field when one is asked for.
//
//   Variant price = row.value(column);
//   std::int64_t id = row.wholeNumber(column);         // without a Variant
//   std::string_view name = row.text(column, scratch); // valid until scratch changes
//
// Columns are positions in TableDefinition::columns. A row stays as it was read; copying one is
// cheap (it shares the page). It refers to the Table it came from, which must outlive it.
// A column added after the row was written is Null; Yes/No, which cannot be Null, is then No.
// Errors: 3049 for a field that does not fit the row or a long value that does not fit its pages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/field_codec.h"
#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/format/text_codec.h"
#include "jet/pages/page_file.h"
#include "jet/rows/row_layout.h"
#include "values/variant.h"

namespace jet {

// What every row of a table needs beside its bytes; owned by the Table.
struct RowContext {
  const TableDefinition& definition;
  PageFile& file;
  TextDecoder& text;
};

class Row {
 public:
  Row() = default;

  // `bytes` lie in `page`. Checks that they hold a column count and a null mask, not the fields.
  Row(const RowContext& context, RowId id, PagePtr page, Bytes bytes);

  // The same of another row of the page that this one was read from, for less: nothing is counted.
  void moveTo(RowId id, Bytes bytes) {
    id_ = id;
    const auto layout = RowLayout::of(context_->file.format(), bytes);
    layout_ = layout.value_or(RowLayout());
    if (!layout || layout_.columns() > context_->definition.maxColumns) layoutDamaged();
  }

  [[nodiscard]] RowId id() const { return id_; }

  // The row as stored, and the page that holds it: not id().page when the row was forwarded.
  [[nodiscard]] Bytes bytes() const { return layout_.row(); }
  [[nodiscard]] const PagePtr& page() const { return page_; }

  [[nodiscard]] ColumnType type(std::size_t position) const { return column(position).type; }
  [[nodiscard]] bool isNull(std::size_t position) const {
    const Column& c = column(position);
    return !layout_.isSet(c.number) && c.type != ColumnType::kYesNo;
  }
  [[nodiscard]] values::Variant value(std::size_t column) const;
  // The same without a copy: a text or a binary lies in `scratch` or in the page.
  [[nodiscard]] values::VariantView view(std::size_t column, std::string& scratch) const;

  // For columns that are not Null, by VariantType. Asking for another type is the caller's mistake.
  // YesNo as -1 or 0, Byte, Integer, Long; Currency in ten-thousandths:
  [[nodiscard]] std::int64_t wholeNumber(std::size_t position) const {
    const Column& c = column(position);
    if (c.type == ColumnType::kYesNo) return layout_.isSet(c.number) ? -1 : 0;
    return decodeWhole(c.type, rawFixedSize(c));
  }
  // Single, Double; DateTime as serial:
  [[nodiscard]] double realNumber(std::size_t position) const {
    const Column& c = column(position);
    return decodeReal(c.type, rawFixedSize(c));
  }
  // Text, memo, GUID; UTF-8. The result may lie in `scratch` or in the page.
  [[nodiscard]] std::string_view text(std::size_t column, std::string& scratch) const;
  // The same, appended in a code page; '?' for a character that it lacks.
  void appendText(std::size_t column, CodePage& codePage, std::string& out) const;
  // Binary, OLE. The result may lie in `scratch` or in the page.
  [[nodiscard]] Bytes binary(std::size_t column, std::vector<std::byte>& scratch) const;
  [[nodiscard]] values::Numeric numeric(std::size_t column) const;

  // The stored bytes of a column that is not Null (of a long value its 12-byte header and what
  // follows inline); empty for Yes/No. Its place in the page is raw.data() - page()->bytes.data().
  [[nodiscard]] Bytes raw(std::size_t column) const;

 private:
  [[nodiscard]] const Column& column(std::size_t column) const {
    return context_->definition.columns[column];
  }
  [[nodiscard]] Bytes raw(const Column& column) const;
  // The same, as long as the column's type asks for. Of a fixed column the definition was checked.
  // Called for most fields that are read, so nothing but the comparison stands here.
  [[nodiscard]] Bytes rawFixedSize(const Column& c) const {
    if (!c.fixed) return rawFromVariablePart(c);
    const std::size_t start = layout_.fixedStart() + c.fixedOffset;
    if (start + c.length > layout_.maskStart()) outside(c);
    return layout_.row().subspan(start, c.length);
  }
  [[nodiscard]] Bytes rawFromVariablePart(const Column& column) const;
  [[nodiscard]] Bytes binaryView(std::size_t column, std::string& scratch) const;
  [[noreturn]] void outside(const Column& column) const;
  [[noreturn]] void damaged(const Column& column, std::string_view what) const;
  [[noreturn]] void layoutDamaged() const;
  [[noreturn]] void rowDamaged(const std::string& what) const;

  const RowContext* context_ = nullptr;
  RowId id_;
  PagePtr page_;
  RowLayout layout_;
};

}  // namespace jet
