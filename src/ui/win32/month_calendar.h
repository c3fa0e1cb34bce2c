// A month of days, the system's control, with the days of a range in bold.
//
//   MonthCalendar calendar(makeControl(MONTHCAL_CLASSW, "", MonthCalendar::kStyle, id));
//   calendar.setRange(from, to);
//   if (const auto day = calendar.picked(notice)) form.MonthView1_DateClick(*day);
#pragma once

#include <optional>
#include <vector>

#include "ui/win32/system.h"
#include "values/date_time.h"

namespace ui::win32 {

class MonthCalendar {
 public:
  static constexpr DWORD kStyle = WS_TABSTOP | MCS_DAYSTATE | MCS_NOTODAYCIRCLE;

  explicit MonthCalendar(HWND control);

  [[nodiscard]] HWND control() const { return control_; }
  // In its font, in pixels.
  [[nodiscard]] SIZE size() const;
  [[nodiscard]] values::DateTime day() const { return day_; }
  // Selects the day and shows its month; this is not a pick.
  void setDay(values::DateTime day);
  // Both days included; no day where `from` is after `to`.
  void setRange(values::DateTime from, values::DateTime to);
  // The day that a notice of the control says was clicked, or moved to by the keyboard. Answers the
  // control's questions for the bold days.
  [[nodiscard]] std::optional<values::DateTime> picked(const NMHDR& notice);

 private:
  [[nodiscard]] std::vector<MONTHDAYSTATE> boldDays(SYSTEMTIME firstMonth, int months) const;

  HWND control_;
  values::DateTime day_;  // the selected one
  double from_ = 1;       // whole days since 1899-12-30
  double to_ = 0;
};

}  // namespace ui::win32
