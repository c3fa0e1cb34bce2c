#include "values/date_time.h"

#include <array>
#include <chrono>
#include <cmath>

#include "values/runtime_error.h"

namespace values {

namespace {

constexpr std::int64_t kUnixEpochSerial = 25569;  // 1970-01-01
constexpr std::int64_t kFirstDay = -657434;       // 100-01-01
constexpr std::int64_t kLastDay = 2958465;        // 9999-12-31
constexpr int kSecondsPerDay = 86400;

struct DayAndSecond {
  std::int64_t day;
  int second;  // 0 to 86399
};

void requireRange(std::int64_t day) {
  if (day < kFirstDay || day > kLastDay) {
    throw RuntimeError(error::kOverflow,
                       "Date outside the years 100 to 9999 (day " + std::to_string(day) + ").");
  }
}

DayAndSecond split(DateTime value) {
  const double whole = std::trunc(value.serial);
  if (!(whole >= kFirstDay && whole <= kLastDay)) {
    throw RuntimeError(error::kOverflow, "Date serial outside the years 100 to 9999.");
  }
  DayAndSecond parts{
      static_cast<std::int64_t>(whole),
      static_cast<int>(std::lround(std::fabs(value.serial - whole) * kSecondsPerDay))};
  if (parts.second == kSecondsPerDay) {
    parts = {parts.day + 1, 0};
    requireRange(parts.day);
  }
  return parts;
}

std::chrono::year_month_day calendar(std::int64_t day) {
  return std::chrono::sys_days{std::chrono::days{day - kUnixEpochSerial}};
}

constexpr std::size_t kDayLength = 10;  // yyyy-MM-dd
constexpr std::size_t kTimeLength = 8;  // hh:nn:ss

char* putDigits(char* to, unsigned number, int width) {
  for (int i = width - 1; i >= 0; --i, number /= 10) to[i] = static_cast<char>('0' + number % 10);
  return to + width;
}

char* putDay(char* to, std::int64_t day) {
  const auto date = calendar(day);
  to = putDigits(to, static_cast<unsigned>(static_cast<int>(date.year())), 4);
  *to++ = '-';
  to = putDigits(to, static_cast<unsigned>(date.month()), 2);
  *to++ = '-';
  return putDigits(to, static_cast<unsigned>(date.day()), 2);
}

char* putTime(char* to, int second) {
  const auto whole = static_cast<unsigned>(second);
  to = putDigits(to, whole / 3600, 2);
  *to++ = ':';
  to = putDigits(to, whole / 60 % 60, 2);
  *to++ = ':';
  return putDigits(to, whole % 60, 2);
}

}  // namespace

std::int32_t daySerial(int year, int month, int day) {
  const std::int64_t months = static_cast<std::int64_t>(year) * 12 + month - 1;
  const std::int64_t wholeYear = (months >= 0 ? months : months - 11) / 12;
  if (wholeYear < -9999 || wholeYear > 19999) requireRange(kLastDay + 1);
  const std::chrono::year_month_day first{
      std::chrono::year{static_cast<int>(wholeYear)},
      std::chrono::month{static_cast<unsigned>(months - wholeYear * 12 + 1)}, std::chrono::day{1}};
  const std::int64_t serial =
      std::chrono::sys_days{first}.time_since_epoch().count() + kUnixEpochSerial + day - 1;
  requireRange(serial);
  return static_cast<std::int32_t>(serial);
}

DateTime toDateTime(const CivilTime& civil) {
  if (!exists(civil)) {
    throw RuntimeError(error::kInvalidCall, "No such day or time: " + std::to_string(civil.year) +
                                                "-" + std::to_string(civil.month) + "-" +
                                                std::to_string(civil.day) + ".");
  }
  const double day = daySerial(civil.year, civil.month, civil.day);
  const double fraction =
      (civil.hour * 3600 + civil.minute * 60 + civil.second) / static_cast<double>(kSecondsPerDay);
  return {day < 0 ? day - fraction : day + fraction};
}

CivilTime toCivil(DateTime value) {
  const DayAndSecond parts = split(value);
  const auto date = calendar(parts.day);
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          parts.second / 3600,
          parts.second / 60 % 60,
          parts.second % 60};
}

int weekday(DateTime value) {
  const std::int64_t day = split(value).day;  // day 0 was a Saturday
  return static_cast<int>(((day + 6) % 7 + 7) % 7) + 1;
}

std::string dateText(DateTime value) {
  std::string text;
  appendDateText(text, value);
  return text;
}

void appendDateText(std::string& text, DateTime value) {
  const DayAndSecond parts = split(value);
  std::array<char, kDayLength + 1 + kTimeLength> form;
  char* end = putDay(form.data(), parts.day);
  if (parts.second != 0) {
    *end++ = ' ';
    end = putTime(end, parts.second);
  }
  text.append(form.data(), end);
}

std::string dayText(DateTime value) {
  std::array<char, kDayLength> form;
  return {form.data(), putDay(form.data(), split(value).day)};
}

std::string timeText(DateTime value) {
  std::array<char, kTimeLength> form;
  return {form.data(), putTime(form.data(), split(value).second)};
}

std::optional<DateTime> parseDate(std::string_view text, std::optional<int> currentYear) {
  const auto civil = parseCivilTime(text, currentYear);
  if (!civil) return std::nullopt;
  return toDateTime(*civil);
}

}  // namespace values
