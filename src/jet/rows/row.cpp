#include "jet/rows/row.h"

#include <array>

#include "jet/pages/long_value.h"
#include "values/decimal.h"

namespace jet {
namespace {

constexpr std::size_t kGuidSize = 16;
constexpr std::size_t kNumericSize = 17;

// {00112233-4455-6677-8899-AABBCCDDEEFF}; the first three groups are stored low byte first.
std::string guidText(Bytes raw) {
  constexpr std::array<int, kGuidSize> kOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                 8, 9, 10, 11, 12, 13, 14, 15};
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "{";
  for (std::size_t i = 0; i < kGuidSize; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    const std::uint8_t byte = loadU8(raw, static_cast<std::size_t>(kOrder[i]));
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text + '}';
}

// A sign byte, then four 32-bit words, the highest first, each with its low byte first.
values::Numeric toNumeric(Bytes raw, std::uint8_t scale) {
  values::Numeric value{.negative = loadU8(raw, 0) != 0, .scale = scale};
  for (std::size_t word = 0; word < 4; ++word) {
    value.magnitude = value.magnitude << 32 | loadU32(raw, 1 + 4 * word);
  }
  return value;
}

}  // namespace

Row::Row(const RowContext& context, RowId id, PagePtr page, Bytes bytes)
    : context_(&context), id_(id), page_(std::move(page)), bytes_(bytes) {
  const std::size_t numberSize = context.file.format().rowNumberSize;
  if (bytes.size() < numberSize + 1) rowDamaged("it is too short");
  columnCount_ = numberSize == 1 ? loadU8(bytes, 0) : loadU16(bytes, 0);
  if (columnCount_ > context.definition.maxColumns) rowDamaged("it has too many columns");
  const std::size_t maskSize = (std::size_t{columnCount_} + 7) / 8;
  if (bytes.size() < numberSize + maskSize) rowDamaged("it is too short");
  maskOffset_ = static_cast<std::uint16_t>(bytes.size() - maskSize);
}

bool Row::bit(const Column& column) const {
  return column.number < columnCount_ &&
         (loadU8(bytes_, maskOffset_ + column.number / 8U) >> column.number % 8 & 1) != 0;
}

bool Row::isNull(std::size_t position) const {
  const Column& c = column(position);
  return c.type != ColumnType::kYesNo && !bit(c);
}

Bytes Row::raw(std::size_t position) const { return raw(column(position)); }

Bytes Row::raw(const Column& c) const {
  if (c.type == ColumnType::kYesNo) return {};
  return c.fixed ? rawFixed(c) : rawVariable(c);
}

Bytes Row::rawFixed(const Column& c) const {
  const std::size_t start = context_->file.format().rowNumberSize + c.fixedOffset;
  if (start + c.length > maskOffset_) damaged(c, "lies outside the row");
  return bytes_.subspan(start, c.length);
}

// In front of the null mask stand, backwards: how many variable columns there are, (Jet 3) the jump
// table, where each one starts, where the last one ends.
Bytes Row::rawVariable(const Column& c) const {
  const std::size_t width = context_->file.format().rowNumberSize;
  const std::size_t jumps = jumpCount();
  const std::size_t head = width + jumps;  // of the count and the jump table
  if (maskOffset_ < width + head) damaged(c, "has no place in the row");
  const std::size_t count =
      width == 1 ? loadU8(bytes_, maskOffset_ - 1U) : loadU16(bytes_, maskOffset_ - std::size_t{2});
  const std::size_t table = head + width * (count + 1);
  if (table + width > maskOffset_ || c.varIndex >= count) damaged(c, "has no place in the row");

  const std::size_t start = variableOffset(c.varIndex, count, jumps);
  const std::size_t end = variableOffset(c.varIndex + std::size_t{1}, count, jumps);
  if (start < width || start > end || end > maskOffset_ - table) damaged(c, "lies outside the row");
  return bytes_.subspan(start, end - start);
}

// A jump table is there in Jet 3 rows longer than a byte can count.
std::size_t Row::jumpCount() const {
  return context_->file.format().version == Version::kJet3 ? (bytes_.size() - 1) / 256 : 0;
}

// Entry number `count` is the end of the last column. In Jet 3 an entry is a byte; each jump table
// entry up to and including this one's number adds 256 to it. The last jump may be a dummy: the
// table has as many as the whole row needs, the offsets may need one less.
std::size_t Row::variableOffset(std::size_t entry, std::size_t count, std::size_t jumps) const {
  const std::size_t first = maskOffset_ - context_->file.format().rowNumberSize - jumps;
  if (context_->file.format().version == Version::kJet4) {
    return loadU16(bytes_, first - 2 * (entry + 1));
  }
  const std::size_t used = jumps != 0 && (first - count - 1) / 256 < jumps ? jumps - 1 : jumps;
  std::size_t offset = loadU8(bytes_, first - (entry + 1));
  for (std::size_t i = 0; i < used; ++i) {
    if (loadU8(bytes_, maskOffset_ - 2U - i) <= entry) offset += 256;
  }
  return offset;
}

template <typename T>
T Row::number(const Column& c) const {
  const Bytes bytes = raw(c);
  if (bytes.size() != sizeof(T)) damaged(c, "has the wrong size");
  return loadLittle<T>(bytes, 0);
}

std::int64_t Row::wholeNumber(std::size_t position) const {
  const Column& c = column(position);
  switch (c.type) {
    case ColumnType::kYesNo:
      return bit(c) ? -1 : 0;
    case ColumnType::kByte:
      return number<std::uint8_t>(c);
    case ColumnType::kInteger:
      return number<std::int16_t>(c);
    case ColumnType::kCurrency:
    case ColumnType::kBigInt:
      return number<std::int64_t>(c);
    default:
      return number<std::int32_t>(c);
  }
}

double Row::realNumber(std::size_t position) const {
  const Column& c = column(position);
  return c.type == ColumnType::kSingle ? number<float>(c) : number<double>(c);
}

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
  if (bytes.size() != kGuidSize) damaged(c, "has the wrong size");
  scratch = guidText(bytes);
  return scratch;
}

