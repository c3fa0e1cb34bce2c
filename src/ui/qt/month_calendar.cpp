#include "ui/qt/month_calendar.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QSignalBlocker>
#include <QTextCharFormat>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/upload_texts.h"

namespace ui::qt {
namespace {

// A page shows six weeks: days of the months before and after surround the month.
constexpr int kSurroundingDays = 14;

const QColor kSaturday(30, 80, 180);
const QColor kRange(205, 228, 250);

}  // namespace

MonthCalendar::MonthCalendar(QWidget* parent, const char* name)
    : QWidget(parent), month_(new QCalendarWidget(this)), heading_(new QLabel(this)) {
  month_->setObjectName(name);
  for (auto* spoken : {static_cast<QWidget*>(month_), month_->focusProxy()}) {
    if (spoken != nullptr) spoken->setAccessibleName(text::kCalendarName);
  }
  month_->setLocale(QLocale(QLocale::Korean, QLocale::SouthKorea));
  month_->setFirstDayOfWeek(Qt::Sunday);
  month_->setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
  month_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  month_->setNavigationBarVisible(false);
  month_->setGridVisible(true);
  QTextCharFormat saturday;
  saturday.setForeground(kSaturday);
  month_->setWeekdayTextFormat(Qt::Saturday, saturday);
  heading_->setObjectName("month");
  heading_->setAlignment(Qt::AlignCenter);
  QFont bold;
  bold.setBold(true);
  heading_->setFont(bold);  // the size stays the window's

  auto* head = new QHBoxLayout;
  auto* before = makeStep(Qt::LeftArrow, "monthBefore", text::kMonthBefore);
  auto* after = makeStep(Qt::RightArrow, "monthAfter", text::kMonthAfter);
  head->addWidget(before);
  head->addWidget(heading_, 1);
  head->addWidget(after);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addLayout(head);
  layout->addWidget(month_);
  connect(before, &QToolButton::clicked, month_, &QCalendarWidget::showPreviousMonth);
  connect(after, &QToolButton::clicked, month_, &QCalendarWidget::showNextMonth);
  connect(month_, &QCalendarWidget::currentPageChanged, this, [this] { showMonth(); });
  showMonth();
}

QToolButton* MonthCalendar::makeStep(Qt::ArrowType arrow, const char* name, const char* hint) {
  auto* button = new QToolButton(this);
  button->setObjectName(name);
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::NoFocus);  // Page Up and Page Down do the same
  button->setToolTip(hint);
  button->setAccessibleName(hint);
  return button;
}

void MonthCalendar::setDay(QDate day) {
  const QSignalBlocker notPicked(month_);
  month_->setSelectedDate(day);
  showMonth();
}

void MonthCalendar::setRange(QDate from, QDate to) {
  from_ = from;
  to_ = to;
  showMonth();
}

void MonthCalendar::onPick(const std::function<void(QDate)>& picked) {
  connect(month_, &QCalendarWidget::clicked, this, picked);
  connect(month_, &QCalendarWidget::activated, this, picked);
  connect(month_, &QCalendarWidget::selectionChanged, this,
          [this, picked] { picked(month_->selectedDate()); });
}

// Only the days of the shown page are coloured: a range may have many years.
void MonthCalendar::showMonth() {
  const QDate first(month_->yearShown(), month_->monthShown(), 1);
  heading_->setText(first.toString(text::kMonthFormat));
  month_->setDateTextFormat({}, {});
  QTextCharFormat inRange;
  inRange.setBackground(kRange);
  const QDate last = std::min(to_, first.addMonths(1).addDays(kSurroundingDays));
  for (QDate day = std::max(from_, first.addDays(-kSurroundingDays)); day <= last;
       day = day.addDays(1)) {
    month_->setDateTextFormat(day, inRange);
  }
}

}  // namespace ui::qt
