#include "ui/qt/upload_window.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QShortcut>

#include "ui/appearance.h"
#include "ui/progress_percentage.h"
#include "ui/qt/message_box.h"
#include "ui/upload_texts.h"

namespace ui::qt {
namespace {

values::DateTime toDateTime(const QDate& day) {
  return values::toDateTime({day.year(), day.month(), day.day()});
}

QDate toDate(values::DateTime day) {
  const auto civil = values::toCivil(day);
  return {civil.year, civil.month, civil.day};
}

void setTextColour(QWidget* widget, const QColor& colour) {
  QPalette colours = widget->palette();
  colours.setColor(widget->foregroundRole(), colour);
  widget->setPalette(colours);
}

// A screen reader reads the name and the value.
void showValue(QLabel* label, const char* name, const std::string& text) {
  label->setText(QString::fromStdString(text));
  label->setAccessibleName(QString(name) + " " + label->text());
}

}  // namespace

void UploadWindow::bind(FrmQuenbrook& form) {
  form_ = &form;
  const auto on = [&](auto* sender, auto signal, void (FrmQuenbrook::*handler)()) {
    connect(sender, signal, this, application_.guarded([&form, handler] { (form.*handler)(); }));
  };
  const std::pair<Button*, void (FrmQuenbrook::*)()> clicks[] = {
      {cmdCalendar_, &FrmQuenbrook::cmdCalendar_Click},
      {sspPanel9_, &FrmQuenbrook::SSPanel9_Click},
      {sspFromB_, &FrmQuenbrook::sspFromB_Click},
      {sspToB_, &FrmQuenbrook::sspToB_Click},
      {sspCurrent_, &FrmQuenbrook::sspCurrent_Click},
      {ssCommand1_, &FrmQuenbrook::SSCommand1_Click},
      {ssCommand3_, &FrmQuenbrook::SSCommand3_Click},
      {cmdStart_, &FrmQuenbrook::cmdStart_Click},
      {cmdSend_, &FrmQuenbrook::cmdSend_Click},
      {cmdEnd_, &FrmQuenbrook::cmdEnd_Click}};
  for (const auto& [button, handler] : clicks) on(button, &QPushButton::clicked, handler);
  on(&timer1_, &QTimer::timeout, &FrmQuenbrook::Timer1_Timer);
  on(&transferTimer_, &QTimer::timeout, &FrmQuenbrook::TransferTimer_Timer);
  on(new QShortcut(Qt::Key_Escape, fCalendar_, nullptr, nullptr, Qt::WindowShortcut),
     &QShortcut::activated, &FrmQuenbrook::SSPanel9_Click);
  for (int index = 0; index < kBoxCount; ++index) {
    connect(chk1_.at(static_cast<std::size_t>(index)), &QCheckBox::toggled, this,
            [&form, index](bool ticked) { form.chk1_Click(index, ticked); });
  }
  monthView1_->onPick([&form](QDate day) { form.MonthView1_DateClick(toDateTime(day)); });
}

void UploadWindow::setNow(const std::string& text) { showValue(lbNow_, text::kNowName, text); }

void UploadWindow::setDelegate(const std::string& text) {
  showValue(lbDelegate_, text::kGroupName, text);
  lbDelegate_->setToolTip(lbDelegate_->text());
}

void UploadWindow::setFrom(const std::string& text) { showValue(sspFrom_, text::kFromName, text); }

void UploadWindow::setTo(const std::string& text) { showValue(sspTo_, text::kToName, text); }

// The keyboard focus moves into the calendar, and from it to the start button.
void UploadWindow::setCalendarVisible(bool visible) {
  fCalendar_->setVisible(visible);
  if (visible) {
    focusCalendar();
  } else {
    cmdStart_->setFocus();
  }
}

void UploadWindow::setCalendarDay(values::DateTime day) { monthView1_->setDay(toDate(day)); }

void UploadWindow::setRange(values::DateTime from, values::DateTime to) {
  monthView1_->setRange(toDate(from), toDate(to));
}

void UploadWindow::setRangeReversed(bool reversed) {
  for (auto* day : {sspFrom_, sspTo_}) {
    setTextColour(day, reversed ? toQt(kFailedText) : palette().color(day->foregroundRole()));
  }
}

void UploadWindow::focusCalendar() {
  if (fCalendar_->isVisible()) {
    monthView1_->days()->setFocus();
  } else {
    cmdCalendar_->setFocus();
  }
}

void UploadWindow::setTick(int index, bool ticked) {
  chk1_.at(static_cast<std::size_t>(index))->setChecked(ticked);
}

// Repainted at once, because a job does not process window events between its steps.
void UploadWindow::setProgress(const std::string& text) {
  showValue(sspRem_, text::kStatusName, text);
  sspRem_->setText(sspRem_->text().remove('\r'));
  const auto percentage = progressPercentage(text);
  bar_->setVisible(percentage.has_value() || work_ == Work::kTransfer);
  bar_->setValue(static_cast<int>(percentage.value_or(0) * kBarSteps / 100));
  sspRem_->repaint();
  bar_->repaint();
}

void UploadWindow::setWork(Work work) {
  if (work != Work::kNone) focusBeforeWork_ = focusWidget();
  work_ = work;
  const bool idle = work == Work::kNone;
  for (QWidget* input : std::initializer_list<QWidget*>{cmdCalendar_, fCalendar_, boxes_}) {
    input->setEnabled(work != Work::kJob);
  }
  cmdStart_->setEnabled(idle);
  cmdSend_->setEnabled(idle && sendable_);
  // How far a transfer has come is not known: the bar then only moves.
  bar_->setRange(0, work == Work::kTransfer ? 0 : kBarSteps);
  bar_->setVisible(work == Work::kTransfer);
  if (work == Work::kTransfer) {
    transferTimer_.start(kTransferPoll);
  } else {
    transferTimer_.stop();
  }
  if (!idle) return;
  if (question_ != nullptr) question_->close();
  // Not cmdEnd, to which Qt moves the focus of a disabled button.
  const bool available = focusBeforeWork_ != nullptr && focusBeforeWork_->isEnabled();
  (available ? focusBeforeWork_.data() : cmdStart_)->setFocus();
}

void UploadWindow::setVerdict(Verdict verdict, const std::string& text) {
  const QColor neutral = palette().color(lbVerdict_->foregroundRole());
  const QColor passedOrNone = verdict == Verdict::kPassed ? toQt(kPassedText) : neutral;
  setTextColour(lbVerdict_, verdict == Verdict::kFailed ? toQt(kFailedText) : passedOrNone);
  lbVerdict_->setText(QString::fromStdString(text));
  lbVerdict_->setToolTip(lbVerdict_->text());  // whole, where the text has more lines
}

void UploadWindow::setWaiting(const std::string& text, bool sendable) {
  lbWaiting_->setText(QString::fromStdString(text));
  sendable_ = sendable;
  cmdSend_->setEnabled(sendable && work_ == Work::kNone);
}

// Not modal in the sense of a nested event loop: a running job would stand still until the answer.
void UploadWindow::ask(const std::string& question) {
  if (question_ != nullptr) return question_->raise();
  question_ = new QMessageBox(this);
  question_->setAttribute(Qt::WA_DeleteOnClose);
  question_->setWindowTitle(windowTitle());
  question_->setTextFormat(Qt::PlainText);
  question_->setText(QString::fromStdString(question));
  auto* yes = question_->addButton(text::kYes, QMessageBox::YesRole);
  auto* no = question_->addButton(text::kNo, QMessageBox::NoRole);
  question_->setDefaultButton(no);
  question_->setEscapeButton(no);
  connect(yes, &QPushButton::clicked, this, [this] { form_->closeWhenDone(); });
  placeBesideParent(*question_);
  question_->open();
}

void UploadWindow::activated() {
  if (form_ != nullptr) form_->Form_Activate();
}

void UploadWindow::closeEvent(QCloseEvent* event) {
  if (form_ != nullptr) {
    if (!form_->Form_QueryUnload()) return event->ignore();
    form_->Form_Unload();
  }
  application_.windowClosed();
  event->accept();
}

}  // namespace ui::qt
