// A month of days under the heading "2026년 11월", with a button for the month before and one for
// the month after, and with a range of days in colour.
//
//   auto* calendar = new MonthCalendar(parent, "MonthView1");
//   calendar->setRange({2026, 11, 1}, {2026, 11, 22});
//   calendar->onPick([&](QDate day) { form.MonthView1_DateClick(toDateTime(day)); });
#pragma once

#include <QCalendarWidget>
#include <QDate>
#include <QLabel>
#include <QToolButton>
#include <functional>

namespace ui::qt {

class MonthCalendar final : public QWidget {
 public:
  // `name` is the object name of the QCalendarWidget inside.
  MonthCalendar(QWidget* parent, const char* name);

  // Selects the day and shows its month; this is not a pick.
  void setDay(QDate day);
  // Both days included; no day where `from` is after `to`.
  void setRange(QDate from, QDate to);
  // Called with the selected day after every click and every move by the keyboard.
  void onPick(const std::function<void(QDate)>& picked);
  [[nodiscard]] QWidget* days() const { return month_; }

 private:
  QToolButton* makeStep(Qt::ArrowType arrow, const char* name, const char* hint);
  void showMonth();

  QCalendarWidget* month_;
  QLabel* heading_;
  QDate from_, to_;
};

}  // namespace ui::qt
