#include "jet/index/index_key.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>

#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::byte kValueAscending{0x7f};
constexpr std::byte kValueDescending{0x80};
constexpr std::size_t kMaxKeyBytes = 8;

// A key column's values, mapped to whole numbers of the same order: for whole types the number
// itself, for doubles their bits (negative ones turned over). So "the next value" is plus one.
using Ordinal = std::int64_t;

struct KeyType {
  std::size_t size = 0;  // bytes in an entry
  Ordinal least = 0;
  Ordinal greatest = 0;
  bool real = false;
};

template <typename T>
KeyType wholeType() {
  return {sizeof(T), std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), false};
}

std::optional<KeyType> keyType(ColumnType type) {
  switch (type) {
    case ColumnType::kYesNo:
      return KeyType{1, -1, 0, false};
    case ColumnType::kByte:
      return wholeType<std::uint8_t>();
    case ColumnType::kInteger:
      return wholeType<std::int16_t>();
    case ColumnType::kLong:
      return wholeType<std::int32_t>();
    case ColumnType::kCurrency:
      return wholeType<std::int64_t>();
    case ColumnType::kSingle:
      return KeyType{4, std::numeric_limits<std::int32_t>::min(),
                     std::numeric_limits<std::int32_t>::max(), true};
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      return KeyType{8, std::numeric_limits<Ordinal>::min(), std::numeric_limits<Ordinal>::max(),
                     true};
    default:
      return std::nullopt;
  }
}

// The bits of a double or single, read as a signed number, order positive values; negative ones run
// the other way and are turned over below the sign. Its own inverse.
template <typename Int>
Int turnNegative(Int bits) {
  return bits < 0 ? static_cast<Int>(bits ^ std::numeric_limits<Int>::max()) : bits;
}

double realOf(const KeyType& type, Ordinal ordinal) {
  if (type.size == 4) {
    return std::bit_cast<float>(turnNegative(static_cast<std::int32_t>(ordinal)));
  }
  return std::bit_cast<double>(turnNegative(ordinal));
}

__extension__ typedef __int128 Int128;

// A value to compare with, as exactly as its own type has it.
struct Comparand {
  bool null = false;
  bool whole = false;  // `units` holds it, in ten-thousandths
  Int128 units = 0;
  double real = 0;
};

Comparand wholeComparand(std::int64_t units, std::int64_t perOne) {
  Comparand c;
  c.whole = true;
  c.units = units;
  c.units *= 10000 / perOne;
  c.real = static_cast<double>(units) / static_cast<double>(perOne);
  return c;
}

Comparand toComparand(const values::Variant& value) {
  switch (value.type()) {
    case values::VariantType::kNull:
      return {.null = true};
    case values::VariantType::kYesNo:
      return wholeComparand(*value.as<bool>() ? -1 : 0, 1);
    case values::VariantType::kByte:
      return wholeComparand(*value.as<std::uint8_t>(), 1);
    case values::VariantType::kInteger:
      return wholeComparand(*value.as<std::int16_t>(), 1);
    case values::VariantType::kLong:
      return wholeComparand(*value.as<std::int32_t>(), 1);
    case values::VariantType::kCurrency:
      return wholeComparand(value.as<values::Currency>()->units, 10000);
    case values::VariantType::kSingle:
      return {.real = *value.as<float>()};
    case values::VariantType::kDouble:
      return {.real = *value.as<double>()};
    case values::VariantType::kDateTime:
      return {.real = value.as<values::DateTime>()->serial};
    default:
      throw RuntimeError(error::kInvalidArgument,
                         "Invalid argument: a value of this type is not "
                         "looked up in an index.");
  }
}

// Order of a key value against a comparand: whole numbers exactly, all else as doubles.
int compareKey(ColumnType column, const KeyType& type, Ordinal key, const Comparand& value) {
  if (!type.real && value.whole) {
    const Int128 units = static_cast<Int128>(key) * (column == ColumnType::kCurrency ? 1 : 10000);
    return (units > value.units) - (units < value.units);
  }
  double real = static_cast<double>(key);
  if (type.real) {
    real = realOf(type, key);
  } else if (column == ColumnType::kCurrency) {
    real /= 10000;
  }
  // NaN stands at both ends of the ordinals.
  if (std::isnan(real)) return key < 0 ? -1 : 1;
  return (real > value.real) - (real < value.real);
}

