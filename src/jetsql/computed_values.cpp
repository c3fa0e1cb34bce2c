#include "jetsql/computed_values.h"

#include <algorithm>
#include <cstring>

namespace jetsql {
namespace {

using Kind = EncodedValue::Kind;

constexpr std::size_t kFirstBlock = 256;
constexpr std::size_t kLargestBlock = std::size_t{256} << 10U;

// A kind byte, then eight bytes of a number, or a length and the bytes.
std::size_t packedSize(const EncodedValue& value) {
  switch (value.kind) {
    case Kind::kNull:
      return 1;
    case Kind::kWhole:
    case Kind::kReal:
      return 1 + sizeof(std::int64_t);
    default:
      return 1 + sizeof(std::uint32_t) + value.bytes.size();
  }
}

template <typename T>
char* put(char* to, const T& value) {
  std::memcpy(to, &value, sizeof value);
  return to + sizeof value;
}

template <typename T>
const char* take(const char* from, T& value) {
  std::memcpy(&value, from, sizeof value);
  return from + sizeof value;
}

char* pack(char* to, const EncodedValue& value) {
  to = put(to, value.kind);
  switch (value.kind) {
    case Kind::kNull:
      return to;
    case Kind::kWhole:
      return put(to, value.whole);
    case Kind::kReal:
      return put(to, value.real);
    default:
      to = put(to, static_cast<std::uint32_t>(value.bytes.size()));
      return std::copy(value.bytes.begin(), value.bytes.end(), to);
  }
}

const char* unpack(const char* from, EncodedValue& value) {
  value = {};
  from = take(from, value.kind);
  switch (value.kind) {
    case Kind::kNull:
      return from;
    case Kind::kWhole:
      return take(from, value.whole);
    case Kind::kReal:
      return take(from, value.real);
    default: {
      std::uint32_t size = 0;
      from = take(from, size);
      value.bytes = {from, size};
      return from + size;
    }
  }
}

}  // namespace

char* ComputedValues::reserve(std::size_t size) {
  if (blocks_.empty() || blocks_.back().size - blocks_.back().used < size) {
    const std::size_t grown = blocks_.empty() ? kFirstBlock : blocks_.back().size * 4;
    const std::size_t wanted = std::max(size, std::min(grown, kLargestBlock));
    blocks_.push_back({std::make_unique<char[]>(wanted), wanted, 0});
  }
  Block& block = blocks_.back();
  char* place = block.bytes.get() + block.used;
  block.used += size;
  return place;
}

void ComputedValues::append(sqlite3_stmt* statement, int firstColumn) {
  if (types_.empty()) return;
  scratch_.resize(types_.size());
  for (std::size_t i = 0; i < types_.size(); ++i) {
    scratch_[i] = encodedColumn(statement, firstColumn + static_cast<int>(i));
  }
  append(scratch_);
}

void ComputedValues::append(std::span<const EncodedValue> values) {
  if (types_.empty()) return;
  std::size_t size = 0;
  for (const EncodedValue& value : values) size += packedSize(value);
  char* place = reserve(size);
  rows_.push_back(place);
  bytes_ += size + sizeof place;
  for (const EncodedValue& value : values) place = pack(place, value);
}

void ComputedValues::reorder(std::span<const std::int64_t> order) {
  if (types_.empty()) return;
  std::vector<const char*> rows;
  rows.reserve(rows_.size());
  for (const std::int64_t row : order) rows.push_back(rows_[static_cast<std::size_t>(row)]);
  rows_ = std::move(rows);
}

values::VariantView ComputedValues::get(std::size_t row, std::size_t value) const {
  const char* place = rows_[row];
  EncodedValue encoded;
  for (std::size_t i = 0; i <= value; ++i) place = unpack(place, encoded);
  return decodeView(encoded, types_[value]);
}

}  // namespace jetsql
