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
  for (std::size_t i = 0; i < kLetters.size(); ++i)
    types[static_cast<std::size_t>(kLetters[i] - 'a')] = static_cast<VariantType>(i);
  return types;
}();

// How numbers widen: the larger of two ranks holds both, with exceptions where a float meets
// something of more digits than it has.
int rankOf(VariantType type) {
  switch (type) {
    case VariantType::YesNo:
      return 1;
    case VariantType::Byte:
      return 2;
    case VariantType::Integer:
      return 3;
    case VariantType::Long:
      return 4;
    case VariantType::Single:
      return 5;
    case VariantType::Currency:
      return 6;
    case VariantType::Numeric:
      return 7;
    default:
      return 8;
  }
}

VariantType widerNumber(VariantType left, VariantType right) {
  if (left == right) return left;
  const VariantType wide = rankOf(left) > rankOf(right) ? left : right;
  const VariantType narrow = wide == left ? right : left;
  if (wide == VariantType::Single && narrow == VariantType::Long) return VariantType::Double;
  if (narrow == VariantType::Single) return VariantType::Double;
  // -1 does not fit into a Byte.
  if (wide == VariantType::Byte && narrow == VariantType::YesNo) return VariantType::Integer;
  return wide;
}

std::uint8_t toByte(const Variant& value) {
  const std::int32_t whole = toLong(value);
  if (whole < 0 || whole > std::numeric_limits<std::uint8_t>::max())
    throw RuntimeError(error::kOverflow, "Overflow.");
  return static_cast<std::uint8_t>(whole);
}

float toSingle(const Variant& value) {
  const double number = toDouble(value);
  if (std::abs(number) > std::numeric_limits<float>::max())
    throw RuntimeError(error::kOverflow, "Overflow.");
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
  return at < kTypes.size() ? kTypes[at] : VariantType::Null;
}

bool isWholeNumber(VariantType type) {
  return type >= VariantType::YesNo && type <= VariantType::Long;
}

bool isNumber(VariantType type) {
  return (type >= VariantType::YesNo && type <= VariantType::Currency) ||
         type == VariantType::Numeric;
}

VariantType commonType(VariantType left, VariantType right) {
  if (left == VariantType::Null || left == right) return right;
  if (right == VariantType::Null) return left;
  if (isNumber(left) && isNumber(right)) return widerNumber(left, right);
  if ((left == VariantType::DateTime && isNumber(right)) ||
      (right == VariantType::DateTime && isNumber(left)))
    return VariantType::DateTime;
  return VariantType::Text;
}

VariantType arithmeticType(Arithmetic operation, VariantType left, VariantType right) {
  if (left == VariantType::Null || right == VariantType::Null) return VariantType::Null;
  const bool leftDate = left == VariantType::DateTime;
  const bool rightDate = right == VariantType::DateTime;
  if (operation == Arithmetic::Add && left == VariantType::Text && right == VariantType::Text)
    return VariantType::Text;
  if (operation == Arithmetic::Add && (leftDate || rightDate)) return VariantType::DateTime;
  if (operation == Arithmetic::Subtract && leftDate != rightDate) return VariantType::DateTime;
  if (!isNumber(left) || !isNumber(right)) return VariantType::Double;
  const VariantType wide = widerNumber(left, right);
  return isWholeNumber(wide) ? VariantType::Long : wide;
}

Variant convert(const Variant& value, VariantType type) {
  if (value.isNull() || value.type() == type) return value;
  switch (type) {
    case VariantType::Null:
      return {};
    case VariantType::YesNo:
      return toBool(value);
    case VariantType::Byte:
      return toByte(value);
    case VariantType::Integer:
      return toInteger(value);
    case VariantType::Long:
      return toLong(value);
    case VariantType::Single:
      return toSingle(value);
    case VariantType::Double:
      return toDouble(value);
    case VariantType::Currency:
      return toCurrency(value);
    case VariantType::DateTime:
      return toDate(value);
    case VariantType::Numeric:
      return values::toNumeric(value);
    case VariantType::Text:
      // The engine, unlike CStr, shows a Yes/No as the number that it holds.
      if (const auto* yes = value.as<bool>()) return Variant(*yes ? "-1" : "0");
      return toText(value);
    case VariantType::Binary:
      return toBinary(value);
  }
  return {};
}

Variant convert(Variant&& value, VariantType type) {
  if (value.isNull() || value.type() == type) return std::move(value);
  return convert(std::as_const(value), type);
}

}  // namespace jetsql
