#include "extract/conversions.h"

#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "text/utf16.h"
#include "values/decimal.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace extract {

namespace {

using values::Variant;
using values::VariantView;

constexpr std::size_t kLastApostrophe = 32767;

void appendEscaped(std::string& statement, std::string_view text) {
  const std::size_t apostrophe = text.find('\'');
  if (apostrophe == std::string_view::npos) {
    statement += text;
  } else if (apostrophe >= kLastApostrophe &&
             text::utf16Length(text.substr(0, apostrophe)) + 1 > kLastApostrophe) {
    statement += "NULL";
  } else {
    statement += text.substr(0, apostrophe);
    statement += '\\';
    statement += text.substr(apostrophe);
  }
}

// The date as the platform's Format function reads it; nothing for a text that is no date.
std::optional<values::DateTime> readAsDate(const Variant& value) {
  if (const auto* text = value.as<std::string>()) return values::parseDate(*text);
  return values::toDate(value);
}

template <typename Text>
Variant format(const Variant& value, Text text) {
  if (value.isNull()) return value;
  const auto date = readAsDate(value);
  return date ? Variant(text(*date)) : value;
}

}  // namespace

void appendSqlText(std::string& statement, const VariantView& value) {
  if (value.isNull()) return;
  if (const auto* text = value.as<std::string_view>()) return appendEscaped(statement, *text);
  if (value.type() == values::VariantType::kBinary) {
    return appendEscaped(statement, values::toText(value));
  }
  try {
    values::appendText(statement, value);  // the text of a number, date or Yes/No has no apostrophe
  } catch (const RuntimeError&) {
    statement += "NULL";
  }
}

void appendNzText(std::string& statement, const VariantView& value) {
  if (value.isNull()) return;
  try {
    values::appendText(statement, value);
  } catch (const RuntimeError&) {
    return;  // writes the empty text
  }
}

std::string SqlText(const VariantView& value) {
  std::string text;
  appendSqlText(text, value);
  return text;
}

std::string NzText(const VariantView& value) {
  std::string text;
  appendNzText(text, value);
  return text;
}

std::int32_t NzLong(const VariantView& value) {
  if (const auto* whole = value.as<std::int32_t>()) return *whole;
  if (value.isNull()) return 0;
  // Empty texts in place of numbers are common: no exception for each.
  if (const auto* text = value.as<std::string_view>(); text != nullptr && text->empty()) return 0;
  try {
    return values::toLong(value);
  } catch (const RuntimeError&) {
    return 0;
  }
}

std::int32_t NzLong(values::Currency amount) {
  const std::int64_t whole = values::divideHalvesToEven(amount.units, values::kCurrencyScale);
  return std::in_range<std::int32_t>(whole) ? static_cast<std::int32_t>(whole) : 0;
}

bool NzBool(const VariantView& value) {
  if (const auto* yes = value.as<bool>()) return *yes;
  if (value.isNull()) return false;
  try {
    return values::toDouble(value) == -1;
  } catch (const RuntimeError&) {
    return false;
  }
}

Variant formatDay(const Variant& value) { return format(value, values::dayText); }

Variant formatTime(const Variant& value) { return format(value, values::timeText); }

Variant formatHourMinute(const Variant& value) {
  return format(value, [](values::DateTime date) { return values::timeText(date).substr(0, 5); });
}

std::string_view weekdayLetter(const Variant& day) {
  static constexpr std::array<std::string_view, 7> kLetters = {"일", "월", "화", "수",
                                                               "목", "금", "토"};
  if (day.isNull()) throw RuntimeError(error::kInvalidUseOfNull, "Weekday of Null.");
  return kLetters.at(static_cast<std::size_t>(values::weekday(values::toDate(day)) - 1));
}

std::string dayLiteral(values::DateTime day) { return "#" + values::dayText(day) + "#"; }

std::string groupedText(std::int32_t number) {
  std::string text;
  values::appendWhole(text, number);
  const std::size_t first = number < 0 ? 1 : 0;
  for (std::size_t at = text.size(); at > first + 3;) text.insert(at -= 3, 1, ',');
  return text;
}

std::string oneDecimalText(double number) {
  const auto tenths = std::llround(std::fabs(number) * 10);
  std::string text = number < 0 && tenths != 0 ? "-" : "";
  values::appendWhole(text, tenths / 10);
  text += '.';
  values::appendWhole(text, tenths % 10);
  return text;
}

}  // namespace extract
