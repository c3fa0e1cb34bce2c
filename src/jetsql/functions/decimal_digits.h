// A number as its decimal digits, for patterns.
//
//   Digits digits = digitsOf(Variant(1204.5));      // "12045", exponent 4
//   digits.round(0);                                // "1205"
//
// Exact numbers are taken exactly, others with 15 significant digits. Error 6: not finite.
#pragma once

#include <string>

#include "values/variant.h"

namespace jetsql {

// 0.d1d2d3... times 10^exponent; no digits for zero.
struct Digits {
  bool negative = false;
  std::string digits;
  int exponent = 0;

  [[nodiscard]] char at(int place) const;  // place 0: after the point; -1: units
  // Without zeros at either end.
  void strip();
  // To `places` digits after the point, halves away from zero.
  void round(int places);
};

[[nodiscard]] Digits digitsOf(const values::Variant& value);

}  // namespace jetsql
