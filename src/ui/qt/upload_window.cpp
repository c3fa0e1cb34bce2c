#include "ui/qt/upload_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLocale>
#include <QTextCharFormat>
#include <QVBoxLayout>

#include "ui/progress_percentage.h"
#include "ui/upload_texts.h"

namespace ui::qt {
namespace {

constexpr int kLongestProgress = 88;  // characters of the line that ends a job
constexpr int kProgressLines = 2;

values::DateTime toDateTime(const QDate& day) {
  return values::toDateTime({day.year(), day.month(), day.day()});
}

QDate toDate(values::DateTime day) {
  const auto civil = values::toCivil(day);
  return {civil.year, civil.month, civil.day};
}

}  // namespace

UploadWindow::UploadWindow(Application& application)
    : application_(application),
      sspPanel6_(makeHeading(this, "SSPanel6", text::kHeading)),
      lbDelegate_(makeLabel(this, "lbDelegate", "")),
      lbNow_(makeLabel(this, "lbNow", "")),
      sspPanel5_(makeLabel(this, "SSPanel5", text::kDayLabel)),
      sspFrom_(makePanel(this, "sspFrom", text::kDesignDay)),
      sspTo_(makePanel(this, "sspTo", text::kDesignDay)),
      cmdCalendar_(new Button(this, "cmdCalendar", text::kCalendar)),
      fCalendar_(new QFrame(this)),
      monthView1_(new QCalendarWidget(fCalendar_)),
      sspFromB_(new Button(fCalendar_, "sspFromB", text::kSetFrom)),
      sspToB_(new Button(fCalendar_, "sspToB", text::kSetTo)),
      sspCurrent_(new Button(fCalendar_, "sspCurrent", text::kSetToday)),
      sspPanel9_(new Button(fCalendar_, "SSPanel9", text::kHideCalendar)),
      boxes_(new QGroupBox(this)),
      ssCommand1_(new Button(boxes_, "SSCommand1", text::kTickAll)),
      ssCommand3_(new Button(boxes_, "SSCommand3", text::kUntickAll)),
      sspRem_(makePanel(this, "sspRem", "")),
      bar_(new QProgressBar(this)),
      cmdStart_(new Button(this, "cmdStart", text::kStart)),
      cmdEnd_(new Button(this, "cmdEnd", text::kEnd)) {
  setObjectName("FrmQuenbrook");
  setWindowTitle(text::kTitle);
  timer1_.setObjectName("Timer1");
  cmdCalendar_->setToolTip(text::kCalendarHint);
  enlarge(cmdStart_, 1.15);
  enlarge(sspFrom_, 1.1);
  enlarge(sspTo_, 1.1);
  enlarge(lbDelegate_, 1.0);
  makeCalendar();
  makeBoxes();
  makeProgress();
  layOut();
}

void UploadWindow::makeCalendar() {
  fCalendar_->setObjectName("fCalendar");
  fCalendar_->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  monthView1_->setObjectName("MonthView1");
  monthView1_->setLocale(QLocale(QLocale::Korean, QLocale::SouthKorea));
  monthView1_->setFirstDayOfWeek(Qt::Sunday);
  monthView1_->setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
  monthView1_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  monthView1_->setGridVisible(true);
  QTextCharFormat saturday;
  saturday.setForeground(QColor(30, 80, 180));
  monthView1_->setWeekdayTextFormat(Qt::Saturday, saturday);

  auto* buttons = new QHBoxLayout;
  for (auto* button : {sspFromB_, sspToB_, sspCurrent_, sspPanel9_}) buttons->addWidget(button);
  auto* layout = new QVBoxLayout(fCalendar_);
  layout->addWidget(monthView1_);
  layout->addLayout(buttons);
  fCalendar_->hide();
}

void UploadWindow::makeBoxes() {
  auto* layout = new QVBoxLayout(boxes_);
  for (int index = 0; index < kBoxCount; ++index) {
    auto* box = new QCheckBox(text::kBoxes.at(static_cast<std::size_t>(index)), boxes_);
    box->setObjectName("chk1_" + QString::number(index));
    chk1_.at(static_cast<std::size_t>(index)) = box;
    layout->addWidget(box);
  }
  layout->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(ssCommand1_);
  buttons->addWidget(ssCommand3_);
  buttons->addStretch();
  layout->addLayout(buttons);
}

void UploadWindow::makeProgress() {
  const auto metrics = sspRem_->fontMetrics();
  const int margin = 2 * (sspRem_->margin() + sspRem_->frameWidth());
  sspRem_->setMinimumSize(
      metrics.horizontalAdvance(QString(kLongestProgress, '-')) + margin + metrics.height(),
      metrics.lineSpacing() * kProgressLines + margin);
  sspRem_->setWordWrap(true);
  bar_->setObjectName("bar");
  bar_->setRange(0, 1000);
  bar_->setTextVisible(false);
  bar_->setFixedHeight(metrics.height() / 3);
  auto policy = bar_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  bar_->setSizePolicy(policy);
  bar_->hide();
}

QLayout* UploadWindow::layOutDates() {
  auto* dates = new QHBoxLayout;
  dates->addWidget(sspPanel5_);
  dates->addSpacing(8);
  dates->addWidget(sspFrom_);
  dates->addWidget(makeLabel(this, "", "~"));
  dates->addWidget(sspTo_);
  dates->addSpacing(8);
  dates->addWidget(cmdCalendar_);
  dates->addStretch();
  dates->addWidget(lbDelegate_);
  dates->addSpacing(16);
  dates->addWidget(lbNow_);
  return dates;
}

void UploadWindow::layOut() {
  auto* middle = new QHBoxLayout;
  middle->addWidget(boxes_, 1);
  middle->addWidget(fCalendar_);
  // The window keeps its size when the calendar is shown and hidden.
  boxes_->setMinimumHeight(fCalendar_->sizeHint().height());

  auto* ends = new QHBoxLayout;
  cmdStart_->setMinimumHeight(cmdStart_->sizeHint().height() * 3 / 2);
  cmdEnd_->setMinimumHeight(cmdStart_->minimumHeight());
  ends->addStretch();
  ends->addWidget(cmdStart_, 2);
  ends->addWidget(cmdEnd_, 1);

  auto* content = new QVBoxLayout;
  content->setContentsMargins(16, 14, 16, 14);
  content->setSpacing(12);
  content->addLayout(layOutDates());
  content->addLayout(middle, 1);
  content->addWidget(sspRem_);
  content->addWidget(bar_);
  content->addLayout(ends);

  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->setSpacing(0);
  whole->addWidget(sspPanel6_);
  whole->addLayout(content, 1);

  std::vector<QWidget*> tabs = {cmdCalendar_, monthView1_, sspFromB_,
                                sspToB_,      sspCurrent_, sspPanel9_};
  tabs.insert(tabs.end(), chk1_.begin(), chk1_.end());
  tabs.insert(tabs.end(), {ssCommand1_, ssCommand3_, cmdStart_, cmdEnd_});
  setTabs(tabs);
  cmdStart_->setFocus();
}

void UploadWindow::bind(FrmQuenbrook& form) {
  form_ = &form;
  const auto on = [&](Button* button, void (FrmQuenbrook::*handler)()) {
    connect(button, &QPushButton::clicked, this,
            application_.guarded([&form, handler] { (form.*handler)(); }));
  };
  on(cmdCalendar_, &FrmQuenbrook::cmdCalendar_Click);
  on(sspPanel9_, &FrmQuenbrook::SSPanel9_Click);
  on(sspFromB_, &FrmQuenbrook::sspFromB_Click);
  on(sspToB_, &FrmQuenbrook::sspToB_Click);
  on(sspCurrent_, &FrmQuenbrook::sspCurrent_Click);
  on(ssCommand1_, &FrmQuenbrook::SSCommand1_Click);
  on(ssCommand3_, &FrmQuenbrook::SSCommand3_Click);
  on(cmdStart_, &FrmQuenbrook::cmdStart_Click);
  on(cmdEnd_, &FrmQuenbrook::cmdEnd_Click);
  for (int index = 0; index < kBoxCount; ++index) {
    connect(chk1_.at(static_cast<std::size_t>(index)), &QCheckBox::toggled, this,
            [&form, index](bool ticked) { form.chk1_Click(index, ticked); });
  }
  const auto pick = [&form](const QDate& day) { form.MonthView1_DateClick(toDateTime(day)); };
  connect(monthView1_, &QCalendarWidget::clicked, this, pick);
  connect(monthView1_, &QCalendarWidget::activated, this, pick);
  connect(&timer1_, &QTimer::timeout, this, [&form] { form.Timer1_Timer(); });
}

void UploadWindow::setNow(const std::string& text) {
  lbNow_->setText(QString::fromStdString(text));
}

void UploadWindow::setDelegate(const std::string& text) {
  lbDelegate_->setText(QString::fromStdString(text));
}

void UploadWindow::setFrom(const std::string& text) {
  sspFrom_->setText(QString::fromStdString(text));
}

void UploadWindow::setTo(const std::string& text) { sspTo_->setText(QString::fromStdString(text)); }

// The keyboard focus moves into the calendar, and from it to the start button.
void UploadWindow::setCalendarVisible(bool visible) {
  fCalendar_->setVisible(visible);
  if (visible) {
    monthView1_->setFocus();
  } else {
    cmdStart_->setFocus();
  }
}

void UploadWindow::setCalendarDay(values::DateTime day) {
  monthView1_->setSelectedDate(toDate(day));
}

void UploadWindow::setTick(int index, bool ticked) {
  chk1_.at(static_cast<std::size_t>(index))->setChecked(ticked);
}

// Repainted at once, because a job does not process window events between its steps.
void UploadWindow::setProgress(const std::string& text) {
  sspRem_->setText(QString::fromStdString(text).remove('\r'));
  const auto percentage = progressPercentage(text);
  bar_->setVisible(percentage.has_value());
  bar_->setValue(static_cast<int>(percentage.value_or(0) * 10));
  sspRem_->repaint();
  bar_->repaint();
}

void UploadWindow::setJobRunning(bool running) {
  cmdStart_->setEnabled(!running);
  cmdEnd_->setEnabled(!running);
}

void UploadWindow::activated() {
  if (form_ != nullptr) form_->Form_Activate();
}

void UploadWindow::closeEvent(QCloseEvent* event) {
  if (form_ != nullptr && form_->jobRunning()) {
    event->ignore();
    return;
  }
  if (form_ != nullptr) form_->Form_Unload();
  application_.windowClosed();
  event->accept();
}

}  // namespace ui::qt
