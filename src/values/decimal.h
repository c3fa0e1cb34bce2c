// Exact arithmetic on Numeric values. A result that needs more than 28 digits loses digits behind
// the point (halves to even); where those do not suffice: error 6.
#pragma once

#include <string_view>

#include "values/variant.h"

namespace values {

[[nodiscard]] Uint128 powerOfTen(int exponent);  // 0 to 38

[[nodiscard]] Numeric add(const Numeric& left, const Numeric& right);
[[nodiscard]] Numeric multiply(const Numeric& left, const Numeric& right);
[[nodiscard]] Numeric negated(Numeric value);

// Without the zeros at the end of its fraction.
[[nodiscard]] Numeric normalized(Numeric value);

// Rounded to `places` digits behind the point; halves to even.
[[nodiscard]] Numeric rounded(Numeric value, int places);

// From a number of any type or a text that reads as one. Error 13, 94.
[[nodiscard]] Numeric toNumeric(const Variant& value);

}  // namespace values
