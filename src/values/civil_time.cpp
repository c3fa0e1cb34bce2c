#include "values/civil_time.h"

#include <array>
#include <chrono>
#include <ctime>

#include "text/ascii.h"

namespace values {

namespace {

// One to three numbers with the same mark between them: "2013-08-02", "7:05".
struct NumberGroup {
  std::array<int, 3> numbers = {0, 0, 0};
  std::size_t count = 0;
  char mark = 0;
};

std::optional<NumberGroup> readGroup(std::string_view text) {
  NumberGroup group;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (group.count == group.numbers.size() || !text::isAsciiDigit(text[at])) return std::nullopt;
    int& number = group.numbers[group.count++];
    for (; at < text.size() && text::isAsciiDigit(text[at]); ++at) {
      if (number > 9999) return std::nullopt;
      number = number * 10 + (text[at] - '0');
    }
    if (at == text.size()) return group;
    if (group.mark != 0 && text[at] != group.mark) return std::nullopt;
    group.mark = text[at];
  }
  return std::nullopt;  // nothing there, or a mark at the end
}

bool readDay(std::string_view text, CivilTime& civil) {
  const auto group = readGroup(text);
  if (!group || group->count != 3) return false;
  const auto [first, second, third] = group->numbers;
  const bool yearFirst = first > 31;
  if (group->mark != '/' && !(group->mark == '-' && yearFirst)) return false;
  civil.year = yearFirst ? first : third;
  civil.month = yearFirst ? second : first;
  civil.day = yearFirst ? third : second;
  return civil.year >= 100;
}

bool readTime(std::string_view text, CivilTime& civil) {
  const auto group = readGroup(text);
  if (!group || group->count < 2 || group->mark != ':') return false;
  civil.hour = group->numbers[0];
  civil.minute = group->numbers[1];
  civil.second = group->numbers[2];
  return true;
}

bool readBoth(std::string_view text, CivilTime& civil) {
  const std::size_t blank = text.find(' ');
  if (blank == std::string_view::npos) return readDay(text, civil) || readTime(text, civil);
  return readDay(text.substr(0, blank), civil) &&
         readTime(text::trimBlanks(text.substr(blank)), civil);
}

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

std::optional<CivilTime> parseCivilTime(std::string_view text) {
  CivilTime civil;
  if (!readBoth(text::trimBlanks(text), civil) || !exists(civil)) return std::nullopt;
  return civil;
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
