#include "jetcreate/row_writer.h"

#include <algorithm>
#include <string>

#include "jet/format/layout.h"
#include "jetcreate/layout.h"
#include "jetcreate/stored_value.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

RowEncoder::RowEncoder(NewFile& file, const TableDefinition& definition)
    : file_(file), definition_(definition) {
  for (std::size_t i = 0; i < definition.columns.size(); ++i) {
    if (definition.columns[i].isLongValue())
      longValues_.emplace(i, DataPages(file, kLongValueOwner));
  }
}

Bytes RowEncoder::encode(std::span<const values::Variant> values) {
  row_.clear();
  row_.put(static_cast<std::uint16_t>(values.size()));
  putFixed(values);
  putVariable(values);
  putNullMask(values);
  if (row_.size() > kMaxRowSize)
    throw RuntimeError(error::kRowTooLong, "Record of table '" + definition_.name +
                                               "' is too large: " + std::to_string(row_.size()) +
                                               " bytes.");
  return row_.bytes();
}

void RowEncoder::putFixed(std::span<const values::Variant> values) {
  const std::size_t start = row_.size();
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Column& column = definition_.columns[i];
    if (!column.fixed || column.type == ColumnType::kYesNo) continue;
    row_.putZeros(start + column.fixedOffset + column.length - row_.size());
    if (values[i].isNull()) continue;
    const std::vector<std::byte> bytes = storedFixed(definition_, column, values[i]);
    std::copy(bytes.begin(), bytes.end(),
              row_.bytes().begin() + static_cast<std::ptrdiff_t>(start + column.fixedOffset));
  }
}

// The values one behind the other, then where the last one ends, where each begins (the last one
// first), and their count. A table without such columns has none of this.
void RowEncoder::putVariable(std::span<const values::Variant> values) {
  if (definition_.varColumns == 0) return;
  std::vector<std::uint16_t> starts;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (definition_.columns[i].fixed) continue;
    starts.push_back(static_cast<std::uint16_t>(row_.size()));
    if (!values[i].isNull()) row_.put(variableBytes(i, values[i]));
  }
  row_.put(static_cast<std::uint16_t>(row_.size()));
  for (auto start = starts.rbegin(); start != starts.rend(); ++start) row_.put(*start);
  row_.put(static_cast<std::uint16_t>(starts.size()));
}

// A bit a column: set when it is not Null, and for Yes/No the value itself.
void RowEncoder::putNullMask(std::span<const values::Variant> values) {
  const std::size_t start = row_.size();
  row_.putZeros((values.size() + 7) / 8);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool yesNo = definition_.columns[i].type == ColumnType::kYesNo;
    if (values[i].isNull() || (yesNo && !toBool(values[i]))) continue;
    row_.bytes()[start + i / 8] |= std::byte{1} << (i % 8);
  }
}

std::vector<std::byte> RowEncoder::variableBytes(std::size_t position,
                                                 const values::Variant& value) {
  const Column& column = definition_.columns[position];
  std::vector<std::byte> bytes = storedVariable(definition_, column, value);
  return column.isLongValue() ? placeLongValue(position, bytes) : bytes;
}

// Twelve bytes in the row: length and form, a row pointer, and zeros. Short values follow them
// there; longer ones fill one row of a long-value page, or several, each beginning with the pointer
// to the next.
std::vector<std::byte> RowEncoder::placeLongValue(std::size_t position, Bytes bytes) {
  constexpr std::size_t kPointerSize = 4;
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
  if (bytes.size() <= kMaxPageLong) return finish(kLongValueSinglePage, pages.add(bytes));

  pages.closePage();  // every piece but the last fills a page of its own
  RowId first;
  for (Bytes rest = bytes; !rest.empty();) {
    const Bytes piece = rest.first(std::min(rest.size(), kMaxPageLong - kPointerSize));
    rest = rest.subspan(piece.size());
    const RowId here = pages.placeFor(piece.size() + kPointerSize);
    if (first.page == 0) first = here;
    ByteBuffer row;
    row.put(rest.empty() ? std::uint32_t{0} : rowPointer(file_.pageCount(), 0));
    row.put(piece);
    (void)pages.add(row.bytes());
  }
  return finish(0, first);
}

void RowEncoder::finish() {
  for (auto& [position, pages] : longValues_) pages.finish();
}

}  // namespace jetcreate
