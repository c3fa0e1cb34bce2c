#include "jetsql/functions/value_types.h"

#include <array>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "values/decimal.h"
#include "values/runtime_error.h"

namespace jetsql {

using values::Variant;
using values::VariantType;

namespace {

constexpr std::string_view kLetters = "nybilsdctmxo";  // in the order of VariantType

// The types by their letters, from a on; Null for a letter that is none.
constexpr auto kTypes = [] {
  std::array<VariantType, 26> types{};
  for (std::size_t i = 0; i < kLetters.size(); ++i) {
    types[static_cast<std::size_t>(kLetters[i] - 'a')] = static_cast<VariantType>(i);
  }
  return types;
}();

// How numbers widen: the larger of two ranks holds both, with exceptions where a float meets
// something of more digits than it has.
int rankOf(VariantType type) {
  switch (type) {
    case VariantType::kYesNo:
      return 1;
    case VariantType::kByte:
      return 2;
    case VariantType::kInteger:
      return 3;
    case VariantType::kLong:
      return 4;
    case VariantType::kSingle:
      return 5;
    case VariantType::kCurrency:
      return 6;
    case VariantType::kNumeric:
      return 7;
    default:
      return 8;
  }
}

VariantType widerNumber(VariantType left, VariantType right) {
  if (left == right) return left;
  const VariantType wide = rankOf(left) > rankOf(right) ? left : right;
  const VariantType narrow = wide == left ? right : left;
  if (wide == VariantType::kSingle && narrow == VariantType::kLong) return VariantType::kDouble;
  if (narrow == VariantType::kSingle) return VariantType::kDouble;
  // -1 does not fit into a Byte.
  if (wide == VariantType::kByte && narrow == VariantType::kYesNo) return VariantType::kInteger;
  return wide;
}

bool isAny(VariantType type, VariantType left, VariantType right) {
  return left == type || right == type;
}

bool isTextual(VariantType type) {
  return type == VariantType::kText || type == VariantType::kBinary;
}

// The type of + and -, and of * where that is not Double.
VariantType sumType(VariantType left, VariantType right) {
  using enum VariantType;
  if (isAny(kNumeric, left, right)) return kNumeric;
  if (isAny(kDateTime, left, right)) return kDateTime;
  if (left == kText && right == kText) return kText;
  if (isAny(kCurrency, left, right)) return kCurrency;
  if (isTextual(left) || isTextual(right) || isAny(kDouble, left, right)) return kDouble;
  if (isAny(kSingle, left, right)) return isAny(kLong, left, right) ? kDouble : kSingle;
  if (isAny(kLong, left, right)) return kLong;
  return left == kByte && right == kByte ? kByte : kInteger;
}

VariantType differenceType(VariantType left, VariantType right) {
  if (left == right && (left == VariantType::kDateTime || isTextual(left))) {
    return VariantType::kDouble;
  }
  return sumType(left, right);
}

VariantType productType(VariantType left, VariantType right) {
  using enum VariantType;
  const VariantType type = sumType(left, right);
  if (type == kDateTime || type == kText) return kDouble;
  const auto isExact = [](VariantType operand) {
    return isWholeNumber(operand) || operand == kCurrency;
  };
  return type == kCurrency && !(isExact(left) && isExact(right)) ? kDouble : type;
}

VariantType quotientType(VariantType left, VariantType right) {
  using enum VariantType;
  if (isAny(kNumeric, left, right)) return kNumeric;
  return sumType(left, right) == kSingle ? kSingle : kDouble;
}

VariantType wholeQuotientType(VariantType left, VariantType right) {
  const VariantType type = sumType(left, right);
  return type == VariantType::kByte || type == VariantType::kInteger ? type : VariantType::kLong;
}

std::uint8_t toByte(const Variant& value) {
  const std::int32_t whole = toLong(value);
  if (whole < 0 || whole > std::numeric_limits<std::uint8_t>::max()) {
    throw RuntimeError(error::kOverflow, "Overflow.");
  }
  return static_cast<std::uint8_t>(whole);
}

float toSingle(const Variant& value) {
  const double number = toDouble(value);
  if (std::abs(number) > std::numeric_limits<float>::max()) {
    throw RuntimeError(error::kOverflow, "Overflow.");
  }
  return static_cast<float>(number);
}

values::Binary toBinary(const Variant& value) {
  const std::string text = toText(value);
  const auto* begin = reinterpret_cast<const std::byte*>(text.data());
  return {{begin, begin + text.size()}};
}

}  // namespace

char letterOf(VariantType type) { return kLetters[static_cast<std::size_t>(type)]; }

VariantType typeOfLetter(char letter) {
  const std::size_t at = static_cast<unsigned char>(letter) - std::size_t{'a'};
  return at < kTypes.size() ? kTypes[at] : VariantType::kNull;
}

bool isWholeNumber(VariantType type) {
  return type >= VariantType::kYesNo && type <= VariantType::kLong;
}

bool isNumber(VariantType type) {
  return (type >= VariantType::kYesNo && type <= VariantType::kCurrency) ||
         type == VariantType::kNumeric;
}

VariantType commonType(VariantType left, VariantType right) {
  if (left == VariantType::kNull || left == right) return right;
  if (right == VariantType::kNull) return left;
  if (isNumber(left) && isNumber(right)) return widerNumber(left, right);
  if ((left == VariantType::kDateTime && isNumber(right)) ||
      (right == VariantType::kDateTime && isNumber(left))) {
    return VariantType::kDateTime;
  }
  return VariantType::kText;
}

VariantType arithmeticType(Arithmetic operation, VariantType left, VariantType right) {
  if (left == VariantType::kNull || right == VariantType::kNull) return VariantType::kNull;
  switch (operation) {
    case Arithmetic::kAdd:
      return sumType(left, right);
    case Arithmetic::kSubtract:
      return differenceType(left, right);
    case Arithmetic::kMultiply:
      return productType(left, right);
    case Arithmetic::kDivide:
      return quotientType(left, right);
    default:
      return wholeQuotientType(left, right);
  }
}

Variant wholeResult(std::int64_t number, VariantType type) {
  if (type == VariantType::kByte && std::in_range<std::uint8_t>(number)) {
    return static_cast<std::uint8_t>(number);
  }
  if (type != VariantType::kLong && std::in_range<std::int16_t>(number)) {
    return static_cast<std::int16_t>(number);
  }
  if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

Variant convert(const Variant& value, VariantType type) {
  if (value.isNull() || value.type() == type) return value;
  switch (type) {
    case VariantType::kNull:
      return {};
    case VariantType::kYesNo:
      return toBool(value);
    case VariantType::kByte:
      return toByte(value);
    case VariantType::kInteger:
      return toInteger(value);
    case VariantType::kLong:
      return toLong(value);
    case VariantType::kSingle:
      return toSingle(value);
    case VariantType::kDouble:
      return toDouble(value);
    case VariantType::kCurrency:
      return toCurrency(value);
    case VariantType::kDateTime:
      return toDate(value);
    case VariantType::kNumeric:
      return values::toNumeric(value);
    case VariantType::kText:
      // The engine, unlike CStr, shows a Yes/No as the number that it holds.
      if (const auto* yes = value.as<bool>()) return Variant(*yes ? "-1" : "0");
      return toText(value);
    case VariantType::kBinary:
      return toBinary(value);
  }
  return {};
}

Variant convert(Variant&& value, VariantType type) {
  if (value.isNull() || value.type() == type) return std::move(value);
  return convert(std::as_const(value), type);
}

Variant convertResult(Variant&& value, VariantType type) {
  const bool isWider = isWholeNumber(type) &&
                       (isWholeNumber(value.type()) || value.type() == VariantType::kDouble) &&
                       value.type() > type;
  if (!isWider || type == VariantType::kYesNo) return convert(std::move(value), type);
  const double number = toDouble(value);
  const bool isLong = number == std::trunc(number) && number >= INT32_MIN && number <= INT32_MAX;
  const bool fits = isLong && wholeResult(static_cast<std::int64_t>(number), type).type() == type;
  return fits ? convert(value, type) : std::move(value);
}

}  // namespace jetsql
