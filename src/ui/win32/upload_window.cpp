#include "ui/win32/upload_window.h"

#include <algorithm>
#include <utility>

#include "ui/progress_percentage.h"
#include "ui/upload_texts.h"
#include "ui/win32/upload_controls.h"

namespace ui::win32 {
namespace {

constexpr UINT_PTR kTimer1 = 1;
constexpr UINT_PTR kTransferTimer = 2;
constexpr int kMarqueeStep = 30;  // milliseconds

constexpr std::pair<int, void (FrmQuenbrook::*)()> kClicks[] = {
    {kCmdCalendar, &FrmQuenbrook::cmdCalendar_Click},
    {kSSPanel9, &FrmQuenbrook::SSPanel9_Click},
    {kSspFromB, &FrmQuenbrook::sspFromB_Click},
    {kSspToB, &FrmQuenbrook::sspToB_Click},
    {kSspCurrent, &FrmQuenbrook::sspCurrent_Click},
    {kSSCommand1, &FrmQuenbrook::SSCommand1_Click},
    {kSSCommand3, &FrmQuenbrook::SSCommand3_Click},
    {kCmdStart, &FrmQuenbrook::cmdStart_Click},
    {kCmdSend, &FrmQuenbrook::cmdSend_Click},
    {kCmdEnd, &FrmQuenbrook::cmdEnd_Click},
};

bool isTicked(HWND box) { return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED; }

}  // namespace

void UploadWindow::startTimer(std::chrono::milliseconds interval) {
  SetTimer(handle(), kTimer1, static_cast<UINT>(interval.count()), nullptr);
}

void UploadWindow::setDelegate(const std::string& text) {
  setText(lbDelegate_, text);
  setHint(lbDelegate_, text);
}

void UploadWindow::setFrom(const std::string& text) { setPanel(sspFrom_, text); }

void UploadWindow::setTo(const std::string& text) { setPanel(sspTo_, text); }

// Repainted at once, because a job does not process window events between its steps.
void UploadWindow::setPanel(HWND panel, const std::string& text) {
  setText(panel, text);
  repaint(panel);
}

// The keyboard focus moves into the calendar, and from it to the start button.
void UploadWindow::setCalendarVisible(bool visible) {
  for (HWND control :
       {fCalendar_, monthView1_.control(), sspFromB_, sspToB_, sspCurrent_, sspPanel9_}) {
    ShowWindow(control, visible ? SW_SHOWNA : SW_HIDE);
  }
  if (visible) {
    focusCalendar();
  } else {
    focus(cmdStart_);
  }
}

bool UploadWindow::calendarVisible() const {
  return (GetWindowLongW(fCalendar_, GWL_STYLE) & WS_VISIBLE) != 0;
}

void UploadWindow::setRange(values::DateTime from, values::DateTime to) {
  monthView1_.setRange(from, to);
}

void UploadWindow::setRangeReversed(bool reversed) {
  reversed_ = reversed;
  for (HWND day : {sspFrom_, sspTo_}) repaint(day);
}

void UploadWindow::focusCalendar() {
  focus(calendarVisible() ? monthView1_.control() : cmdCalendar_);
}

void UploadWindow::setTick(int index, bool ticked) {
  SendMessageW(chk1_.at(static_cast<std::size_t>(index)), BM_SETCHECK,
               ticked ? BST_CHECKED : BST_UNCHECKED, 0);
}

void UploadWindow::setProgress(const std::string& text) {
  std::string shown = text;
  std::erase(shown, '\r');
  setPanel(sspRem_, shown);
  const auto percentage = progressPercentage(text);
  ShowWindow(bar_, percentage.has_value() || work_ == Work::kTransfer ? SW_SHOWNA : SW_HIDE);
  const auto steps = static_cast<int>(percentage.value_or(0) * kBarSteps / 100);
  SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(steps), 0);
  repaint(bar_);
}

