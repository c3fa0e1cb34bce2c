// Numbers as the platform writes them by default (no grouping, a full stop, no needless zeros), and
// as it reads them.
//
//   realText(0.1 + 0.2)            // "0.3": a double shows 15 digits, a single 7
//   realText(1e15)                 // "1E+15": plain below that (a single below 1E+07) and down to
//   1E-04 decimalText(true, 12500, 4)    // "-1.25"
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

// A text that the platform's conversions read as a number, made plain: "(₩1,234.50)" gives
// "-1234.50", "1e3" itself. Read are blanks around it, one sign before or after, ₩, parentheses for
// a negative number, commas in the whole part, an exponent; not full-width digits, '%' or words.
[[nodiscard]] std::optional<std::string> plainNumber(std::string_view text);

// The value of such a text, or of &H1F or &O17. Infinity beyond the range of doubles.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

}  // namespace values
