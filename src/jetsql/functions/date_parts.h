// Parts of a date that depend on where a week and a year's first week begin, and interval names.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "values/date_time.h"

namespace jetsql {

struct WeekRule {
  std::int32_t firstDay = 1;   // 1 Sunday to 7 Saturday; 0 (the system's) counts as Sunday
  std::int32_t firstWeek = 1;  // 1 the week of 1 January, 2 the first with four days of the year,
                               // 3 the first whole one; 0 counts as 1
};

// 1 for the rule's first day to 7. Error 5 for a rule that does not exist.
[[nodiscard]] std::int32_t dayOfWeek(values::DateTime date, const WeekRule& rule);
[[nodiscard]] std::int32_t dayOfYear(values::DateTime date);
[[nodiscard]] std::int32_t weekOfYear(values::DateTime date, const WeekRule& rule);

// Whole days since 1899-12-30 of the date's day, and seconds since then in all.
[[nodiscard]] std::int32_t dayNumber(values::DateTime date);
[[nodiscard]] std::int64_t secondNumber(values::DateTime date);
// From seconds since 1899-12-30 00:00.
[[nodiscard]] values::DateTime fromSeconds(std::int64_t seconds);

enum class Interval {
  kYear,
  kQuarter,
  kMonth,
  kDayOfYear,
  kDay,
  kWeekday,
  kWeek,
  kHour,
  kMinute,
  kSecond
};

// yyyy q m y d w ww h n s, in any case.
[[nodiscard]] std::optional<Interval> parseInterval(std::string_view name);

}  // namespace jetsql