void UploadWindow::setWork(Work work) {
  if (work != Work::kNone) focusBeforeWork_ = focused();
  work_ = work;
  const bool idle = work == Work::kNone;
  std::vector<HWND> inputs = {cmdCalendar_, monthView1_.control(), sspFromB_,  sspToB_, sspCurrent_,
                              sspPanel9_,   ssCommand1_,           ssCommand3_};
  inputs.insert(inputs.end(), chk1_.begin(), chk1_.end());
  for (HWND input : inputs) EnableWindow(input, work != Work::kJob);
  EnableWindow(cmdStart_, idle);
  EnableWindow(cmdSend_, idle && sendable_);
  showTransfer(work == Work::kTransfer);
  if (idle) giveBackFocus();
}

// How far a transfer has come is not known: the bar then only moves.
void UploadWindow::showTransfer(bool running) {
  const LONG style = GetWindowLongW(bar_, GWL_STYLE) & ~PBS_MARQUEE;
  SetWindowLongW(bar_, GWL_STYLE, running ? style | PBS_MARQUEE : style);
  SendMessageW(bar_, PBM_SETMARQUEE, running, kMarqueeStep);
  ShowWindow(bar_, running ? SW_SHOWNA : SW_HIDE);
  if (running) {
    SetTimer(handle(), kTransferTimer, static_cast<UINT>(kTransferPoll.count()), nullptr);
  } else {
    KillTimer(handle(), kTransferTimer);
  }
}

void UploadWindow::giveBackFocus() {
  if (question_.open()) question_.withdraw();
  const bool available = focusBeforeWork_ != nullptr && IsWindowEnabled(focusBeforeWork_);
  focus(available ? focusBeforeWork_ : cmdStart_);
}

void UploadWindow::setVerdict(Verdict verdict, const std::string& text) {
  verdict_ = verdict;
  setText(lbVerdict_, text);
  setHint(lbVerdict_, text);  // whole, where the text has more lines
  repaint(lbVerdict_);
}

void UploadWindow::setWaiting(const std::string& text, bool sendable) {
  setText(lbWaiting_, text);
  sendable_ = sendable;
  EnableWindow(cmdSend_, sendable && work_ == Work::kNone);
}

void UploadWindow::ask(const std::string& question) {
  question_.ask(question, [this] { form_->closeWhenDone(); });
}

void UploadWindow::activated() {
  if (form_ != nullptr) form_->Form_Activate();
}

bool UploadWindow::closing() {
  if (form_ != nullptr) {
    if (!form_->Form_QueryUnload()) return false;
    form_->Form_Unload();
  }
  application_.windowClosed();
  return true;
}

void UploadWindow::pressed(int control) {
  if (control >= kChk1) {
    const int index = control - kChk1;
    form_->chk1_Click(index, isTicked(chk1_.at(static_cast<std::size_t>(index))));
    return;
  }
  for (const auto& [button, handler] : kClicks) {
    if (control == button) (form_->*handler)();
  }
}

// The selected day can be picked without moving to it.
void UploadWindow::entered(int control) {
  if (control == kMonthView1) form_->MonthView1_DateClick(monthView1_.day());
}

void UploadWindow::escaped() {
  if (calendarVisible() && work_ != Work::kJob) form_->SSPanel9_Click();
}

void UploadWindow::ticked(UINT_PTR timer) {
  if (timer == kTimer1) form_->Timer1_Timer();
  if (timer == kTransferTimer) form_->TransferTimer_Timer();
}

void UploadWindow::notified(const NMHDR& notice) {
  if (form_ == nullptr || notice.idFrom != kMonthView1) return;
  if (const auto day = monthView1_.picked(notice)) form_->MonthView1_DateClick(*day);
}

void UploadWindow::draw(const DRAWITEMSTRUCT& item) {
  const bool day = item.hwndItem != sspRem_;
  drawPanel(item, day && reversed_ ? toSystem(kFailedText) : GetSysColor(COLOR_WINDOWTEXT),
            day ? DT_CENTER | DT_VCENTER | DT_SINGLELINE : DT_WORDBREAK);
}

std::optional<Colours> UploadWindow::coloursOf(HWND control) const {
  if (control == ssPanel6_) return kHeadingColours;
  if (control != lbVerdict_ || verdict_ == Verdict::kNone) return {};
  return Colours{toSystem(verdict_ == Verdict::kFailed ? kFailedText : kPassedText),
                 GetSysColor(COLOR_BTNFACE)};
}

}  // namespace ui::win32
