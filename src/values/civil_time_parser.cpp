// parseCivilTime: a day, a time or both, with the words of a Korean system.
#include <array>
#include <span>

#include "text/ascii.h"
#include "values/civil_time.h"

namespace values {
namespace {

struct Number {
  int value = 0;
  std::size_t digits = 0;
};

enum class HalfDay { kNone, kMorning, kAfternoon };

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

int fullYear(const Number& year) {
  if (year.digits > 2) return year.value;
  return year.value + (year.value < 30 ? 2000 : 1900);
}

bool isYear(const Number& number) { return number.digits > 2 || number.value > 31; }

class CivilTimeParser {
 public:
  CivilTimeParser(std::string_view text, std::optional<int> currentYear)
      : rest_(text), currentYear_(currentYear) {}

  std::optional<CivilTime> run() {
    for (skipBlanks(); !rest_.empty(); skipBlanks()) {
      if (!readWord() && !readNumbers()) return std::nullopt;
    }
    if (!(hasDay_ || hasTime_) || !applyHalfDay() || !exists(civil_)) return std::nullopt;
    return civil_;
  }

 private:
  void skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
  }

  bool take(std::string_view word) {
    if (!text::startsWithIgnoringAsciiCase(rest_, word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  bool takeAfterBlanks(std::string_view word) {
    const std::string_view before = rest_;
    skipBlanks();
    if (take(word)) return true;
    rest_ = before;
    return false;
  }

  // A half of the day, or the name of a weekday, which is not checked.
  bool readWord() {
    constexpr std::array<std::string_view, 7> kWeekdays{"일", "월", "화", "수", "목", "금", "토"};
    const bool morning = take("오전") || take("AM");
    if (morning || take("오후") || take("PM")) {
      const bool isFirst = half_ == HalfDay::kNone;
      half_ = morning ? HalfDay::kMorning : HalfDay::kAfternoon;
      return isFirst;
    }
    for (const std::string_view day : kWeekdays) {
      if (rest_.starts_with(day)) return take(day), take("요일");
    }
    return false;
  }

  std::optional<Number> readNumber() {
    constexpr std::size_t kMaxDigits = 4;
    Number number;
    for (; !rest_.empty() && text::isAsciiDigit(rest_.front()); rest_.remove_prefix(1)) {
      if (++number.digits > kMaxDigits) return std::nullopt;
      number.value = number.value * 10 + (rest_.front() - '0');
    }
    if (number.digits == 0) return std::nullopt;
    return number;
  }

  // What begins with a number: a time, a day, or the hour of a half day.
  bool readNumbers() {
    const auto first = readNumber();
    if (!first) return false;
    if (take(":")) return readTime(*first);
    if (takeAfterBlanks("년")) return readKoreanDay(*first);
    for (const char* mark : {"-", "/", "."}) {
      if (takeAfterBlanks(mark)) return readDay(*first, mark);
    }
    if (hasTime_) return false;
    hasTime_ = needsHalfDay_ = true;
    civil_.hour = first->value;
    return true;
  }

  bool readTime(const Number& hour) {
    const auto minute = readNumber();
    if (hasTime_ || !minute) return false;
    Number second;
    if (take(":")) {
      const auto number = readNumber();
      if (!number) return false;
      second = *number;
    }
    hasTime_ = true;
    civil_.hour = hour.value;
    civil_.minute = minute->value;
    civil_.second = second.value;
    return true;
  }

  bool readKoreanDay(const Number& year) {
    skipBlanks();
    const auto month = readNumber();
    if (!month || !takeAfterBlanks("월")) return false;
    skipBlanks();
    const auto day = readNumber();
    return day && takeAfterBlanks("일") && setDay(fullYear(year), month->value, day->value);
  }

  bool readDay(const Number& first, std::string_view mark) {
    skipBlanks();
    const auto second = readNumber();
    if (!second) return false;
    if (!takeAfterBlanks(mark)) return mark != "." && setMonth(first, *second);
    skipBlanks();
    const auto third = readNumber();
    if (!third) return false;
    if (mark == ".") take(mark);  // 2013. 8. 21.
    const int y = fullYear(isYear(*third) ? *third : first);
    if (isYear(*third)) {
      return setDay(y, first.value, second->value) || setDay(y, second->value, first.value);
    }
    if (setDay(y, second->value, third->value)) return true;
    if (isYear(first)) return setDay(y, third->value, second->value);
    return setDay(fullYear(*third), first.value, second->value) ||
           setDay(fullYear(*third), second->value, first.value);
  }

  // Two numbers: a month of a year, or a day of this one. With a full stop they are a fraction.
  bool setMonth(const Number& first, const Number& second) {
    if (isYear(first)) return setDay(fullYear(first), second.value, 1);
    if (isYear(second)) return setDay(fullYear(second), first.value, 1);
    return currentYear_ && (setDay(*currentYear_, first.value, second.value) ||
                            setDay(*currentYear_, second.value, first.value));
  }

  bool setDay(int year, int month, int day) {
    if (hasDay_ || year < kFirstYear || !exists({year, month, day})) return false;
    hasDay_ = true;
    civil_.year = year;
    civil_.month = month;
    civil_.day = day;
    return true;
  }

  // 15:30 with 오후 is 15:30, too.
  bool applyHalfDay() {
    if (half_ == HalfDay::kNone) return !needsHalfDay_;
    if (!hasTime_ || (civil_.hour > 12 && half_ == HalfDay::kMorning)) return false;
    if (civil_.hour <= 12) civil_.hour = civil_.hour % 12 + (half_ == HalfDay::kAfternoon ? 12 : 0);
    return true;
  }

  static constexpr int kFirstYear = 100;

  std::string_view rest_;
  std::optional<int> currentYear_;
  CivilTime civil_;
  HalfDay half_ = HalfDay::kNone;
  bool hasDay_ = false;
  bool hasTime_ = false;
  bool needsHalfDay_ = false;  // an hour alone
};

}  // namespace

std::optional<CivilTime> parseCivilTime(std::string_view text, std::optional<int> currentYear) {
  return CivilTimeParser(text, currentYear).run();
}

}  // namespace values
