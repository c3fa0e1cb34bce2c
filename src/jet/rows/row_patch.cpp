#include "jet/rows/row_patch.h"

#include <algorithm>
#include <string>

#include "values/runtime_error.h"

namespace jet {
namespace {

bool isMarkable(const Column& column) {
  switch (column.type) {
    case ColumnType::kYesNo:
    case ColumnType::kByte:
    case ColumnType::kInteger:
    case ColumnType::kCurrency:
    case ColumnType::kSingle:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      return column.fixed;
    case ColumnType::kLong:
      // Other flags of AutoNumbers stand on ordinary columns too in the engine's own files.
      return column.fixed && (column.flags & kColumnAutonumber) == 0;
    default:
      return false;
  }
}

}  // namespace

StoredField encodeMark(const Column& column, const values::Variant& value) {
  if (!isMarkable(column)) {
    throw RuntimeError(error::kNotUpdatable, "Field '" + column.name +
                                                 "' cannot be updated: only fields of fixed size "
                                                 "and Yes/No fields are written here.");
  }
  if (value.isNull()) return std::nullopt;
  if (column.type != ColumnType::kYesNo) return encodeFixed(column, value);
  if (!toBool(value)) return std::nullopt;
  return std::vector<std::byte>();
}

void RowPatch::start(Bytes row) {
  row_.assign(row.begin(), row.end());
  grown_ = false;
  findParts();
}

void RowPatch::findParts() {
  const auto layout = RowLayout::of(file_->format(), row_);
  if (!layout || layout->columns() == 0 || layout->columns() > definition_->maxColumns) {
    file_->damaged(page_, "a row does not fit its columns");
  }
  layout_ = *layout;
  fixedEnd_ = layout_.maskStart();
  variable_.reset();
  const bool variableColumns = std::ranges::any_of(definition_->columns, [&](const Column& column) {
    return !column.fixed && column.number < layout_.columns();
  });
  // Only in a table that had no variable columns yet does a row go without that part.
  if (definition_->varColumns != 0 && !findVariablePart(variableColumns) && variableColumns) {
    file_->damaged(page_, "the variable fields of a row do not fit it");
  }
}

// A part that is not `certain` to be there is told by its offsets, the last of which is where it
// begins. One that is certain may begin later: newer engines leave a few unused bytes there.
bool RowPatch::findVariablePart(bool certain) {
  const auto part = layout_.variablePart();
  if (!part) return false;
  const std::size_t first = layout_.variableOffset(*part, 0);
  if (first < layout_.fixedStart()) return false;
  std::size_t last = first;
  for (std::size_t n = 1; n <= part->count; ++n) {
    const std::size_t offset = layout_.variableOffset(*part, n);
    if (offset < last) return false;
    last = offset;
  }
  const std::size_t end = last + part->size;
  if (certain ? end > layout_.maskStart() : end != layout_.maskStart()) return false;
  fixedEnd_ = first;
  variable_ = part;
  return true;
}

// As in RowParts.
std::vector<std::size_t> RowPatch::variableOffsets() const {
  std::vector<std::size_t> offsets;
  if (!variable_) return offsets;
  offsets.reserve(variable_->count + 1);
  for (std::size_t n = 0; n <= variable_->count; ++n) {
    offsets.push_back(layout_.variableOffset(*variable_, n));
  }
  return offsets;
}

StoredField RowPatch::get(const Column& column) const {
  if (!layout_.isSet(column.number)) return std::nullopt;
  if (column.type == ColumnType::kYesNo) return std::vector<std::byte>();
  const auto field = column.fixed ? layout_.fixedField(column) : std::nullopt;
  if (!field || field->data() + field->size() > row_.data() + fixedEnd_) {
    file_->damaged(page_, "column '" + column.name + "' lies outside its row");
  }
  return std::vector<std::byte>(field->begin(), field->end());
}

void RowPatch::set(const Column& column, const StoredField& field) {
  const bool storesBytes = column.type != ColumnType::kYesNo;
  const std::size_t start = layout_.fixedStart() + column.fixedOffset;
  const bool hasRoom =
      column.number < layout_.columns() && (!storesBytes || start + column.length <= fixedEnd_);
  if (!hasRoom) {
    // What a missing column reads as is not worth a longer row.
    if (!field) return;
    makeRoomFor(column);
  }
  setMaskBit(MutableBytes(row_).subspan(layout_.maskStart()), column.number, field.has_value());
  if (!field || !storesBytes) return;
  if (field->size() != column.length) {
    file_->damaged(page_, "column '" + column.name + "' has an impossible length");
  }
  std::ranges::copy(*field, row_.begin() + static_cast<std::ptrdiff_t>(start));
}

// Takes the row apart and puts it together with every part as long as the column asks for.
void RowPatch::makeRoomFor(const Column& column) {
  RowParts parts{.columns = std::max(layout_.columns(), column.number + std::size_t{1})};
  std::size_t fixedSize = fixedFields().size();
  const std::vector<std::size_t> offsets = variableOffsets();
  std::size_t variableCount = variable_ ? variable_->count : 0;
  for (const Column& c : definition_->columns) {
    if (c.number >= parts.columns) continue;
    if (!c.fixed) {
      variableCount = std::max(variableCount, c.varIndex + std::size_t{1});
    } else if (c.type != ColumnType::kYesNo) {
      fixedSize = std::max(fixedSize, c.fixedOffset + std::size_t{c.length});
    }
  }

  std::vector<std::byte> fixed(fixedSize);
  std::ranges::copy(fixedFields(), fixed.begin());
  std::vector<std::byte> mask(nullMaskSize(parts.columns));
  std::ranges::copy(Bytes(row_).subspan(layout_.maskStart()), mask.begin());
  const std::size_t variableStart = layout_.fixedStart() + fixedSize;
  if (!offsets.empty()) {
    parts.variable = Bytes(row_).subspan(fixedEnd_, offsets.back() - fixedEnd_);
    for (const std::size_t offset : offsets) {
      parts.offsets.push_back(offset + variableStart - fixedEnd_);
    }
  } else if (definition_->varColumns != 0) {
    parts.offsets.push_back(variableStart);
  }
  if (!parts.offsets.empty()) parts.offsets.resize(variableCount + 1, parts.offsets.back());
  parts.fixed = fixed;
  parts.mask = mask;

  row_ = assembleRow(file_->format(), parts);
  findParts();
  grown_ = true;
}

}  // namespace jet
