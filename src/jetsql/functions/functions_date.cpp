#include <algorithm>
#include <cmath>
#include <string>

#include "jetsql/functions/date_parts.h"
#include "jetsql/functions/format.h"
#include "jetsql/functions/function_tables.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::CivilTime;
using values::DateTime;
using values::Variant;
using values::VariantType;

template <int CivilTime::*kPart>
Variant part(Arguments arguments, const Environment&) {
  return static_cast<std::int16_t>(values::toCivil(toDate(arguments[0])).*kPart);
}

WeekRule weekRule(Arguments arguments, std::size_t first) {
  return {longArgument(arguments, first, 1), longArgument(arguments, first + 1, 1)};
}

Variant weekday(Arguments arguments, const Environment&) {
  return dayOfWeek(toDate(arguments[0]), {longArgument(arguments, 1, 1), 1});
}

Variant now(Arguments, const Environment& environment) {
  return values::toDateTime(environment.clock.now());
}

// By the text of the date, which has whole seconds: free of what a double loses.
DateTime dayPart(DateTime date) { return {static_cast<double>(dayNumber(date))}; }
DateTime timePart(DateTime date) {
  constexpr std::int64_t kSecondsOfDay = 86400;
  return fromSeconds(((secondNumber(date) % kSecondsOfDay) + kSecondsOfDay) % kSecondsOfDay);
}

Variant today(Arguments arguments, const Environment& environment) {
  return dayPart(*now(arguments, environment).as<DateTime>());
}

Variant timeOfDay(Arguments arguments, const Environment& environment) {
  return timePart(*now(arguments, environment).as<DateTime>());
}

Variant dateValue(Arguments arguments, const Environment& environment) {
  return dayPart(dateArgument(arguments[0], environment));
}

Variant timeValue(Arguments arguments, const Environment& environment) {
  return timePart(dateArgument(arguments[0], environment));
}

DateTime dateOf(std::int64_t year, std::int64_t month, std::int64_t day) {
  // Months first, so that the year's range can be checked before days are counted.
  constexpr std::int64_t kFirstMonth = 1200;   // January 100
  constexpr std::int64_t kAfterLast = 120000;  // January 10000
  const std::int64_t months = year * 12 + month - 1;
  if (months < kFirstMonth || months >= kAfterLast) throwInvalidCall("DateSerial");
  const std::int64_t serial =
      values::daySerial(static_cast<int>(months / 12), static_cast<int>(months % 12) + 1, 1) + day -
      1;
  constexpr std::int64_t kSecondsOfDay = 86400;
  return fromSeconds(serial * kSecondsOfDay);
}

// Years below 100 are those from 1930 to 2029.
Variant dateSerial(Arguments arguments, const Environment&) {
  std::int32_t year = toInteger(arguments[0]);
  if (year >= 0 && year < 30) year += 2000;
  if (year >= 30 && year < 100) year += 1900;
  return dateOf(year, toInteger(arguments[1]), toInteger(arguments[2]));
}

Variant timeSerial(Arguments arguments, const Environment&) {
  const std::int64_t seconds = toInteger(arguments[0]) * std::int64_t{3600} +
                               toInteger(arguments[1]) * std::int64_t{60} + toInteger(arguments[2]);
  return fromSeconds(seconds);
}

Interval interval(const Variant& name, std::string_view function) {
  const TextArgument text(name);
  const auto interval = parseInterval(text.view());
  if (!interval) throwInvalidCall(function);
  return *interval;
}

// The same day so many months on, or the last of a shorter month.
DateTime addMonths(DateTime date, std::int64_t months) {
  const CivilTime civil = values::toCivil(date);
  const DateTime first = dateOf(civil.year, civil.month + months, 1);
  const DateTime next = dateOf(civil.year, civil.month + months + 1, 1);
  const auto length = static_cast<int>(next.serial - first.serial);
  CivilTime moved = values::toCivil(first);
  moved.day = std::min(civil.day, length);
  moved.hour = civil.hour;
  moved.minute = civil.minute;
  moved.second = civil.second;
  return values::toDateTime(moved);
}

DateTime addSeconds(DateTime date, std::int64_t seconds) {
  return fromSeconds(secondNumber(date) + seconds);
}

