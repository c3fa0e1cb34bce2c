#include "jet/index/key_range.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "jet/format/field_codec.h"
#include "jet/index/key_codec.h"
#include "text/utf16.h"
#include "values/decimal.h"
#include "values/int128.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using values::Int128;
using KeyBytes = std::vector<std::byte>;

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
int compareKey(ColumnType column, const OrdinalType& type, Ordinal key, const Comparand& value) {
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
std::optional<Ordinal> firstKey(ColumnType column, const OrdinalType& type, const Comparand& value,
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

// Ordinals from the first that the lower bound admits to the last that the upper one does.
OrdinalRange between(ColumnType column, const OrdinalType& type,
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
    const auto after = firstKey(column, type, upper->first, upper->second);
    if (after && *after == type.least) return kNothing;
    if (after) range.last = *after - 1;
  }
  range.empty = range.first > range.last;
  return range;
}

OrdinalRange equalTo(ColumnType column, const OrdinalType& type, const values::Variant& value) {
  // The usual cases without a search.
  if (const auto* number = value.as<std::int32_t>(); number && column == ColumnType::kLong) {
    return {*number, *number};
  }
  const Comparand comparand = toComparand(value);
  if (!type.real && comparand.whole && column != ColumnType::kCurrency &&
      comparand.units % 10000 == 0) {
    const Int128 number = comparand.units / 10000;
    if (number < type.least || number > type.greatest) return kNothing;
    return {static_cast<Ordinal>(number), static_cast<Ordinal>(number)};
  }
  return between(column, type, std::pair{comparand, true}, std::pair{comparand, true});
}

// A Numeric as a row of the column stores it; nothing where it has too many digits for that.
StoredField storedNumeric(const Column& column, const values::Numeric& numeric) {
  try {
    auto stored = encodeFixed(column, numeric);
    const auto held = decodeNumeric(column, stored);
    if (held && values::normalized(*held) == values::normalized(numeric)) return stored;
  } catch (const RuntimeError&) {  // beyond the column's range
  }
  return std::nullopt;
}

// Of a value whose type has no ordinals, as hasKey takes it. A zero of a Numeric has two keys.
std::optional<std::pair<KeyBytes, KeyBytes>> keysOf(const Column& column, bool ascending,
                                                    const values::Variant& value) {
  StoredField first;
  if (column.type == ColumnType::kGuid) first = guidBytes(toText(value));
  if (column.type == ColumnType::kBinary) first = value.as<values::Binary>()->bytes;
  StoredField last = first;
  if (column.type == ColumnType::kNumeric) {
    values::Numeric numeric = values::toNumeric(value);
    first = last = storedNumeric(column, numeric);
    if (numeric.magnitude == 0) {
      numeric.negative = !numeric.negative;
      (numeric.negative ? first : last) = storedNumeric(column, numeric);
    }
  }
  if (!first || !last) return std::nullopt;
  std::pair<KeyBytes, KeyBytes> keys;
  appendKey(column, ascending, Bytes(*first), keys.first);
  appendKey(column, ascending, Bytes(*last), keys.second);
  return keys;
}

class RangeEncoder {
 public:
  RangeEncoder(const TableDefinition& definition, const RealIndex& index)
      : definition_(definition), index_(index) {}

  KeyInterval encode(const KeyRange& range) {
    for (const values::Variant& value : range.equal) {
      if (isText()) {
        appendText(value);
      } else if (!ordinalType(column().type)) {
        appendWhole(value);
      } else {
        const auto [column, type] = nextColumn();
        append(type, equalTo(column, type, value));
      }
    }
    if (range.lower || range.upper) {
      const auto [column, type] = nextColumn();
      append(type, between(column, type, comparand(range.lower), comparand(range.upper)));
    }
    keys_.first.resize(std::min(keys_.first.size(), kMaxCompared));
    keys_.last.resize(std::min(keys_.last.size(), kMaxCompared));
    return std::move(keys_);
  }

 private:
  // Keys beyond some length are stored shortened (in Jet 4 of 510 bytes), in a way not known here.
  static constexpr std::size_t kMaxCompared = 200;

  static std::optional<std::pair<Comparand, bool>> comparand(const std::optional<KeyBound>& bound) {
    if (!bound) return std::nullopt;
    return std::pair{toComparand(bound->value), bound->inclusive};
  }

  [[nodiscard]] const Column& column() const {
    if (columns_ == index_.columns.size()) unsuitable("the index has fewer columns");
    return definition_.columns[index_.columns[columns_].column];
  }
  [[nodiscard]] bool isText() const { return column().weights != nullptr; }

  std::pair<ColumnType, OrdinalType> nextColumn() {
    const Column& next = column();
    const auto type = ordinalType(next.type);
    if (!type) unsuitable("column '" + next.name + "' is not looked up by its index");
    ascending_ = index_.columns[columns_++].ascending;
    return {next.type, *type};
  }

  void appendText(const values::Variant& value) {
    const bool ascending = index_.columns[columns_].ascending;
    const auto* text = value.as<std::string>();
    KeyBytes key;
    if (text == nullptr && !value.isNull()) unsuitable("a number is looked up among texts");
    if (text != nullptr &&
        !appendTextKey(*column().weights, ascending, text::toUtf16(*text), key)) {
      unsuitable("a text of column '" + column().name + "' has no known key");
    }
    ++columns_;
    append(text == nullptr ? std::nullopt : std::optional(std::pair(key, key)));
    isClosed_ = isClosed_ || !ascending;
  }

  // Of a column whose values have no ordinals.
  void appendWhole(const values::Variant& value) {
    const Column& column = this->column();
    const bool ascending = index_.columns[columns_++].ascending;
    if (!hasKeys(column.type, ascending) || (!value.isNull() && !hasKey(column, value))) {
      unsuitable("column '" + column.name + "' is not looked up by its index");
    }
    append(value.isNull() ? std::nullopt : keysOf(column, ascending, value));
  }

  void append(const std::optional<std::pair<KeyBytes, KeyBytes>>& keys) {
    keys_.empty = keys_.empty || !keys;
    if (!canNarrow()) return;
    keys_.first.insert(keys_.first.end(), keys->first.begin(), keys->first.end());
    keys_.last.insert(keys_.last.end(), keys->second.begin(), keys->second.end());
  }

  [[nodiscard]] bool canNarrow() const {
    return !keys_.empty && !isClosed_ && keys_.first == keys_.last;
  }

  // An equality with a real 0 is two keys wide: those of 0.0 and of -0.0, which another program may
  // have written. The columns after it could then not narrow the interval, so they are left out;
  // the user of the cursor gets a few rows more.
  void append(const OrdinalType& type, const OrdinalRange& range) {
    keys_.empty = keys_.empty || range.empty;
    if (!canNarrow()) return;
    appendOrdinalKey(type, ascending_, ascending_ ? range.first : range.last, keys_.first);
    if (range.first == range.last) {
      keys_.last = keys_.first;
    } else {
      appendOrdinalKey(type, ascending_, ascending_ ? range.last : range.first, keys_.last);
    }
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
  bool isClosed_ = false;  // what the columns after it begin with is not known
};

}  // namespace

bool hasKey(const Column& column, const values::Variant& value) {
  KeyBytes key;
  switch (column.type) {
    case ColumnType::kText:
      return column.weights != nullptr &&
             appendTextKey(*column.weights, true, text::toUtf16(toText(value)), key);
    case ColumnType::kGuid:
      return isGuidText(toText(value));
    case ColumnType::kBinary: {
      const auto* binary = value.as<values::Binary>();
      return binary != nullptr && !binary->bytes.empty();
    }
    default:
      return true;
  }
}

KeyInterval encodeRange(const TableDefinition& definition, const RealIndex& index,
                        const KeyRange& range) {
  return RangeEncoder(definition, index).encode(range);
}

}  // namespace jet
