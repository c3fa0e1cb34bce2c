// Numbers as the platform writes them by default (no grouping, a full stop, no needless zeros), and
// as it reads them.
//
//   realText(0.1 + 0.2)            // "0.3": a double shows 15 digits, a single 7
//   realText(1e15)                 // "1E+15": plain below that and down to 15 decimal places
//   decimalText(true, 12500, 4)    // "-1.25"
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "values/variant.h"

namespace values {

void appendWhole(std::string& text, std::int64_t value);
[[nodiscard]] std::string realText(float value);
[[nodiscard]] std::string realText(double value);

// magnitude / 10^scale, exact; zero has no sign.
[[nodiscard]] std::string decimalText(bool negative, Uint128 magnitude, int scale);

// Value of a text as the platform's conversions read it: blanks around it, a sign, digits, a
// fraction, an exponent. Nothing where it is no number.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

}  // namespace values
