#include "jetsql/functions/date_parts.h"

#include <array>
#include <cmath>

#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/text_compare.h"

namespace jetsql {
namespace {

constexpr std::int64_t kSecondsOfDay = 86400;

std::int32_t januaryFirst(int year) { return values::daySerial(year, 1, 1); }

std::int32_t weekdayOf(std::int32_t day, const WeekRule& rule) {
  return dayOfWeek(values::DateTime{static_cast<double>(day)}, rule);
}

// First day of the week that counts as the year's first.
std::int32_t firstWeekOf(int year, const WeekRule& rule) {
  const std::int32_t newYear = januaryFirst(year);
  const std::int32_t position = weekdayOf(newYear, rule) - 1;  // days of that week before it
  const std::int32_t weekStart = newYear - position;
  if (rule.firstWeek == 2) return position <= 3 ? weekStart : weekStart + 7;
  if (rule.firstWeek == 3) return position == 0 ? weekStart : weekStart + 7;
  return weekStart;
}

}  // namespace

std::int32_t dayOfWeek(values::DateTime date, const WeekRule& rule) {
  if (rule.firstDay < 0 || rule.firstDay > 7) throwInvalidCall("Weekday");
  const std::int32_t first = rule.firstDay == 0 ? 1 : rule.firstDay;
  return (values::weekday(date) - first + 7) % 7 + 1;
}

std::int32_t dayOfYear(values::DateTime date) {
  return dayNumber(date) - januaryFirst(values::toCivil(date).year) + 1;
}

std::int32_t weekOfYear(values::DateTime date, const WeekRule& rule) {
  if (rule.firstWeek < 0 || rule.firstWeek > 3) throwInvalidCall("DatePart");
  const int year = values::toCivil(date).year;
  const std::int32_t day = dayNumber(date);
  std::int32_t first = firstWeekOf(year, rule);
  if (day < first) first = firstWeekOf(year - 1, rule);
  // With a rule by days the last days of December may belong to the next year's first week.
  if (rule.firstWeek == 2 && day >= firstWeekOf(year + 1, rule)) {
    first = firstWeekOf(year + 1, rule);
  }
  return (day - first) / 7 + 1;
}

std::int32_t dayNumber(values::DateTime date) {
  const values::CivilTime civil = values::toCivil(date);
  return values::daySerial(civil.year, civil.month, civil.day);
}

std::int64_t secondNumber(values::DateTime date) {
  const values::CivilTime civil = values::toCivil(date);
  return values::daySerial(civil.year, civil.month, civil.day) * kSecondsOfDay +
         civil.hour * std::int64_t{3600} + civil.minute * std::int64_t{60} + civil.second;
}

values::DateTime fromSeconds(std::int64_t seconds) {
  std::int64_t days = seconds / kSecondsOfDay;
  std::int64_t rest = seconds % kSecondsOfDay;
  if (rest < 0) {
    rest += kSecondsOfDay;
    --days;
  }
  const double fraction = static_cast<double>(rest) / static_cast<double>(kSecondsOfDay);
  const values::DateTime date{days < 0 ? static_cast<double>(days) - fraction
                                       : static_cast<double>(days) + fraction};
  (void)values::toCivil(date);  // error 6 outside the years that exist
  return date;
}

std::optional<Interval> parseInterval(std::string_view name) {
  constexpr std::array<std::string_view, 10> kNames{"yyyy", "q",  "m", "y", "d",
                                                    "w",    "ww", "h", "n", "s"};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (equalText(kNames[i], name)) return static_cast<Interval>(i);
  }
  return {};
}

}  // namespace jetsql
