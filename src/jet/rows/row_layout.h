// Where the parts of a row stand. The one reader and the one writer of a row's structure:
//
//   column count | fixed fields | variable fields | offsets | jumps | variable count | null mask
//
//   const auto layout = RowLayout::of(format, row);       // nothing: the row is too short
//   if (layout->isSet(column.number)) use(layout->fixedField(column));
//
// The column count, each offset and the variable count have countWidth bytes: one in Jet 3, two in
// Jet 4. The null mask has a bit for each column that the table had when the row was written, set
// when the field is not Null, and for Yes/No the value itself. Offsets count from the row's start
// and stand in reverse: where the last variable field ends, then where each one starts, the last
// first. Jumps are there in Jet 3 rows that are longer than a byte can count: each holds the first
// field from which another 256 is added to the offsets. docs/jet-format.md has an example.
//
// Plain views of the row's bytes, which must stay alive. Nothing throws: bytes that make no sense
// give no field.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "jet/format/table_definition.h"

namespace jet {

// The end of the row: offsets of the variable fields, jumps and the variable count.
struct VariablePart {
  std::size_t count = 0;  // variable fields
  std::size_t jumps = 0;  // entries of the jump table
  std::size_t size = 0;   // bytes of the three together
};

[[nodiscard]] constexpr std::size_t nullMaskSize(std::size_t columns) { return (columns + 7) / 8; }

class RowLayout {
 public:
  RowLayout() = default;

  // Nothing where the row is too short for its column count and null mask.
  [[nodiscard]] static std::optional<RowLayout> of(const Format& format, Bytes row) {
    const std::size_t width = format.countWidth;
    if (row.size() < width + 1) return std::nullopt;
    RowLayout layout;
    layout.row_ = row;
    layout.countWidth_ = static_cast<std::uint8_t>(width);
    layout.columns_ = width == 1 ? loadU8(row, 0) : loadU16(row, 0);
    const std::size_t maskSize = nullMaskSize(layout.columns_);
    if (row.size() < width + maskSize) return std::nullopt;
    layout.maskStart_ = static_cast<std::uint16_t>(row.size() - maskSize);
    return layout;
  }

  [[nodiscard]] Bytes row() const { return row_; }
  [[nodiscard]] std::size_t columns() const { return columns_; }
  [[nodiscard]] std::size_t fixedStart() const { return countWidth_; }
  [[nodiscard]] std::size_t maskStart() const { return maskStart_; }

  // The null mask's bit of a column, by Column::number; false for one that the row does not have.
  [[nodiscard]] bool isSet(std::uint16_t number) const {
    return number < columns_ && (loadU8(row_, maskStart_ + number / 8U) >> number % 8 & 1) != 0;
  }

  // Nothing where the field would lie outside the row.
  [[nodiscard]] std::optional<Bytes> fixedField(const Column& column) const {
    const std::size_t start = std::size_t{countWidth_} + column.fixedOffset;
    if (start + column.length > maskStart_) return std::nullopt;
    return row_.subspan(start, column.length);
  }
  [[nodiscard]] std::optional<Bytes> variableField(std::size_t varIndex) const;

  // Nothing where the row has no room for it.
  [[nodiscard]] std::optional<VariablePart> variablePart() const;

  // Where variable field `n` starts; for n == part.count, where the last one ends. Not checked
  // against the row.
  [[nodiscard]] std::size_t variableOffset(const VariablePart& part, std::size_t n) const {
    const std::size_t offsetsEnd = maskStart_ - std::size_t{countWidth_} - part.jumps;
    const std::size_t offset = loadCount(row_, offsetsEnd - countWidth_ * (n + 1), countWidth_);
    return part.jumps == 0 ? offset : offset + jumped(part, n);
  }

 private:
  [[nodiscard]] static std::size_t loadCount(Bytes bytes, std::size_t offset, std::size_t width) {
    return width == 1 ? loadU8(bytes, offset) : loadU16(bytes, offset);
  }
  [[nodiscard]] bool isJet3() const { return countWidth_ == 1; }
  // What the jump table adds to the offset of variable field `n`.
  [[nodiscard]] std::size_t jumped(const VariablePart& part, std::size_t n) const;

  Bytes row_;
  std::uint16_t columns_ = 0;
  std::uint16_t maskStart_ = 0;
  std::uint8_t countWidth_ = 0;
};

// What assembleRow puts together.
struct RowParts {
  std::size_t columns = 0;
  Bytes fixed = {};
  Bytes variable = {};
  // From the row's start: where each variable field starts, then where the last one ends. Empty for
  // a row of a table without variable columns, which has none of that part.
  std::vector<std::size_t> offsets = {};
  Bytes mask = {};  // nullMaskSize(columns) bytes
};

[[nodiscard]] std::vector<std::byte> assembleRow(const Format& format, const RowParts& parts);

void setMaskBit(MutableBytes mask, std::uint16_t number, bool value);

}  // namespace jet
