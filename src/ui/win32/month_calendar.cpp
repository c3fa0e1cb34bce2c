#include "ui/win32/month_calendar.h"

#include <algorithm>
#include <cmath>

namespace ui::win32 {
namespace {

constexpr int kDaysAtMost = 31;

SYSTEMTIME toSystem(values::DateTime day) {
  const auto civil = values::toCivil(day);
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(civil.year);
  time.wMonth = static_cast<WORD>(civil.month);
  time.wDay = static_cast<WORD>(civil.day);
  return time;
}

// The calendar's last days of a month that has fewer belong to the next one and are not shown.
MONTHDAYSTATE boldIn(int year, int month, double from, double to) {
  MONTHDAYSTATE bold = 0;
  for (int day = 1; day <= kDaysAtMost; ++day) {
    const double serial = values::daySerial(year, month, day);
    if (serial >= from && serial <= to) bold |= MONTHDAYSTATE{1} << static_cast<unsigned>(day - 1);
  }
  return bold;
}

}  // namespace

MonthCalendar::MonthCalendar(HWND control) : control_(control) {
  constexpr LPARAM kSunday = 6;  // counted from Monday
  SendMessageW(control_, MCM_SETFIRSTDAYOFWEEK, 0, kSunday);
}

SIZE MonthCalendar::size() const {
  RECT area{};
  MonthCal_GetMinReqRect(control_, &area);
  return {std::max(area.right, static_cast<LONG>(MonthCal_GetMaxTodayWidth(control_))),
          area.bottom};
}

void MonthCalendar::setDay(values::DateTime day) {
  day_ = {std::floor(day.serial)};
  const SYSTEMTIME time = toSystem(day);
  SendMessageW(control_, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&time));
}

void MonthCalendar::setRange(values::DateTime from, values::DateTime to) {
  from_ = std::floor(from.serial);
  to_ = std::floor(to.serial);
  SYSTEMTIME shown[2];
  const auto months = static_cast<int>(
      SendMessageW(control_, MCM_GETMONTHRANGE, GMR_DAYSTATE, reinterpret_cast<LPARAM>(shown)));
  auto bold = boldDays(shown[0], months);
  SendMessageW(control_, MCM_SETDAYSTATE, static_cast<WPARAM>(months),
               reinterpret_cast<LPARAM>(bold.data()));
  InvalidateRect(control_, nullptr, TRUE);
}

std::vector<MONTHDAYSTATE> MonthCalendar::boldDays(SYSTEMTIME firstMonth, int months) const {
  std::vector<MONTHDAYSTATE> bold;
  for (int offset = 0; offset < months; ++offset) {
    const int month = firstMonth.wMonth - 1 + offset;
    bold.push_back(boldIn(firstMonth.wYear + month / 12, month % 12 + 1, from_, to_));
  }
  return bold;
}

std::optional<values::DateTime> MonthCalendar::picked(const NMHDR& notice) {
  if (notice.hwndFrom != control_) return {};
  if (notice.code == MCN_GETDAYSTATE) {
    const auto& question = reinterpret_cast<const NMDAYSTATE&>(notice);
    const auto bold = boldDays(question.stStart, question.cDayState);
    std::copy(bold.begin(), bold.end(), question.prgDayState);
  }
  if (notice.code != MCN_SELECT && notice.code != MCN_SELCHANGE) return {};
  const SYSTEMTIME& selected = reinterpret_cast<const NMSELCHANGE&>(notice).stSelStart;
  const auto day = values::toDateTime({selected.wYear, selected.wMonth, selected.wDay});
  // The system sends this one every few minutes, too, whether or not the selection has changed.
  if (notice.code == MCN_SELCHANGE && day == day_) return {};
  day_ = day;
  return day;
}

}  // namespace ui::win32
