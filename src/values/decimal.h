// Exact arithmetic on Numeric values, and the rounding of halves to even. A result that needs more
// than 28 digits loses digits after the point (halves to even); where those do not suffice:
// error 6.
//
//   multiply(toNumeric("1.5"), toNumeric("2.25"))       // 3.375
//   divideHalvesToEven<std::uint64_t>(25, 10)           // 2
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "values/variant.h"

namespace values {

constexpr int kMaxPowerOfTen = 38;  // the last that 128 bits hold

namespace detail {
constexpr auto kPowersOfTen = [] {
  std::array<Uint128, kMaxPowerOfTen + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();
}  // namespace detail

[[nodiscard]] constexpr Uint128 powerOfTen(int exponent) {  // 0 to kMaxPowerOfTen
  return detail::kPowersOfTen[static_cast<std::size_t>(exponent)];
}

// The magnitude of a negative number is that of its complement, also for the smallest one.
[[nodiscard]] constexpr std::uint64_t magnitudeOf(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return value < 0 ? 0 - bits : bits;
}

template <typename Unsigned>
[[nodiscard]] constexpr Unsigned divideHalvesToEven(Unsigned dividend, Unsigned divisor) {
  const Unsigned quotient = dividend / divisor;
  const Unsigned rest = dividend % divisor;
  const bool up = rest > divisor - rest || (rest == divisor - rest && quotient % 2 != 0);
  return quotient + (up ? 1 : 0);
}

// The same for a dividend with a sign; the divisor is positive.
[[nodiscard]] constexpr std::int64_t divideHalvesToEven(std::int64_t dividend,
                                                        std::int64_t divisor) {
  const auto quotient =
      divideHalvesToEven<std::uint64_t>(magnitudeOf(dividend), static_cast<std::uint64_t>(divisor));
  return static_cast<std::int64_t>(dividend < 0 ? 0 - quotient : quotient);
}

// To a whole number; relies on the default mode of rounding.
[[nodiscard]] inline double roundHalvesToEven(double value) { return std::nearbyint(value); }

[[nodiscard]] Numeric add(const Numeric& left, const Numeric& right);
[[nodiscard]] Numeric multiply(const Numeric& left, const Numeric& right);
[[nodiscard]] Numeric divide(const Numeric& left, const Numeric& right);  // not by zero
[[nodiscard]] Numeric negated(Numeric value);

// Without the zeros at the end of its fraction.
[[nodiscard]] Numeric normalized(Numeric value);

// Rounded to `places` digits after the point; halves to even.
[[nodiscard]] Numeric rounded(Numeric value, int places);

// From a number of any type or a text that reads as one. Error 13, 94.
[[nodiscard]] Numeric toNumeric(const VariantView& value);

}  // namespace values
