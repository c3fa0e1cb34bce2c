#include "jet/rows/row_encode.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::size_t kJump = 256;  // what each entry of a Jet 3 jump table adds
constexpr std::byte kNoJump{0xff};  // one that the row's length asks for and no offset needs

template <typename T>
StoredField stored(T value) {
  std::vector<std::byte> bytes(sizeof(T));
  std::memcpy(bytes.data(), &value, sizeof(T));
  return bytes;
}

std::uint8_t toByte(const values::Variant& value) {
  const std::int32_t number = toLong(value);
  if (number < 0 || number > 255) throw RuntimeError(error::kOverflow, "Overflow");
  return static_cast<std::uint8_t>(number);
}

float toSingle(const values::Variant& value) {
  const double number = toDouble(value);
  if (std::abs(number) > std::numeric_limits<float>::max()) {
    throw RuntimeError(error::kOverflow, "Overflow");
  }
  return static_cast<float>(number);
}

[[noreturn]] void notUpdatable(const Column& column) {
  throw RuntimeError(error::kNotUpdatable, "Field '" + column.name +
                                               "' cannot be updated: only fields of fixed size and "
                                               "Yes/No fields are written here.");
}

template <typename T>
void append(std::vector<std::byte>& out, T value) {
  const std::size_t at = out.size();
  out.resize(at + sizeof(T));
  storeLittle<T>(out, at, value);
}

std::size_t maskSize(std::size_t columns) { return (columns + 7) / 8; }

}  // namespace

StoredField encodeField(const Column& column, const values::Variant& value) {
  // Other flags of automatic numbers stand on ordinary columns too in the engine's own files.
  const bool counts = column.type == ColumnType::kLong && (column.flags & kColumnAutonumber) != 0;
  if (!column.fixed || counts) notUpdatable(column);
  if (column.type == ColumnType::kYesNo) {
    if (value.isNull() || !toBool(value)) return std::nullopt;
    return std::vector<std::byte>();
  }
  if (value.isNull()) return std::nullopt;
  switch (column.type) {
    case ColumnType::kByte:
      return stored(toByte(value));
    case ColumnType::kInteger:
      return stored(toInteger(value));
    case ColumnType::kLong:
      return stored(toLong(value));
    case ColumnType::kCurrency:
      return stored(toCurrency(value).units);
    case ColumnType::kSingle:
      return stored(toSingle(value));
    case ColumnType::kDouble:
      return stored(toDouble(value));
    case ColumnType::kDateTime:
      return stored(toDate(value).serial);
    default:
      notUpdatable(column);
  }
}

RowEncoder::RowEncoder(const PageFile& file, std::uint32_t page, const TableDefinition& definition,
                       Bytes row)
    : file_(&file),
      page_(page),
      definition_(&definition),
      row_(row.begin(), row.end()),
      frame_(parse()) {}

RowEncoder::Frame RowEncoder::parse() const {
  const std::size_t width = format().rowNumberSize;
  Frame frame;
  if (row_.size() > width) frame.columns = width == 1 ? loadU8(row_, 0) : loadU16(row_, 0);
  const std::size_t mask = maskSize(frame.columns);
  if (frame.columns == 0 || frame.columns > definition_->maxColumns || row_.size() < width + mask) {
    file_->damaged(page_, "a row does not fit its columns");
  }
  frame.mask = row_.size() - mask;
  frame.fixedEnd = frame.mask;
  const bool variableColumns = std::ranges::any_of(definition_->columns, [&](const Column& column) {
    return !column.fixed && column.number < frame.columns;
  });
  // Only in a table that had no variable columns yet does a row go without that part.
  if (definition_->varColumns != 0 && !parseVariablePart(frame, variableColumns) &&
      variableColumns) {
    file_->damaged(page_, "the variable fields of a row do not fit it");
  }
  return frame;
}

// Backwards from the null mask: how many variable fields there are, (Jet 3) the jump table, where
// each one starts, where the last one ends. That is where this table begins, by which one that is
// not `certain` to be there is told; later engines leave a few bytes between them at times.
bool RowEncoder::parseVariablePart(Frame& frame, bool certain) const {
  const std::size_t width = format().rowNumberSize;
  const std::size_t jumps = format().version == Version::kJet3 ? (row_.size() - 1) / kJump : 0;
  if (frame.mask < 2 * width + jumps) return false;
  const std::size_t count =
      width == 1 ? loadU8(row_, frame.mask - 1) : loadU16(row_, frame.mask - 2);
  const std::size_t table = width + jumps + width * (count + 1);
  if (frame.mask < width + table) return false;
  std::vector<std::size_t> offsets;
  for (std::size_t entry = 0; entry <= count; ++entry) {
    offsets.push_back(variableOffset(frame, entry, count, jumps));
  }
  if (offsets.front() < width || !std::ranges::is_sorted(offsets)) return false;
  const std::size_t end = offsets.back() + table;
  if (certain ? end > frame.mask : end != frame.mask) return false;
  frame.hasVariablePart = true;
  frame.fixedEnd = offsets.front();
  frame.offsets = std::move(offsets);
  return true;
}

