#include "jet/rows/row.h"

#include "jet/pages/long_value.h"

namespace jet {

Row::Row(const RowContext& context, RowId id, PagePtr page, Bytes bytes)
    : context_(&context), page_(std::move(page)) {
  moveTo(id, bytes);
}

void Row::layoutDamaged() const {
  rowDamaged(layout_.columns() == 0 ? "it is too short" : "it has too many columns");
}

Bytes Row::raw(std::size_t position) const { return raw(column(position)); }

Bytes Row::raw(const Column& c) const {
  if (c.type == ColumnType::kYesNo) return {};
  const auto field = c.fixed ? layout_.fixedField(c) : layout_.variableField(c.varIndex);
  if (!field) outside(c);
  return *field;
}

Bytes Row::rawFromVariablePart(const Column& c) const {
  const Bytes bytes = raw(c);
  if (bytes.size() != fixedSize(c.type)) damaged(c, "has the wrong size");
  return bytes;
}

void Row::outside(const Column& c) const { damaged(c, "lies outside the row"); }

std::string_view Row::text(std::size_t position, std::string& scratch) const {
  const Column& c = column(position);
  const Bytes bytes = raw(position);
  if (c.type == ColumnType::kMemo) {
    std::vector<std::byte> pieces;
    const Bytes value = longValue(context_->file, page_->number, bytes, pieces);
    if (pieces.empty()) return context_->text.decode(value, scratch);
    scratch.clear();  // what decode gives may lie in the pieces, which end here
    context_->text.append(value, scratch);
    return scratch;
  }
  if (c.type != ColumnType::kGuid) return context_->text.decode(bytes, scratch);
  scratch = guidText(rawFixedSize(c));
  return scratch;
}

void Row::appendText(std::size_t position, CodePage& codePage, std::string& out) const {
  const Column& c = column(position);
  if (c.type == ColumnType::kText) return context_->text.append(raw(c), codePage, out);
  if (c.type == ColumnType::kMemo) {
    std::vector<std::byte> pieces;
    const Bytes value = longValue(context_->file, page_->number, raw(c), pieces);
    return context_->text.append(value, codePage, out);
  }
  std::string scratch;
  codePage.appendFromUtf8(text(position, scratch), out);
}

Bytes Row::binary(std::size_t position, std::vector<std::byte>& scratch) const {
  const Bytes bytes = raw(position);
  if (column(position).type != ColumnType::kOle) return bytes;
  return longValue(context_->file, page_->number, bytes, scratch);
}

values::Numeric Row::numeric(std::size_t position) const {
  const Column& c = column(position);
  const auto value = decodeNumeric(c, rawFixedSize(c));
  if (!value) damaged(c, "is too large a number");
  return *value;
}

values::VariantView Row::view(std::size_t position, std::string& scratch) const {
  const Column& c = column(position);
  if (c.type == ColumnType::kYesNo) return layout_.isSet(c.number);
  if (!layout_.isSet(c.number)) return {};
  switch (c.type) {
    case ColumnType::kNumeric:
    case ColumnType::kBigInt:
      return numeric(position);
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kGuid:
      return text(position, scratch);
    case ColumnType::kBinary:
    case ColumnType::kWideBinary:
    case ColumnType::kOle:
    case ColumnType::kExtendedDateTime:
      return binaryView(position, scratch);
    default:
      return decodeFixed(c, rawFixedSize(c));
  }
}

Bytes Row::binaryView(std::size_t position, std::string& scratch) const {
  std::vector<std::byte> pieces;
  const Bytes found = binary(position, pieces);
  if (pieces.empty()) return found;
  scratch = asText(found);
  return std::as_bytes(std::span(scratch));
}

values::Variant Row::value(std::size_t position) const {
  std::string scratch;
  const values::VariantView found = view(position, scratch);
  const auto* text = found.as<std::string_view>();
  if (text != nullptr && text->data() == scratch.data()) return scratch;
  return found.owned();
}

void Row::damaged(const Column& c, std::string_view what) const {
  rowDamaged("column '" + c.name + "' " + std::string(what));
}

void Row::rowDamaged(const std::string& what) const {
  context_->file.damaged(page_->number, "row " + std::to_string(id_.row) + " of table '" +
                                            context_->definition.name + "': " + what);
}

}  // namespace jet