Variant dateAdd(Arguments arguments, const Environment&) {
  const std::int64_t count = toLong(arguments[1]);
  const DateTime date = toDate(arguments[2]);
  switch (interval(arguments[0], "DateAdd")) {
    case Interval::kYear:
      return addMonths(date, count * 12);
    case Interval::kQuarter:
      return addMonths(date, count * 3);
    case Interval::kMonth:
      return addMonths(date, count);
    case Interval::kWeek:
      return addSeconds(date, count * 7 * 86400);
    case Interval::kHour:
      return addSeconds(date, count * 3600);
    case Interval::kMinute:
      return addSeconds(date, count * 60);
    case Interval::kSecond:
      return addSeconds(date, count);
    default:
      return addSeconds(date, count * 86400);
  }
}

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// How many boundaries of the interval are between the two.
std::int64_t difference(Interval unit, DateTime from, DateTime to, const WeekRule& rule) {
  const CivilTime a = values::toCivil(from);
  const CivilTime b = values::toCivil(to);
  const std::int64_t days = std::int64_t{dayNumber(to)} - dayNumber(from);
  const auto seconds = [](DateTime date, std::int64_t size) {
    return floorDivide(secondNumber(date), size);
  };
  switch (unit) {
    case Interval::kYear:
      return b.year - a.year;
    case Interval::kQuarter:
      return (b.year - a.year) * 4 + (b.month - 1) / 3 - (a.month - 1) / 3;
    case Interval::kMonth:
      return (b.year - a.year) * 12 + b.month - a.month;
    case Interval::kWeekday:
      return days / 7;
    case Interval::kWeek:
      return (days + dayOfWeek(from, rule) - dayOfWeek(to, rule)) / 7;
    case Interval::kHour:
      return seconds(to, 3600) - seconds(from, 3600);
    case Interval::kMinute:
      return seconds(to, 60) - seconds(from, 60);
    case Interval::kSecond:
      return seconds(to, 1) - seconds(from, 1);
    default:
      return days;
  }
}

Variant dateDiff(Arguments arguments, const Environment&) {
  const std::int64_t count = difference(interval(arguments[0], "DateDiff"), toDate(arguments[1]),
                                        toDate(arguments[2]), weekRule(arguments, 3));
  if (count != static_cast<std::int32_t>(count)) throwOverflow();
  return static_cast<std::int32_t>(count);
}

Variant datePart(Arguments arguments, const Environment&) {
  const DateTime date = toDate(arguments[1]);
  const CivilTime civil = values::toCivil(date);
  const WeekRule rule = weekRule(arguments, 2);
  switch (interval(arguments[0], "DatePart")) {
    case Interval::kYear:
      return civil.year;
    case Interval::kQuarter:
      return (civil.month - 1) / 3 + 1;
    case Interval::kMonth:
      return civil.month;
    case Interval::kDayOfYear:
      return dayOfYear(date);
    case Interval::kWeekday:
      return dayOfWeek(date, rule);
    case Interval::kWeek:
      return weekOfYear(date, rule);
    case Interval::kHour:
      return civil.hour;
    case Interval::kMinute:
      return civil.minute;
    case Interval::kSecond:
      return civil.second;
    default:
      return civil.day;
  }
}

Variant monthNameOf(Arguments arguments, const Environment&) {
  const std::int32_t month = toLong(arguments[0]);
  if (month < 1 || month > 12) throwInvalidCall("MonthName");
  return monthName(month, arguments.size() > 1 && toBool(arguments[1]));
}

// WeekdayName(number [, short [, first day]]).
Variant weekdayNameOf(Arguments arguments, const Environment&) {
  const std::int32_t number = toLong(arguments[0]);
  const std::int32_t first = std::max(longArgument(arguments, 2, 1), 1);
  if (number < 1 || number > 7 || first > 7) throwInvalidCall("WeekdayName");
  return weekdayName((number + first - 2) % 7 + 1, arguments.size() > 1 && toBool(arguments[1]));
}

constexpr auto kInteger = fixedType<VariantType::kInteger>;
constexpr auto kLong = fixedType<VariantType::kLong>;
constexpr auto kDate = fixedType<VariantType::kDateTime>;
constexpr auto kText = fixedType<VariantType::kText>;

constexpr Function kTable[] = {
    {"Year", 1, 1, kInteger, part<&CivilTime::year>},
    {"Month", 1, 1, kInteger, part<&CivilTime::month>},
    {"Day", 1, 1, kInteger, part<&CivilTime::day>},
    {"Hour", 1, 1, kInteger, part<&CivilTime::hour>},
    {"Minute", 1, 1, kInteger, part<&CivilTime::minute>},
    {"Second", 1, 1, kInteger, part<&CivilTime::second>},
    {"Weekday", 1, 2, kInteger, weekday},
    {"Now", 0, 0, kDate, now, false, false},
    {"Date", 0, 0, kDate, today, false, false},
    {"Time", 0, 0, kDate, timeOfDay, false, false},
    {"DateSerial", 3, 3, kDate, dateSerial},
    {"TimeSerial", 3, 3, kDate, timeSerial},
    {"DateValue", 1, 1, kDate, dateValue},
    {"TimeValue", 1, 1, kDate, timeValue},
    {"DateAdd", 3, 3, kDate, dateAdd},
    {"DateDiff", 3, 5, kLong, dateDiff},
    {"DatePart", 2, 4, kInteger, datePart},
    {"MonthName", 1, 2, kText, monthNameOf},
    {"WeekdayName", 1, 3, kText, weekdayNameOf},
};

}  // namespace

std::span<const Function> dateFunctions() { return kTable; }

}  // namespace jetsql
