#include "jetcreate/row_writer.h"

#include <algorithm>
#include <string>

#include "jet/format/byte_buffer.h"
#include "jet/format/creation_format.h"
#include "jet/format/field_codec.h"
#include "jet/format/layout.h"
#include "jet/format/text_codec.h"
#include "jet/rows/row_layout.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

// Calls a conversion, which knows neither table nor column, and names them in its error.
template <typename Convert>
std::vector<std::byte> converted(const TableDefinition& table, const Column& column,
                                 Convert convert) {
  try {
    return convert();
  } catch (const RuntimeError& fault) {
    throw RuntimeError(fault.number(), fault.description() + " (field '" + column.name +
                                           "' of table '" + table.name + "').");
  }
}

// Text and memo encoded, binary and OLE as their bytes.
std::vector<std::byte> variableBytes(TextEncoder& encoder, const Column& column,
                                     const values::Variant& value) {
  if (column.type == ColumnType::kText || column.type == ColumnType::kMemo) {
    return encoder.encode(toText(value), column.compressed);
  }
  if (const auto* binary = value.as<values::Binary>()) return binary->bytes;
  throw RuntimeError(error::kTypeMismatch, "Type mismatch");
}

// Of a text the length counts that it has when it is not compressed.
void checkLength(TextEncoder& encoder, const TableDefinition& table, const Column& column,
                 const values::Variant& value, std::size_t stored) {
  if (column.isLongValue()) return;
  const bool compressed = column.type == ColumnType::kText && column.compressed;
  const std::size_t length =
      compressed ? encoder.encode(toText(value), /*compress=*/false).size() : stored;
  if (length > column.length) {
    throw RuntimeError(error::kFieldTooSmall, "The field '" + column.name + "' of table '" +
                                                  table.name + "' is too small for " +
                                                  std::to_string(length) + " bytes.");
  }
}

}  // namespace

RowWriter::RowWriter(NewFile& file, const TableDefinition& definition)
    : file_(file), definition_(definition) {
  for (std::size_t i = 0; i < definition.columns.size(); ++i) {
    if (definition.columns[i].isLongValue()) {
      longValues_.emplace(i, DataPages(file, kLongValueOwner));
    }
  }
}

std::vector<std::byte> RowWriter::encode(std::span<const values::Variant> values) {
  const Format& format = file_.format();
  const std::vector<std::byte> fixed = fixedFields(values);
  const std::vector<std::byte> mask = nullMask(values);
  std::vector<std::byte> variable;
  RowParts parts{.columns = values.size(), .fixed = fixed, .mask = mask};
  const auto endSoFar = [&] { return format.countWidth + fixed.size() + variable.size(); };
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (definition_.columns[i].fixed) continue;
    parts.offsets.push_back(endSoFar());
    if (values[i].isNull()) continue;
    const std::vector<std::byte> bytes = variableField(i, values[i]);
    variable.insert(variable.end(), bytes.begin(), bytes.end());
  }
  if (definition_.varColumns != 0) parts.offsets.push_back(endSoFar());
  parts.variable = variable;

  std::vector<std::byte> row = assembleRow(format, parts);
  if (row.size() > format.maxRowSize) {
    throw RuntimeError(error::kRowTooLong, "Record of table '" + definition_.name +
                                               "' is too large: " + std::to_string(row.size()) +
                                               " bytes.");
  }
  return row;
}

std::vector<std::byte> RowWriter::fixedFields(std::span<const values::Variant> values) const {
  std::vector<std::byte> fields;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Column& column = definition_.columns[i];
    if (!column.fixed || column.type == ColumnType::kYesNo) continue;
    fields.resize(column.fixedOffset + std::size_t{column.length});
    if (values[i].isNull()) continue;
    const std::vector<std::byte> bytes =
        converted(definition_, column, [&] { return encodeFixed(column, values[i]); });
    std::ranges::copy(bytes, fields.begin() + column.fixedOffset);
  }
  return fields;
}

std::vector<std::byte> RowWriter::nullMask(std::span<const values::Variant> values) const {
  std::vector<std::byte> mask(nullMaskSize(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool yesNo = definition_.columns[i].type == ColumnType::kYesNo;
    const bool value = !values[i].isNull() && (!yesNo || toBool(values[i]));
    setMaskBit(mask, static_cast<std::uint16_t>(i), value);
  }
  return mask;
}

std::vector<std::byte> RowWriter::variableField(std::size_t position,
                                                const values::Variant& value) {
  const Column& column = definition_.columns[position];
  std::vector<std::byte> bytes =
      converted(definition_, column, [&] { return variableBytes(file_.encoder(), column, value); });
  checkLength(file_.encoder(), definition_, column, value, bytes.size());
  return column.isLongValue() ? placeLongValue(position, bytes) : bytes;
}

// Twelve bytes in the row: length and form, a row pointer, and zeros. Short values follow them
// there; longer ones fill one row of a long-value page, or several, each beginning with the pointer
// to the next.
std::vector<std::byte> RowWriter::placeLongValue(std::size_t position, Bytes bytes) {
  const auto length = static_cast<std::uint32_t>(bytes.size());
  ByteBuffer header;
  const auto finish = [&](std::uint32_t form, RowId first) {
    header.put(length | form);
    header.put(rowPointer(first.page, first.row));
    header.put(std::uint32_t{0});
    if (form == kLongValueInline) header.put(bytes);
    return std::vector<std::byte>(header.bytes().begin(), header.bytes().end());
  };
  if (bytes.size() <= kMaxInlineLong) return finish(kLongValueInline, {});
  DataPages& pages = longValues_.at(position);
  const std::size_t maxPageLong = file_.format().maxPageLong;
  if (bytes.size() <= maxPageLong) return finish(kLongValueSinglePage, pages.add(bytes));

  pages.closePage();  // every piece but the last fills a page of its own
  RowId first;
  for (Bytes rest = bytes; !rest.empty();) {
    const Bytes piece = rest.first(std::min(rest.size(), maxPageLong - kRowPointerSize));
    rest = rest.subspan(piece.size());
    const RowId here = pages.placeFor(piece.size() + kRowPointerSize);
    if (first.page == 0) first = here;
    ByteBuffer row;
    row.put(rest.empty() ? std::uint32_t{0} : rowPointer(file_.pageCount(), 0));
    row.put(piece);
    (void)pages.add(row.bytes());
  }
  return finish(0, first);
}

void RowWriter::leaveDeleted(std::span<const values::Variant> values) {
  for (auto& [position, pages] : longValues_) {
    if (position >= values.size() || values[position].isNull()) continue;
    const std::size_t size =
        variableBytes(file_.encoder(), definition_.columns[position], values[position]).size();
    if (size > kMaxInlineLong && size <= file_.format().maxPageLong) {
      (void)pages.add({}, kRowForwarded | kRowDeleted);
    }
  }
}

void RowWriter::finish() {
  for (auto& [position, pages] : longValues_) pages.finish();
}

}  // namespace jetcreate
