// Exact arithmetic on Numeric values. A result that needs more than 28 digits loses digits behind
// the point (halves to even); where those do not suffice: error 6.
#pragma once

#include <string_view>

#include "jet/variant.h"

namespace jetsql {

[[nodiscard]] jet::Uint128 powerOfTen(int exponent);  // 0 to 38

[[nodiscard]] jet::Numeric add(const jet::Numeric& left, const jet::Numeric& right);
[[nodiscard]] jet::Numeric multiply(const jet::Numeric& left, const jet::Numeric& right);
[[nodiscard]] jet::Numeric negated(jet::Numeric value);

// Without the zeros at the end of its fraction.
[[nodiscard]] jet::Numeric normalized(jet::Numeric value);

// Rounded to `places` digits behind the point; halves to even.
[[nodiscard]] jet::Numeric rounded(jet::Numeric value, int places);

// From a number of any type or a text that reads as one. Error 13, 94.
[[nodiscard]] jet::Numeric toNumeric(const jet::Variant& value);

}  // namespace jetsql