std::size_t RowEncoder::variableOffset(const Frame& frame, std::size_t entry, std::size_t count,
                                       std::size_t jumps) const {
  const std::size_t first = frame.mask - format().rowNumberSize - jumps;
  if (format().version == Version::kJet4) return loadU16(row_, first - 2 * (entry + 1));
  const std::size_t used = jumps != 0 && (first - count - 1) / kJump < jumps ? jumps - 1 : jumps;
  std::size_t offset = loadU8(row_, first - (entry + 1));
  for (std::size_t i = 0; i < used; ++i) {
    if (loadU8(row_, frame.mask - 2 - i) <= entry) offset += kJump;
  }
  return offset;
}

StoredField RowEncoder::get(const Column& column) const {
  if (column.number >= frame_.columns) return std::nullopt;
  const std::size_t byte = frame_.mask + column.number / 8U;
  if ((loadU8(row_, byte) >> column.number % 8 & 1) == 0) return std::nullopt;
  if (column.type == ColumnType::kYesNo) return std::vector<std::byte>();
  const std::size_t start = format().rowNumberSize + column.fixedOffset;
  if (!column.fixed || start + column.length > frame_.fixedEnd) {
    file_->damaged(page_, "column '" + column.name + "' lies outside its row");
  }
  const auto at = row_.begin() + static_cast<std::ptrdiff_t>(start);
  return std::vector<std::byte>(at, at + column.length);
}

void RowEncoder::set(const Column& column, const StoredField& field) {
  const bool storesBytes = column.type != ColumnType::kYesNo;
  const std::size_t start = format().rowNumberSize + column.fixedOffset;
  if (column.number >= frame_.columns || (storesBytes && start + column.length > frame_.fixedEnd)) {
    // What a missing column reads as is not worth a longer row.
    if (!field) return;
    makeRoomFor(column);
  }
  const std::size_t maskByte = frame_.mask + column.number / 8U;
  const auto bit = static_cast<std::byte>(1U << column.number % 8U);
  row_[maskByte] = field ? row_[maskByte] | bit : row_[maskByte] & ~bit;
  if (!field || !storesBytes) return;
  if (field->size() != column.length) {
    file_->damaged(page_, "column '" + column.name + "' has an impossible length");
  }
  std::ranges::copy(*field, row_.begin() + static_cast<std::ptrdiff_t>(start));
}

// Takes the row apart and puts it together with every part as long as the column asks for.
void RowEncoder::makeRoomFor(const Column& column) {
  const std::size_t width = format().rowNumberSize;
  Frame frame = frame_;
  frame.columns = std::max(frame.columns, column.number + std::size_t{1});
  std::size_t fixedSize = frame_.fixedEnd - width;
  std::size_t variableCount = frame_.hasVariablePart ? frame_.offsets.size() - 1 : 0;
  for (const Column& c : definition_->columns) {
    if (c.number >= frame.columns) continue;
    if (!c.fixed) {
      variableCount = std::max(variableCount, c.varIndex + std::size_t{1});
    } else if (c.type != ColumnType::kYesNo) {
      fixedSize = std::max(fixedSize, c.fixedOffset + std::size_t{c.length});
    }
  }

  const Bytes old = row_;
  std::vector<std::byte> fixed(fixedSize);
  std::ranges::copy(old.subspan(width, frame_.fixedEnd - width), fixed.begin());
  std::vector<std::byte> mask(maskSize(frame.columns));
  std::ranges::copy(old.subspan(frame_.mask), mask.begin());
  Bytes variable;
  if (frame_.hasVariablePart) {
    variable = old.subspan(frame_.fixedEnd, frame_.offsets.back() - frame_.fixedEnd);
    for (std::size_t& offset : frame.offsets) offset += width + fixedSize - frame_.fixedEnd;
  } else {
    frame.offsets.assign(1, width + fixedSize);
  }
  frame.hasVariablePart = frame_.hasVariablePart || definition_->varColumns != 0;
  frame.offsets.resize(variableCount + 1, frame.offsets.back());

  row_ = assemble(frame, fixed, variable, mask);
  frame_ = parse();
  grown_ = true;
}

std::vector<std::byte> RowEncoder::assemble(const Frame& frame, Bytes fixed, Bytes variable,
                                            Bytes mask) const {
  std::vector<std::byte> out;
  const bool jet3 = format().version == Version::kJet3;
  const auto number = [&](std::size_t value) {
    if (jet3) {
      append(out, static_cast<std::uint8_t>(value));
    } else {
      append(out, static_cast<std::uint16_t>(value));
    }
  };
  number(frame.columns);
  out.insert(out.end(), fixed.begin(), fixed.end());
  out.insert(out.end(), variable.begin(), variable.end());
  if (frame.hasVariablePart) {
    for (std::size_t i = frame.offsets.size(); i-- != 0;) number(frame.offsets[i]);
    if (jet3) {
      // The jump table counts in the row's length, which says how long the jump table is.
      const std::size_t rest = out.size() + 1 + mask.size();
      std::size_t jumps = 0;
      while ((rest + jumps - 1) / kJump > jumps) ++jumps;
      for (std::size_t i = jumps; i-- != 0;) {
        const auto reached = std::ranges::lower_bound(frame.offsets, kJump * (i + 1));
        out.push_back(reached == frame.offsets.end()
                          ? kNoJump
                          : static_cast<std::byte>(reached - frame.offsets.begin()));
      }
    }
    number(frame.offsets.size() - 1);
  }
  out.insert(out.end(), mask.begin(), mask.end());
  return out;
}

}  // namespace jet