Bytes Row::binary(std::size_t position, std::vector<std::byte>& scratch) const {
  const Bytes bytes = raw(position);
  if (column(position).type != ColumnType::kOle) return bytes;
  return longValue(context_->file, page_->number, bytes, scratch);
}

values::Numeric Row::numeric(std::size_t position) const {
  const Column& c = column(position);
  if (c.type == ColumnType::kBigInt) {
    const auto value = number<std::int64_t>(c);
    const auto bits = static_cast<std::uint64_t>(value);
    return {.negative = value < 0, .scale = 0, .magnitude = value < 0 ? 0 - bits : bits};
  }
  const Bytes bytes = raw(position);
  if (bytes.size() != kNumericSize) damaged(c, "has the wrong size");
  const values::Numeric value = toNumeric(bytes, c.scale);
  if (value.magnitude >= values::powerOfTen(28)) damaged(c, "is too large a number");
  return value;
}

values::Variant Row::value(std::size_t position) const {
  const Column& c = column(position);
  if (c.type == ColumnType::kYesNo) return bit(c);
  if (!bit(c)) return {};
  switch (c.type) {
    case ColumnType::kByte:
      return number<std::uint8_t>(c);
    case ColumnType::kInteger:
      return number<std::int16_t>(c);
    case ColumnType::kLong:
    case ColumnType::kComplex:
      return number<std::int32_t>(c);
    case ColumnType::kCurrency:
      return values::Currency{number<std::int64_t>(c)};
    case ColumnType::kSingle:
      return number<float>(c);
    case ColumnType::kDouble:
      return number<double>(c);
    case ColumnType::kDateTime:
      return values::DateTime{number<double>(c)};
    case ColumnType::kNumeric:
    case ColumnType::kBigInt:
      return numeric(position);
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kGuid:
      return textValue(position);
    default:
      break;
  }
  std::vector<std::byte> scratch;
  const Bytes found = binary(position, scratch);
  return values::Binary{{found.begin(), found.end()}};
}

std::string Row::textValue(std::size_t position) const {
  std::string scratch;
  const std::string_view found = text(position, scratch);
  if (found.data() == scratch.data()) return scratch;
  return std::string(found);
}

void Row::damaged(const Column& c, std::string_view what) const {
  rowDamaged("column '" + c.name + "' " + std::string(what));
}

void Row::rowDamaged(const std::string& what) const {
  context_->file.damaged(page_->number, "row " + std::to_string(id_.row) + " of table '" +
                                            context_->definition.name + "': " + what);
}

}  // namespace jet
