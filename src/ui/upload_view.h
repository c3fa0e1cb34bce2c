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

class UploadView {
 public:
  virtual ~UploadView() = default;

  virtual void startTimer(std::chrono::milliseconds interval) = 0;  // Timer1
  virtual void setNow(const std::string& text) = 0;                 // lbNow
  virtual void setDelegate(const std::string& text) = 0;            // lbDelegate
  virtual void setFrom(const std::string& text) = 0;                // sspFrom
  virtual void setTo(const std::string& text) = 0;                  // sspTo
  virtual void setCalendarVisible(bool visible) = 0;                // fCalendar
  virtual void setCalendarDay(values::DateTime day) = 0;            // MonthView1
  virtual void setTick(int index, bool ticked) = 0;                 // chk1
  virtual void setProgress(const std::string& text) = 0;            // sspRem
  virtual void setHourglass(bool on) = 0;                           // the screen's mouse pointer

  // True from the start of a job to its end: no second start is taken meanwhile, and the window is
  // not closed.
  virtual void setJobRunning(bool running) = 0;

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
  void setTick(int, bool) override {}
  void setProgress(const std::string& text) override;
  void setHourglass(bool) override {}
  void setJobRunning(bool) override {}
  void centre() override {}
  void yield() override {}
  void close() override {}
};

}  // namespace ui
