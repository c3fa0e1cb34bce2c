// A day and time as the calendar and the clock show them.
//
//   const std::optional<CivilTime> shown = parseCivilTime("2013/8/2 7:05");
//   formatTime(clock.now(), kStampFormat)      // "20130821 153045"
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace values {

// Without a day it is the day of serial 0; see date_time.h.
struct CivilTime {
  int year = 1899;
  int month = 12;  // 1 to 12
  int day = 30;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

// Whether the calendar has the day (years 0 to 9999) and the clock the time.
[[nodiscard]] bool exists(const CivilTime& civil);

// Reads a day, a time or both as the platform's conversions do on a Korean system:
//   2013-08-21  13-8-21  2013.08.21  2013. 8. 21.  8/21/2013  2013년 8월 21일 수요일  2013-08
//   15:30:20  3:30 PM  오후 3:30  3 PM
// Years of two digits are those from 1930 to 2029. A month and a day alone (8-21) are of the
// current year, and read as nothing where that is not given. Nothing for any other text, nor for a
// day or time that does not exist.
[[nodiscard]] std::optional<CivilTime> parseCivilTime(std::string_view text,
                                                      std::optional<int> currentYear = {});

// The patterns of strftime that more than one room uses.
constexpr const char* kStampFormat = "%Y%m%d %H%M%S";       // 20130821 153045
constexpr const char* kFileStampFormat = "%Y%m%d_%H%M%S";   // 20130821_153045
constexpr const char* kDayFormat = "%Y/%m/%d";              // 2013/08/21
constexpr const char* kMomentFormat = "%Y/%m/%d %H:%M:%S";  // 2013/08/21 15:30:45

[[nodiscard]] std::string formatTime(const CivilTime& civil, const char* pattern);

}  // namespace values
