#include "values/civil_time.h"

#include <array>
#include <chrono>
#include <ctime>

namespace values {

namespace {

bool isWithin(int number, int least, int most) { return number >= least && number <= most; }

}  // namespace

bool exists(const CivilTime& civil) {
  const bool timeExists =
      isWithin(civil.hour, 0, 23) && isWithin(civil.minute, 0, 59) && isWithin(civil.second, 0, 59);
  const bool small =
      isWithin(civil.year, 0, 9999) && isWithin(civil.month, 1, 12) && isWithin(civil.day, 1, 31);
  if (!small || !timeExists) return false;
  return std::chrono::year_month_day{std::chrono::year{civil.year},
                                     std::chrono::month{static_cast<unsigned>(civil.month)},
                                     std::chrono::day{static_cast<unsigned>(civil.day)}}
      .ok();
}

std::string formatTime(const CivilTime& civil, const char* pattern) {
  std::tm parts{};
  parts.tm_year = civil.year - 1900;
  parts.tm_mon = civil.month - 1;
  parts.tm_mday = civil.day;
  parts.tm_hour = civil.hour;
  parts.tm_min = civil.minute;
  parts.tm_sec = civil.second;
  std::array<char, 64> text;
  return {text.data(), std::strftime(text.data(), text.size(), pattern, &parts)};
}

}  // namespace values
