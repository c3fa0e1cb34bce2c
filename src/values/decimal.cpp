#include "values/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "text/ascii.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace values {

namespace {

constexpr int kMaxDigits = 28;

[[noreturn]] void throwOverflow() { throw RuntimeError(error::kOverflow, "Overflow."); }

void dropDigits(Numeric& value, int digits) {
  value.magnitude = divideHalvesToEven(value.magnitude, powerOfTen(digits));
  value.scale = static_cast<std::uint8_t>(value.scale - digits);
}

Numeric fitted(Numeric value) {
  while (value.magnitude >= powerOfTen(kMaxDigits) || value.scale > kMaxDigits) {
    if (value.scale == 0) throwOverflow();
    dropDigits(value, 1);
  }
  if (value.magnitude == 0) value.negative = false;
  return value;
}

// Brings both to one scale: the larger one where the digits suffice.
void align(Numeric& left, Numeric& right) {
  Numeric& coarse = left.scale < right.scale ? left : right;
  Numeric& fine = left.scale < right.scale ? right : left;
  constexpr int kWorkingDigits = 37;  // sums of two still fit into 128 bits
  while (coarse.scale < fine.scale && coarse.magnitude < powerOfTen(kWorkingDigits - 1)) {
    coarse.magnitude *= 10;
    ++coarse.scale;
  }
  if (fine.scale > coarse.scale) dropDigits(fine, fine.scale - coarse.scale);
}

Numeric fromReal(double value) {
  if (!std::isfinite(value) || std::abs(value) >= 1e28) throwOverflow();
  std::array<char, 32> digits{};
  // 15 significant digits: d.dddddddddddddde±xx
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), std::abs(value),
                                 std::chars_format::scientific, 14)
                       .ptr;
  Numeric number{value < 0, 0, 0};
  const char* mark = std::find(digits.data(), end, 'e');
  for (const char* p = digits.data(); p != mark; ++p) {
    if (*p != '.') number.magnitude = number.magnitude * 10 + static_cast<unsigned>(*p - '0');
  }
  int exponent = 0;
  std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
  int scale = 14 - exponent;
  for (; scale < 0; ++scale) number.magnitude *= 10;
  if (scale > kMaxDigits + 14) return {};
  if (scale > kMaxDigits) {
    number.magnitude = divideHalvesToEven(number.magnitude, powerOfTen(scale - kMaxDigits));
    scale = kMaxDigits;
  }
  number.scale = static_cast<std::uint8_t>(scale);
  return normalized(number);
}

// A text without an exponent is taken digit by digit; anything else by way of a double.
Numeric fromText(std::string_view text) {
  const auto plain = plainNumber(text);
  if (!plain || plain->find('e') != std::string::npos) return fromReal(toDouble(text));
  Numeric number;
  int digits = 0;  // significant ones
  bool afterPoint = false;
  for (const char c : *plain) {
    if (c == '-') number.negative = true;
    if (c == '.') afterPoint = true;
    if (!text::isAsciiDigit(c)) continue;
    number.magnitude = number.magnitude * 10 + static_cast<unsigned>(c - '0');
    number.scale = static_cast<std::uint8_t>(number.scale + (afterPoint ? 1 : 0));
    digits += number.magnitude != 0 ? 1 : 0;
    if (digits > kMaxDigits || number.scale > kMaxDigits) return fromReal(toDouble(text));
  }
  return fitted(number);
}

}  // namespace

Numeric negated(Numeric value) {
  value.negative = !value.negative && value.magnitude != 0;
  return value;
}

Numeric normalized(Numeric value) {
  while (value.scale > 0 && value.magnitude % 10 == 0) {
    value.magnitude /= 10;
    --value.scale;
  }
  if (value.magnitude == 0) value.negative = false;
  return value;
}

Numeric rounded(Numeric value, int places) {
  if (places < value.scale) dropDigits(value, value.scale - places);
  if (value.magnitude == 0) value.negative = false;
  return value;
}

Numeric add(const Numeric& left, const Numeric& right) {
  Numeric a = left;
  Numeric b = right;
  align(a, b);
  if (a.negative == b.negative) return fitted({a.negative, a.scale, a.magnitude + b.magnitude});
  if (a.magnitude >= b.magnitude) return fitted({a.negative, a.scale, a.magnitude - b.magnitude});
  return fitted({b.negative, a.scale, b.magnitude - a.magnitude});
}

Numeric multiply(const Numeric& left, const Numeric& right) {
  Numeric a = normalized(left);
  Numeric b = normalized(right);
  constexpr Uint128 kLargest = ~Uint128{0};
  while (a.magnitude != 0 && b.magnitude > kLargest / a.magnitude) {
    Numeric& longer = a.scale > b.scale ? a : b;
    if (longer.scale == 0) throwOverflow();
    dropDigits(longer, 1);
  }
  return fitted({a.negative != b.negative, static_cast<std::uint8_t>(a.scale + b.scale),
                 a.magnitude * b.magnitude});
}

// Digit by digit until nothing is left or no further digit fits; the last one is rounded.
Numeric divide(const Numeric& left, const Numeric& right) {
  const Numeric dividend = normalized(left);
  const Numeric divisor = normalized(right);
  Uint128 quotient = dividend.magnitude / divisor.magnitude;
  Uint128 rest = dividend.magnitude % divisor.magnitude;
  int scale = dividend.scale - divisor.scale;
  const auto next = [&] {
    quotient = quotient * 10 + rest * 10 / divisor.magnitude;
    rest = rest * 10 % divisor.magnitude;
    ++scale;
  };
  while (scale < 0) {
    if (quotient >= powerOfTen(kMaxDigits - 1)) throwOverflow();
    next();
  }
  while (rest != 0 && scale < kMaxDigits && quotient < powerOfTen(kMaxDigits - 1)) next();
  const bool up =
      rest > divisor.magnitude - rest || (rest == divisor.magnitude - rest && quotient % 2 != 0);
  return fitted(
      {left.negative != right.negative, static_cast<std::uint8_t>(scale), quotient + (up ? 1 : 0)});
}

Numeric toNumeric(const VariantView& value) {
  if (const auto* numeric = value.as<Numeric>()) return *numeric;
  if (const auto* currency = value.as<Currency>()) {
    return normalized({currency->units < 0, kCurrencyPlaces, magnitudeOf(currency->units)});
  }
  if (const auto* text = value.as<std::string_view>()) return fromText(*text);
  return fromReal(toDouble(value));
}

}  // namespace values
