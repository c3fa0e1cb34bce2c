#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"
#include "text/ascii.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

void requireNotNull(const Variant& value) {
  if (value.isNull()) throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null.");
}

// CLng, CDbl, ...: Null cannot be converted.
template <VariantType kType>
Variant to(Arguments arguments, const Environment&) {
  requireNotNull(arguments[0]);
  return convert(arguments[0], kType);
}

Variant toTextOf(Arguments arguments, const Environment&) { return toText(arguments[0]); }

Variant toDateOf(Arguments arguments, const Environment& environment) {
  return dateArgument(arguments[0], environment);
}

Variant toDateNotNull(Arguments arguments, const Environment& environment) {
  requireNotNull(arguments[0]);
  return dateArgument(arguments[0], environment);
}

Variant same(Arguments arguments, const Environment&) { return arguments[0]; }
VariantType sameType(ArgumentTypes types) { return types[0]; }

// The digits after &H or &O, as a number of 16 bits with a sign where that suffices and no &
// follows.
double radixValue(std::string_view digits, int base) {
  std::uint32_t value = 0;
  const char* end = std::from_chars(digits.data(), digits.data() + digits.size(), value, base).ptr;
  const bool isLong = value > 0xFFFF || (end != digits.data() + digits.size() && *end == '&');
  return isLong ? static_cast<std::int32_t>(value) : static_cast<std::int16_t>(value);
}

// The number that the text begins with, blanks within it passed over; 0 where there is none. Its
// exponent may begin with d. Error 94 for Null.
Variant val(Arguments arguments, const Environment&) {
  requireNotNull(arguments[0]);
  std::string text;
  for (const char c : TextArgument(arguments[0]).view()) {
    if (c != ' ' && c != '\t' && c != '\n' && c != '\r') text += text::lowerAscii(c);
  }
  if (text.starts_with("&h")) return radixValue(std::string_view(text).substr(2), 16);
  if (text.starts_with("&o")) return radixValue(std::string_view(text).substr(2), 8);
  std::replace(text.begin(), text.end(), 'd', 'e');
  std::string_view rest = text;
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  if (rest.empty() || !(text::isAsciiDigit(rest[0]) || rest[0] == '.')) return 0.0;
  double number = 0;
  if (std::from_chars(rest.data(), rest.data() + rest.size(), number).ec ==
      std::errc::result_out_of_range) {
    throwOverflow();
  }
  return negative ? -number : number;
}

// A number with a blank in the place of its plus sign.
Variant str(Arguments arguments, const Environment&) {
  const Variant& value = arguments[0];
  const bool isOwnNumber = isNumber(value.type()) && value.type() != VariantType::kYesNo;
  const std::string text = toText(isOwnNumber ? value : Variant(toDouble(value)));
  return text.starts_with('-') ? text : " " + text;
}

// 16 bits of what is no wider, else 32.
std::string digitsOf(const Variant& value, int base) {
  const std::int32_t number = toLong(value);
  const bool isShort = isWholeNumber(value.type()) && value.type() != VariantType::kLong;
  const auto bits =
      isShort ? static_cast<std::uint16_t>(number) : static_cast<std::uint32_t>(number);
  std::array<char, 12> digits{};
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), bits, base).ptr;
  return text::upperCase(std::string_view(digits.data(), end));
}

Variant hex(Arguments arguments, const Environment&) { return digitsOf(arguments[0], 16); }
Variant oct(Arguments arguments, const Environment&) { return digitsOf(arguments[0], 8); }

template <VariantType kType>
constexpr Function conversion(std::string_view name) {
  return {name, 1, 1, fixedType<kType>, to<kType>, true};
}

constexpr auto kText = fixedType<VariantType::kText>;

constexpr Function kTable[] = {
    conversion<VariantType::kLong>("CLng"),
    conversion<VariantType::kInteger>("CInt"),
    conversion<VariantType::kByte>("CByte"),
    conversion<VariantType::kYesNo>("CBool"),
    conversion<VariantType::kSingle>("CSng"),
    conversion<VariantType::kDouble>("CDbl"),
    conversion<VariantType::kCurrency>("CCur"),
    {"CDate", 1, 1, fixedType<VariantType::kDateTime>, toDateNotNull, true},
    conversion<VariantType::kNumeric>("CDec"),
    {"CStr", 1, 1, kText, toTextOf, true},
    {"CVDate", 1, 1, fixedType<VariantType::kDateTime>, toDateOf},
    {"CVar", 1, 1, sameType, same, true},
    {"Val", 1, 1, fixedType<VariantType::kDouble>, val, true},
    {"Str", 1, 1, kText, str},
    {"Hex", 1, 1, kText, hex},
    {"Oct", 1, 1, kText, oct},
};

}  // namespace

std::span<const Function> conversionFunctions() { return kTable; }

}  // namespace jetsql
