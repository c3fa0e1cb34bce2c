#include "jetsql/sqlite/numeric_encoding.h"

#include <cstdint>

#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr int kFixedScale = 28;
constexpr std::size_t kLimbs = 6;  // of 32 bits, lowest first: 192 bits hold 10^56
using Limbs = std::array<std::uint32_t, kLimbs>;

void multiplyByTen(Limbs& limbs) {
  std::uint64_t carry = 0;
  for (std::uint32_t& limb : limbs) {
    carry += static_cast<std::uint64_t>(limb) * 10;
    limb = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
}

// Divides when the remainder is 0, else leaves it.
bool divideByTen(Limbs& limbs) {
  Limbs quotient{};
  std::uint64_t rest = 0;
  for (std::size_t i = kLimbs; i-- > 0;) {
    rest = (rest << 32) | limbs[i];
    quotient[i] = static_cast<std::uint32_t>(rest / 10);
    rest %= 10;
  }
  if (rest == 0) limbs = quotient;
  return rest == 0;
}

}  // namespace

std::array<unsigned char, kNumericSize> encodeNumeric(const values::Numeric& value) {
  Limbs limbs{};
  for (std::size_t i = 0; i < 4; ++i) {
    limbs[i] = static_cast<std::uint32_t>(value.magnitude >> (32 * i));
  }
  for (int scale = value.scale; scale < kFixedScale; ++scale) multiplyByTen(limbs);
  const bool negative = value.negative && value.magnitude != 0;
  std::array<unsigned char, kNumericSize> bytes{};
  bytes[0] = negative ? 0 : 1;
  for (std::size_t i = 0; i < kNumericSize - 1; ++i) {
    const auto byte = static_cast<unsigned char>(limbs[kLimbs - 1 - i / 4] >> (24 - 8 * (i % 4)));
    bytes[i + 1] = negative ? static_cast<unsigned char>(~byte) : byte;
  }
  return bytes;
}

values::Numeric decodeNumeric(const void* bytes, std::size_t size) {
  if (size != kNumericSize) {
    throw RuntimeError(error::kTypeMismatch, "Type mismatch: not an exact number.");
  }
  const auto* source = static_cast<const unsigned char*>(bytes);
  values::Numeric value{source[0] == 0, kFixedScale, 0};
  Limbs limbs{};
  for (std::size_t i = 0; i < kNumericSize - 1; ++i) {
    const auto byte = static_cast<unsigned char>(value.negative ? ~source[i + 1] : source[i + 1]);
    limbs[kLimbs - 1 - i / 4] |= static_cast<std::uint32_t>(byte) << (24 - 8 * (i % 4));
  }
  while (value.scale > 0 && divideByTen(limbs)) --value.scale;
  for (std::size_t i = 4; i-- > 0;) value.magnitude = (value.magnitude << 32) | limbs[i];
  if (value.magnitude == 0) return {};
  return value;
}

}  // namespace jetsql
