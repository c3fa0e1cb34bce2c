#include <charconv>
#include <cmath>
#include <string>

#include "jetsql/functions/format.h"
#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"
#include "text/ascii.h"
#include "text/letter_case.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

// CLng, CDbl, ...: Null cannot be converted.
template <VariantType kType>
Variant to(Arguments arguments, const Environment&) {
  if (arguments[0].isNull()) throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null.");
  return convert(arguments[0], kType);
}

Variant toTextOf(Arguments arguments, const Environment&) { return toText(arguments[0]); }

Variant toDateOf(Arguments arguments, const Environment&) { return toDate(arguments[0]); }

// &H1F and &O17 behind Val.
double radixValue(std::string_view digits, int base) {
  std::uint32_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  return static_cast<std::int32_t>(value);
}

// The number that the text begins with, blanks within it passed over; 0 where there is none.
Variant val(Arguments arguments, const Environment&) {
  std::string text;
  for (const char c : TextArgument(arguments[0]).view())
    if (c != ' ' && c != '\t' && c != '\n' && c != '\r') text += c;
  if (text.size() > 2 && text[0] == '&') {
    const char radix = text::lowerAscii(text[1]);
    if (radix == 'h') return radixValue(std::string_view(text).substr(2), 16);
    if (radix == 'o') return radixValue(std::string_view(text).substr(2), 8);
  }
  std::string_view rest = text;
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  if (rest.empty() || !((rest[0] >= '0' && rest[0] <= '9') || rest[0] == '.')) return 0.0;
  double number = 0;
  if (std::from_chars(rest.data(), rest.data() + rest.size(), number).ec ==
      std::errc::result_out_of_range)
    throwOverflow();
  return negative ? -number : number;
}

// A number with a blank in the place of its plus sign.
Variant str(Arguments arguments, const Environment&) {
  const std::string text = toText(Variant(toDouble(arguments[0])));
  return text.starts_with('-') ? text : " " + text;
}

Variant isNumeric(Arguments arguments, const Environment&) {
  if (const auto* text = arguments[0].as<std::string>()) {
    return values::parseNumber(*text).has_value();
  }
  return isNumber(arguments[0].type());
}

Variant isDate(Arguments arguments, const Environment&) {
  if (const auto* text = arguments[0].as<std::string>()) {
    return values::parseDate(*text).has_value();
  }
  return arguments[0].type() == VariantType::kDateTime;
}

std::string digitsOf(const Variant& value, int base) {
  std::string digits(12, '0');
  const auto bits = static_cast<std::uint32_t>(toLong(value));
  digits.resize(static_cast<std::size_t>(
      std::to_chars(digits.data(), digits.data() + digits.size(), bits, base).ptr - digits.data()));
  return text::upperCase(digits);
}

Variant hex(Arguments arguments, const Environment&) { return digitsOf(arguments[0], 16); }
Variant oct(Arguments arguments, const Environment&) { return digitsOf(arguments[0], 8); }

// Format(value [, pattern [, first day of the week [, first week of the year]]]).
Variant formatOf(Arguments arguments, const Environment&) {
  const std::string pattern =
      arguments.size() > 1 && !arguments[1].isNull() ? toText(arguments[1]) : std::string();
  const WeekRule rule{longArgument(arguments, 2, 1), longArgument(arguments, 3, 1)};
  return format(arguments[0], pattern, rule);
}

template <VariantType kType>
constexpr Function conversion(std::string_view name) {
  return {name, 1, 1, fixedType<kType>, to<kType>, true};
}

constexpr auto kText = fixedType<VariantType::kText>;
constexpr auto kYesNo = fixedType<VariantType::kYesNo>;

constexpr Function kTable[] = {
    conversion<VariantType::kLong>("CLng"),
    conversion<VariantType::kInteger>("CInt"),
    conversion<VariantType::kByte>("CByte"),
    conversion<VariantType::kYesNo>("CBool"),
    conversion<VariantType::kSingle>("CSng"),
    conversion<VariantType::kDouble>("CDbl"),
    conversion<VariantType::kCurrency>("CCur"),
    conversion<VariantType::kDateTime>("CDate"),
    conversion<VariantType::kNumeric>("CDec"),
    {"CStr", 1, 1, kText, toTextOf, true},
    {"CVDate", 1, 1, fixedType<VariantType::kDateTime>, toDateOf},
    {"Val", 1, 1, fixedType<VariantType::kDouble>, val},
    {"Str", 1, 1, kText, str},
    {"Hex", 1, 1, kText, hex},
    {"Oct", 1, 1, kText, oct},
    {"IsNumeric", 1, 1, kYesNo, isNumeric, true},
    {"IsDate", 1, 1, kYesNo, isDate, true},
    {"Format", 1, 4, kText, formatOf, true},
};

}  // namespace

std::span<const Function> conversionFunctions() { return kTable; }

}  // namespace jetsql
