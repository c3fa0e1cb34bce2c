// FrmQuenbrook: the upload window's state and event handlers, free of any toolkit.
//
//   FrmQuenbrook form(start, clock, messages, driver, view);
//   form.Form_Load();              // run mode T: the whole job, before it returns
//   return form.jobFailed() ? 1 : 0;
//
// Keeps references; the view calls the handlers and is told what to show. Two handlers may be
// entered while a job yields: the job is never started a second time, and cmdEnd does nothing.
// Errors: Form_Load throws 13 when the command line's dates are no dates; the other handlers and
// the job itself throw nothing.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "job/driver.h"
#include "platform/clock.h"
#include "platform/message_display.h"
#include "settings/start_values.h"
#include "ui/upload_view.h"
#include "values/date_time.h"

class FrmQuenbrook : private job::Window {
 public:
  FrmQuenbrook(const settings::StartValues& start, const platform::Clock& clock,
               platform::MessageDisplay& messages, job::Driver& driver, ui::UploadView& view);

  void Form_Load();
  void Form_Activate();
  void Form_Unload();
  void Timer1_Timer();
  void cmdCalendar_Click();
  void SSPanel9_Click();
  void MonthView1_DateClick(values::DateTime day);
  void sspFromB_Click();
  void sspToB_Click();
  void sspCurrent_Click();
  void chk1_Click(int index, bool ticked);
  void SSCommand1_Click();
  void SSCommand3_Click();
  void cmdStart_Click();
  void cmdEnd_Click();

  [[nodiscard]] bool loaded() const { return loaded_; }
  [[nodiscard]] bool jobRunning() const { return jobRunning_; }
  // Whether the latest job's trap was entered.
  [[nodiscard]] bool jobFailed() const { return jobFailed_; }

 private:
  void setCaption(std::string_view text) override;
  [[nodiscard]] std::string caption() const override { return sspRem_; }
  void yield() override { view_.yield(); }
  void setHourglass(bool on) override { view_.setHourglass(on); }

  [[nodiscard]] std::string today() const;
  void takeFrom(const std::string& text);
  void takeTo(const std::string& text);
  void tick(int index, bool ticked);
  [[nodiscard]] bool dayPicked();

  const settings::StartValues& start_;
  const platform::Clock& clock_;
  platform::MessageDisplay& messages_;
  job::Driver& driver_;
  ui::UploadView& view_;

  std::string sspRem_;
  std::string pickedDate_;  // "yyyy/MM/dd", empty before the first click
  values::DateTime fromDate_;
  values::DateTime toDate_;
  std::array<bool, ui::kBoxCount> chk1_{};
  bool loaded_ = false;
  bool jobRunning_ = false;
  bool jobFailed_ = false;
};
