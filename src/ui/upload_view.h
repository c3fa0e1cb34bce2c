// The upload window as FrmQuenbrook sees it. A view shows what it is told and reports what was
// clicked; it contains no rules.
//
// Called on the window thread only. Nothing throws.
#pragma once

#include <chrono>
#include <string>

#include "values/date_time.h"

namespace ui {

constexpr int kBoxCount = 7;  // chk1, index 0 to 6

// What the form is busy with. A job works on a copy of dates and boxes, so those are disabled while
// it runs; during a transfer only the start and send buttons are.
enum class Work { kNone, kJob, kTransfer };

enum class Verdict { kNone, kPassed, kFailed };

class UploadView {
 public:
  virtual ~UploadView() = default;

  virtual void startTimer(std::chrono::milliseconds interval) = 0;        // Timer1
  virtual void setNow(const std::string& text) = 0;                       // lbNow
  virtual void setDelegate(const std::string& text) = 0;                  // lbDelegate
  virtual void setFrom(const std::string& text) = 0;                      // sspFrom
  virtual void setTo(const std::string& text) = 0;                        // sspTo
  virtual void setCalendarVisible(bool visible) = 0;                      // fCalendar
  virtual void setCalendarDay(values::DateTime day) = 0;                  // MonthView1
  virtual void setRange(values::DateTime from, values::DateTime to) = 0;  // its days in colour
  virtual void setRangeReversed(bool reversed) = 0;       // sspFrom and sspTo in red
  virtual void focusCalendar() = 0;                       // its button where it is hidden
  virtual void setTick(int index, bool ticked) = 0;       // chk1
  virtual void setProgress(const std::string& text) = 0;  // sspRem
  virtual void setHourglass(bool on) = 0;                 // the screen's mouse pointer

  // With kTransfer the view calls TransferTimer_Timer several times a second. kNone withdraws a
  // question that is still open and gives the keyboard focus back to the control that had it before
  // the work, or to cmdStart where that control is disabled.
  virtual void setWork(Work work) = 0;
  virtual void setVerdict(Verdict verdict, const std::string& text) = 0;  // how the work ended
  // `sendable` enables cmdSend while nothing runs.
  virtual void setWaiting(const std::string& text, bool sendable) = 0;
  // Shows a question with the answers yes and no, and returns at once. Yes calls closeWhenDone.
  virtual void ask(const std::string& question) = 0;

  virtual void centre() = 0;
  virtual void yield() = 0;  // processes pending window events
  virtual void close() = 0;  // unloads the window, which calls Form_Unload
};

// The view of an unattended run: captions of the progress panel are printed to standard output, one
// line each; everything else is ignored.
class HeadlessUploadView : public UploadView {
 public:
  void startTimer(std::chrono::milliseconds) override {}
  void setNow(const std::string&) override {}
  void setDelegate(const std::string&) override {}
  void setFrom(const std::string&) override {}
  void setTo(const std::string&) override {}
  void setCalendarVisible(bool) override {}
  void setCalendarDay(values::DateTime) override {}
  void setRange(values::DateTime, values::DateTime) override {}
  void setRangeReversed(bool) override {}
  void focusCalendar() override {}
  void setTick(int, bool) override {}
  void setProgress(const std::string& text) override;
  void setHourglass(bool) override {}
  void setWork(Work) override {}
  void setVerdict(Verdict, const std::string&) override {}
  void setWaiting(const std::string&, bool) override {}
  void ask(const std::string&) override {}
  void centre() override {}
  void yield() override {}
  void close() override {}
};

}  // namespace ui
