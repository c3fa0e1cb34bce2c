// Format and the functions that format by options instead of a pattern, as a Korean system does:
// FormatNumber(number [, places [, leading zero [, parentheses [, grouping]]]]) and its like, where
// an option is -1 yes, 0 no, -2 as the system has it.
#include <algorithm>
#include <string>

#include "jetsql/functions/format.h"
#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

constexpr std::int32_t kSystemOption = -2;
constexpr std::int32_t kMaxPlaces = 99;

bool option(Arguments arguments, std::size_t index, bool system) {
  const std::int32_t value = longArgument(arguments, index, kSystemOption);
  if (value < kSystemOption || value > 0) throwInvalidCall("Format");
  return value == kSystemOption ? system : value != 0;
}

// A pattern of format() by the options, with `before` and `after` around the digits.
std::string pattern(Arguments arguments, std::int32_t systemPlaces, const std::string& before,
                    const std::string& after) {
  std::int32_t places = longArgument(arguments, 1, -1);
  if (places < -1 || places > kMaxPlaces) throwInvalidCall("Format");
  if (places == -1) places = systemPlaces;
  const bool leadingZero = option(arguments, 2, true);
  const bool parentheses = option(arguments, 3, false);
  const bool grouping = option(arguments, 4, true);
  std::string digits = before + (grouping ? "#,##" : "") + (leadingZero ? "0" : "#");
  if (places > 0) digits += '.' + std::string(static_cast<std::size_t>(places), '0');
  digits += after;
  return parentheses ? digits + ";(" + digits + ')' : digits;
}

// A text counts as the number that it reads as.
std::string formatReal(const Variant& value, const std::string& pattern) {
  return format(value.type() == VariantType::kText ? Variant(toDouble(value)) : value, pattern);
}

Variant formatNumberOf(Arguments arguments, const Environment&) {
  return formatReal(arguments[0], pattern(arguments, 2, "", ""));
}

Variant formatPercent(Arguments arguments, const Environment&) {
  return formatReal(arguments[0], pattern(arguments, 2, "", "%"));
}

// The won has no smaller unit.
Variant formatCurrency(Arguments arguments, const Environment&) {
  return formatReal(arguments[0], pattern(arguments, 0, "\\₩", ""));
}

// FormatDateTime(date [, form]): 0 General Date, 1 and 2 long and short date, 3 and 4 time.
Variant formatDateTime(Arguments arguments, const Environment&) {
  constexpr const char* kForms[] = {"General Date", "Long Date", "Short Date", "Long Time",
                                    "Short Time"};
  const std::int32_t form = longArgument(arguments, 1, 0);
  if (form < 0 || form >= static_cast<std::int32_t>(std::size(kForms))) {
    throwInvalidCall("FormatDateTime");
  }
  return format(toDate(arguments[0]), kForms[form]);
}

// Format(value [, pattern [, first day of the week [, first week of the year]]]).
Variant formatOf(Arguments arguments, const Environment&) {
  const std::string pattern =
      arguments.size() > 1 && !arguments[1].isNull() ? toText(arguments[1]) : std::string();
  const WeekRule rule{longArgument(arguments, 2, 1), longArgument(arguments, 3, 1)};
  return format(arguments[0], pattern, rule);
}

// Partition(number, start, stop, interval): the range that the number falls into, as "20:29", both
// sides padded to the width of the widest bound.
Variant partition(Arguments arguments, const Environment&) {
  const std::int64_t number = toLong(arguments[0]);
  const std::int64_t start = toLong(arguments[1]);
  const std::int64_t stop = toLong(arguments[2]);
  const std::int64_t interval = toLong(arguments[3]);
  if (start < 0 || stop <= start || interval < 1) throwInvalidCall("Partition");
  const std::size_t width =
      std::max(std::to_string(start - 1).size(), std::to_string(stop + 1).size());
  const auto padded = [width](const std::string& text) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
  };
  if (number < start) return padded("") + ':' + padded(std::to_string(start - 1));
  if (number > stop) return padded(std::to_string(stop + 1)) + ':' + padded("");
  const std::int64_t first = start + (number - start) / interval * interval;
  const std::int64_t last = std::min(first + interval - 1, stop);
  return padded(std::to_string(first)) + ':' + padded(std::to_string(last));
}

constexpr auto kText = fixedType<VariantType::kText>;

constexpr Function kTable[] = {
    {"Format", 1, 4, kText, formatOf, true},
    {"FormatNumber", 1, 5, kText, formatNumberOf},
    {"FormatPercent", 1, 5, kText, formatPercent},
    {"FormatCurrency", 1, 5, kText, formatCurrency},
    {"FormatDateTime", 1, 2, kText, formatDateTime},
    {"Partition", 4, 4, kText, partition},
};

}  // namespace

std::span<const Function> formattedFunctions() { return kTable; }

}  // namespace jetsql
