// One section of a pattern for numbers: "#,##0.00" of "#,##0.00;(#,##0.00)". Private to the room.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace jetsql {

struct NumberToken {
  enum class Kind { kLiteral, kZero, kDigit, kPoint, kExponent } kind;
  std::string text;  // of a literal; of an exponent its sign: "+" or "-", and E or e before it
};

struct NumberSection {
  std::vector<NumberToken> tokens;
  int wholePlaces = 0;  // 0 and # before the point
  int places = 0;       // 0 and # after the point
  int exponentZeros = 0;
  bool grouped = false;
  bool hasExponent = false;
  int shift = 0;  // powers of ten: 2 for each %, -3 for each comma after the last whole digit
};

[[nodiscard]] NumberSection parseNumberSection(std::string_view pattern);

}  // namespace jetsql
