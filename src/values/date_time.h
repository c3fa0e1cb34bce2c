// Dates as the Jet engine keeps them: days since 1899-12-30 in a double, the fraction being the
// time of day. A negative serial counts its days backwards but its fraction forwards: -1.25 is
// 1899-12-29 06:00.
//
// Errors: 5 (a day or time that does not exist), 6 (outside the years 100 to 9999).
#pragma once

#include <cstdint>
#include <string>

namespace values {

struct DateTime {
  double serial = 0;  // days since 1899-12-30, time of day as fraction
  friend bool operator==(DateTime, DateTime) = default;
};

struct CivilTime {
  int year = 1899;
  int month = 12;  // 1 to 12
  int day = 30;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const CivilTime&, const CivilTime&) = default;
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
void appendDateText(std::string& text, DateTime value);  // behind what is there

// "yyyy-MM-dd" and "hh:nn:ss" (hours 00 to 23).
[[nodiscard]] std::string dayText(DateTime value);
[[nodiscard]] std::string timeText(DateTime value);

}  // namespace values
