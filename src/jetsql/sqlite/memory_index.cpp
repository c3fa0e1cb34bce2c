#include "jetsql/sqlite/memory_index.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "jet/index/key_codec.h"
#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/numeric_encoding.h"

namespace jetsql {
namespace {

using Kind = EncodedValue::Kind;
using values::VariantType;

bool isWholeKey(VariantType type) { return isWholeNumber(type) || type == VariantType::kCurrency; }

std::int64_t hashKey(const void* bytes, std::size_t size) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const auto* p = static_cast<const unsigned char*>(bytes); size-- > 0; ++p) {
    hash = (hash ^ *p) * 0x100000001B3U;
  }
  return static_cast<std::int64_t>(hash);
}

std::int64_t textKey(std::string_view text) { return static_cast<std::int64_t>(hashText(text)); }

// A real value among whole keys: cut to their range.
std::int64_t wholeBound(double value) {
  constexpr double kLimit = 9.2e18;
  return static_cast<std::int64_t>(std::clamp(value, -kLimit, kLimit));
}

std::optional<std::int64_t> wholeKeyOf(const EncodedValue& value) {
  if (value.kind == Kind::kWhole) return value.whole;
  const double number = value.real;
  if (number != std::floor(number)) return {};
  return wholeBound(number);
}

}  // namespace

bool hasOrderedKeys(VariantType type) {
  return isWholeKey(type) || type == VariantType::kSingle || type == VariantType::kDouble ||
         type == VariantType::kDateTime;
}

std::optional<std::int64_t> orderedKey(const jet::Row& row, std::size_t column, VariantType type) {
  if (isWholeKey(type)) return row.wholeNumber(column);
  const double number = row.realNumber(column);
  if (std::isnan(number)) return {};
  return jet::realOrdinal(number);
}

std::optional<std::int64_t> KeyReader::key(const jet::Row& row) {
  if (expression_ != nullptr) {
    const values::Variant value = expression_->value(row);
    if (value.isNull()) return {};
    return textKey(*value.as<std::string>());
  }
  if (row.isNull(column_)) return {};
  if (isWholeKey(type_)) return row.wholeNumber(column_);
  if (hasOrderedKeys(type_)) return jet::realOrdinal(row.realNumber(column_));
  if (type_ == VariantType::kText) return textKey(row.text(column_, text_));
  if (type_ == VariantType::kNumeric) {
    const auto bytes = encodeNumeric(row.numeric(column_));
    return hashKey(bytes.data(), bytes.size());
  }
  const auto bytes = row.binary(column_, binary_);
  return hashKey(bytes.data(), bytes.size());
}

bool KeyScan::next() {
  while (scan_.next()) {
    const auto key = reader_.key(scan_.row());
    if (!key || !keys_.has(*key)) continue;
    key_ = *key;
    return true;
  }
  return false;
}

std::vector<MemoryIndex::Entry> MemoryIndex::read(jet::Table& table, KeyReader reader,
                                                  const KeyInterval& covered) {
  std::vector<Entry> entries;
  if (!covered.isOneKey()) {
    // The definition's count is a hint; a wrong one must not cost much.
    constexpr std::uint32_t kMaxReserved = 1U << 20U;
    entries.reserve(std::min(table.definition().rowCount, kMaxReserved));
  }
  for (KeyScan scan(table, std::move(reader), covered); scan.next();) {
    entries.push_back({scan.key(), scan.row().id().number()});
  }
  return entries;
}

MemoryIndex::MemoryIndex(std::vector<Entry> entries, const KeyInterval& covered)
    : covered_(covered), entries_(std::move(entries)) {
  std::erase_if(entries_, [&](const Entry& entry) { return !covered.has(entry.key); });
  entries_.shrink_to_fit();
  const auto before = [](const Entry& a, const Entry& b) {
    return a.key != b.key ? a.key < b.key : a.row < b.row;
  };
  // Days and numbers of sales grow with the file: often there is nothing to sort.
  if (!std::is_sorted(entries_.begin(), entries_.end(), before)) {
    std::sort(entries_.begin(), entries_.end(), before);
  }
}

std::span<const MemoryIndex::Entry> MemoryIndex::range(const KeyInterval& keys) const {
  if (keys.first > keys.last) return {};
  const auto begin =
      std::lower_bound(entries_.begin(), entries_.end(), keys.first,
                       [](const Entry& entry, std::int64_t key) { return entry.key < key; });
  const auto end =
      std::upper_bound(begin, entries_.end(), keys.last,
                       [](std::int64_t key, const Entry& entry) { return key < entry.key; });
  return {begin, end};
}

std::optional<std::int64_t> keyOf(const EncodedValue& value, VariantType type) {
  if (hasOrderedKeys(type)) {
    if (!value.isNumber()) return {};
    return isWholeKey(type) ? wholeKeyOf(value) : jet::realOrdinal(value.number());
  }
  if (type == VariantType::kText) {
    if (value.kind != Kind::kText) return {};
    return textKey(value.bytes);
  }
  if (value.kind != Kind::kBlob) return {};
  return hashKey(value.bytes.data(), value.bytes.size());
}

KeyInterval keysFrom(const EncodedValue& value, VariantType type) {
  if (!value.isNumber()) return {1, 0};
  if (!isWholeKey(type)) return {jet::realOrdinal(value.number()), INT64_MAX};
  if (value.kind == Kind::kWhole) return {value.whole, INT64_MAX};
  return {wholeBound(std::floor(value.real)), INT64_MAX};
}

KeyInterval keysUpTo(const EncodedValue& value, VariantType type) {
  if (!value.isNumber()) return {1, 0};
  if (!isWholeKey(type)) return {INT64_MIN, jet::realOrdinal(value.number())};
  if (value.kind == Kind::kWhole) return {INT64_MIN, value.whole};
  return {INT64_MIN, wholeBound(std::ceil(value.real))};
}

}  // namespace jetsql
