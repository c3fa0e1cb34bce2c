#include <algorithm>
#include <array>
#include <cstdio>

#include "jetsql/functions/format.h"
#include "jetsql/functions/format_patterns.h"
#include "text/ascii.h"

namespace jetsql {
namespace {

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string digits(int number, std::size_t count) {
  return count > 1 ? twoDigits(number) : std::to_string(number);
}

// One formatting run over a pattern.
class DateFormatter {
 public:
  DateFormatter(values::DateTime date, std::string_view pattern, const WeekRule& rule)
      : date_(date), civil_(values::toCivil(date)), pattern_(pattern), rule_(rule) {}

  std::string run() {
    twelveHours_ = hasHalfDayMark();
    while (position_ < pattern_.size()) step();
    return result_;
  }

 private:
  [[nodiscard]] std::string_view rest() const { return pattern_.substr(position_); }

  [[nodiscard]] bool matches(std::string_view mark) const {
    return text::startsWithIgnoringAsciiCase(rest(), mark);
  }

  [[nodiscard]] bool hasHalfDayMark() {
    bool found = false;
    for (position_ = 0; position_ < pattern_.size() && !found; ++position_) {
      found = matches("am/pm") || matches("ampm") || matches("a/p");
    }
    position_ = 0;
    return found;
  }

  void step() {
    const char c = pattern_[position_];
    if (c == '"') return quoted();
    if (c == '\\') {
      result_ += pattern_.substr(position_ + 1, 1);
      position_ += 2;
      return;
    }
    if (halfDay() || localName()) return;
    const char letter = text::lowerAscii(c);
    if (std::string_view("dmyhnswqtc").find(letter) == std::string_view::npos) {
      result_ += c;
      ++position_;
      return;
    }
    std::size_t count = 1;
    while (count < rest().size() && text::lowerAscii(rest()[count]) == letter) ++count;
    position_ += count;
    result_ += field(letter, count);
    // Colons and blanks between an hour and an m leave it the minute.
    afterHour_ = letter == 'h';
  }

  void quoted() {
    const std::size_t end = std::min(pattern_.find('"', position_ + 1), pattern_.size());
    result_ += pattern_.substr(position_ + 1, end - position_ - 1);
    position_ = end + 1;
  }

  bool halfDay() {
    const bool afternoon = civil_.hour >= 12;
    if (matches("am/pm")) {
      const std::string_view mark = rest().substr(afternoon ? 3 : 0, 2);
      result_ += mark;
      position_ += 5;
    } else if (matches("ampm")) {
      result_ += afternoon ? "오후" : "오전";
      position_ += 4;
    } else if (matches("a/p")) {
      result_ += rest()[afternoon ? 2 : 0];
      position_ += 3;
    } else {
      return false;
    }
    return true;
  }

  // The Korean names, which the other marks give here as well.
  bool localName() {
    std::size_t length = 4;
    if (matches("oooo")) {
      result_ += monthName(civil_.month, false);
    } else if (matches("aaa")) {
      length = matches("aaaa") ? 4 : 3;
      result_ += weekdayName(values::weekday(date_), length == 3);
    } else {
      return false;
    }
    position_ += length;
    return true;
  }

  // The day where there is one, and the time where there is one; midnight of day 0 is a time.
  [[nodiscard]] std::string generalText() const {
    return dayNumber(date_) == 0 ? values::timeText(date_) : values::dateText(date_);
  }

  [[nodiscard]] std::string field(char letter, std::size_t count) const {
    switch (letter) {
      case 'y':
        return year(count);
      case 'm':
        return afterHour_ && count <= 2 ? digits(civil_.minute, count) : month(count);
      case 'd':
        return day(count);
      case 'h':
        return digits(twelveHours_ ? (civil_.hour + 11) % 12 + 1 : civil_.hour, count);
      case 'n':
        return digits(civil_.minute, count);
      case 's':
        return digits(civil_.second, count);
      case 'w':
        return std::to_string(count > 1 ? weekOfYear(date_, rule_) : dayOfWeek(date_, rule_));
      case 'q':
        return std::to_string((civil_.month - 1) / 3 + 1);
      case 't':
        return count == 5 ? values::timeText(date_) : std::string(count, 't');
      default:
        return generalText();
    }
  }

  [[nodiscard]] std::string year(std::size_t count) const {
    if (count == 1) return std::to_string(dayOfYear(date_));
    if (count == 2) return twoDigits(civil_.year % 100);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%04d", civil_.year);
    return text.data();
  }

  [[nodiscard]] std::string month(std::size_t count) const {
    return count <= 2 ? digits(civil_.month, count) : monthName(civil_.month, count == 3);
  }

  [[nodiscard]] std::string day(std::size_t count) const {
    if (count <= 2) return digits(civil_.day, count);
    if (count <= 4) return weekdayName(values::weekday(date_), count == 3);
    if (count == 5) return values::dayText(date_);
    return std::to_string(civil_.year) + "년 " + std::to_string(civil_.month) + "월 " +
           std::to_string(civil_.day) + "일 " + weekdayName(values::weekday(date_), false);
  }

  values::DateTime date_;
  values::CivilTime civil_;
  std::string_view pattern_;
  const WeekRule& rule_;
  std::size_t position_ = 0;
  std::string result_;
  bool twelveHours_ = false;
  bool afterHour_ = false;
};

}  // namespace

std::string formatDate(values::DateTime date, std::string_view pattern, const WeekRule& rule) {
  return DateFormatter(date, pattern, rule).run();
}

}  // namespace jetsql
