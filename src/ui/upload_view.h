// What a window must be able to do to be the upload window's face. It shows what it is told and
// reports what was clicked to FrmQuenbrook; it knows no rule.
//
// Calls come on the window thread only. None throws.
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
  virtual void yield() = 0;  // handles what waits in the message loop, then returns
  virtual void close() = 0;  // unloads the window, which reports Form_Unload
};

// The face of an unattended run: there is none. Captions of the progress panel go to standard
// output, a line each.
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
