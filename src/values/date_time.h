// Dates as the Jet engine keeps them: days since 1899-12-30 in a double, the fraction being the
// time of day. A negative serial counts its days backwards but its fraction forwards: -1.25 is
// 1899-12-29 06:00.
//
//   DateTime date = toDateTime({2013, 8, 2, 19, 5, 9});
//   dateText(date)                                          // "2013-08-02 19:05:09"
//
// Errors: 5 (a day or time that does not exist), 6 (outside the years 100 to 9999).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "values/civil_time.h"

namespace values {

struct DateTime {
  double serial = 0;  // days since 1899-12-30, time of day as fraction
  friend bool operator==(DateTime, DateTime) = default;
};

// Whole days between 1899-12-30 and the given day of the proleptic Gregorian calendar. Months
// outside 1 to 12 and days outside the month carry over, as the platform's DateSerial does.
[[nodiscard]] std::int32_t daySerial(int year, int month, int day);

[[nodiscard]] DateTime toDateTime(const CivilTime& civil);

// Rounded to whole seconds.
[[nodiscard]] CivilTime toCivil(DateTime value);

// 1 Sunday to 7 Saturday.
[[nodiscard]] int weekday(DateTime value);

// "yyyy-MM-dd", followed by " hh:nn:ss" when the time is not midnight: the one text form of a date
// wherever the form would be left to regional settings.
[[nodiscard]] std::string dateText(DateTime value);
void appendDateText(std::string& text, DateTime value);

// "yyyy-MM-dd" and "hh:nn:ss" (hours 00 to 23).
[[nodiscard]] std::string dayText(DateTime value);
[[nodiscard]] std::string timeText(DateTime value);

// The date of a text in one of the forms of parseCivilTime; a time alone is one of serial 0.
[[nodiscard]] std::optional<DateTime> parseDate(std::string_view text,
                                                std::optional<int> currentYear = {});

}  // namespace values
