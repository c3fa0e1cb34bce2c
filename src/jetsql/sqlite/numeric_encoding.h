// A Numeric as a BLOB of 25 bytes that SQLite orders and groups by its value: a sign byte (0
// negative, 1 zero or positive) and the value times 10^28 as 24 bytes, highest first, every bit
// flipped when negative. Zeros at the end of the fraction are lost on the way.
//
// Error 13: a BLOB of another size.
#pragma once

#include <array>
#include <cstddef>

#include "values/variant.h"

namespace jetsql {

constexpr std::size_t kNumericSize = 25;
[[nodiscard]] std::array<unsigned char, kNumericSize> encodeNumeric(const values::Numeric& value);
[[nodiscard]] values::Numeric decodeNumeric(const void* bytes, std::size_t size);

}  // namespace jetsql