// The smallest key that is not below the value (or, `above`, that is above it); nothing when even
// the greatest is. Bisection over the whole type: exact for every pair of types, some 60 steps.
std::optional<Ordinal> firstKey(ColumnType column, const KeyType& type, const Comparand& value,
                                bool above) {
  const auto reached = [&](Ordinal key) {
    const int order = compareKey(column, type, key, value);
    return above ? order > 0 : order >= 0;
  };
  Ordinal low = type.least;
  Ordinal high = type.greatest;
  if (!reached(high)) return std::nullopt;
  while (low < high) {
    // Halves towards the lower end, also where high - low overflows.
    const Ordinal middle = (low & high) + ((low ^ high) >> 1);
    if (reached(middle)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

struct OrdinalRange {
  Ordinal first = 0;
  Ordinal last = 0;
  bool empty = false;
};

constexpr OrdinalRange kNothing = {.empty = true};

// Keys from the first reached by the lower comparand to the last not beyond the upper one.
OrdinalRange between(ColumnType column, const KeyType& type,
                     const std::optional<std::pair<Comparand, bool>>& lower,
                     const std::optional<std::pair<Comparand, bool>>& upper) {
  OrdinalRange range{type.least, type.greatest};
  if (lower) {
    if (lower->first.null || std::isnan(lower->first.real)) return kNothing;
    const auto first = firstKey(column, type, lower->first, !lower->second);
    if (!first) return kNothing;
    range.first = *first;
  }
  if (upper) {
    if (upper->first.null || std::isnan(upper->first.real)) return kNothing;
    const auto behind = firstKey(column, type, upper->first, upper->second);
    if (behind && *behind == type.least) return kNothing;
    if (behind) range.last = *behind - 1;
  }
  range.empty = range.first > range.last;
  return range;
}

OrdinalRange equalTo(ColumnType column, const KeyType& type, const values::Variant& value) {
  const Comparand comparand = toComparand(value);
  // The usual case without a search.
  if (!type.real && comparand.whole && column != ColumnType::kCurrency &&
      comparand.units % 10000 == 0) {
    const Int128 number = comparand.units / 10000;
    if (number < type.least || number > type.greatest) return kNothing;
    return {static_cast<Ordinal>(number), static_cast<Ordinal>(number)};
  }
  return between(column, type, std::pair{comparand, true}, std::pair{comparand, true});
}

// The byte that says that the value is not Null, and its own bytes as they stand in an entry.
void appendKey(ColumnType column, const KeyType& type, Ordinal key, bool ascending,
               std::vector<std::byte>& out) {
  std::array<std::byte, 1 + kMaxKeyBytes> bytes;
  auto* at = bytes.data();
  *at++ = ascending ? kValueAscending : kValueDescending;
  auto bits = static_cast<std::uint64_t>(key);
  if (column == ColumnType::kYesNo) bits = key != 0 ? 0x00 : 0xff;  // Yes, being -1, comes first
  const bool isSigned = column != ColumnType::kYesNo && column != ColumnType::kByte;
  for (std::size_t i = type.size; i-- != 0;) {
    auto byte = static_cast<std::byte>(bits >> 8 * i);
    if (isSigned && i + 1 == type.size) byte ^= std::byte{0x80};
    *at++ = ascending ? byte : ~byte;
  }
  out.insert(out.end(), bytes.data(), at);
}

class RangeEncoder {
 public:
  RangeEncoder(const TableDefinition& definition, const RealIndex& index)
      : definition_(definition), index_(index) {}

  KeyInterval encode(const KeyRange& range) {
    for (const values::Variant& value : range.equal) {
      const auto [column, type] = nextColumn();
      append(column, type, equalTo(column, type, value));
    }
    if (range.lower || range.upper) {
      const auto [column, type] = nextColumn();
      append(column, type, between(column, type, comparand(range.lower), comparand(range.upper)));
    }
    return std::move(keys_);
  }

 private:
  static std::optional<std::pair<Comparand, bool>> comparand(const std::optional<KeyBound>& bound) {
    if (!bound) return std::nullopt;
    return std::pair{toComparand(bound->value), bound->inclusive};
  }

  std::pair<ColumnType, KeyType> nextColumn() {
    if (columns_ == index_.columns.size()) unsuitable("the index has fewer columns");
    const Column& column = definition_.columns[index_.columns[columns_].column];
    const auto type = keyType(column.type);
    if (!type) unsuitable("column '" + column.name + "' is not looked up by its index");
    ascending_ = index_.columns[columns_++].ascending;
    return {column.type, *type};
  }

  // An equality may be two keys wide: a real 0 is stored with or without a sign. Columns behind it
  // could then not narrow the interval, so they are left out; the cursor's user gets a few rows
  // more.
  void append(ColumnType column, const KeyType& type, const OrdinalRange& range) {
    keys_.empty = keys_.empty || range.empty;
    if (keys_.empty || keys_.first != keys_.last) return;
    appendKey(column, type, ascending_ ? range.first : range.last, ascending_, keys_.first);
    appendKey(column, type, ascending_ ? range.last : range.first, ascending_, keys_.last);
  }

  [[noreturn]] void unsuitable(const std::string& why) const {
    throw RuntimeError(error::kInvalidArgument,
                       "Invalid argument: table '" + definition_.name + "': " + why + ".");
  }

  const TableDefinition& definition_;
  const RealIndex& index_;
  KeyInterval keys_;
  std::size_t columns_ = 0;
  bool ascending_ = true;
};

}  // namespace

bool hasKeyEncoding(ColumnType type) { return keyType(type).has_value(); }

KeyInterval encodeRange(const TableDefinition& definition, const RealIndex& index,
                        const KeyRange& range) {
  return RangeEncoder(definition, index).encode(range);
}

}  // namespace jet
