// What a value of a field or an expression can be beside a number, a date or a text, and the name
// of each type.
//
//   Currency{125000}                                        // 12.5
//   Numeric{.negative = true, .scale = 2, .magnitude = 5}   // -0.05
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "values/int128.h"

namespace values {

constexpr std::uint8_t kCurrencyPlaces = 4;
constexpr std::int64_t kCurrencyScale = 10000;  // units in 1

// Exact amounts with four decimals; `units` counts ten-thousandths.
struct Currency {
  std::int64_t units = 0;
  friend auto operator<=>(Currency, Currency) = default;
};

// Exact decimal of up to 28 digits: the value is magnitude / 10^scale, negated when `negative`.
struct Numeric {
  bool negative = false;
  std::uint8_t scale = 0;  // digits after the point, 0 to 28
  Uint128 magnitude = 0;   // at most 10^28 - 1
  friend bool operator==(const Numeric&, const Numeric&) = default;
};

// The bytes of a binary or OLE field.
struct Binary {
  std::vector<std::byte> bytes;
  friend bool operator==(const Binary&, const Binary&) = default;
};

// In the order of Variant's alternatives.
enum class VariantType : std::uint8_t {
  kNull,
  kYesNo,
  kByte,
  kInteger,  // 16 bits
  kLong,     // 32 bits
  kSingle,
  kDouble,
  kCurrency,
  kDateTime,
  kNumeric,
  kText,
  kBinary,
};

}  // namespace values
