// FrmQuenbrook: the upload window's state and event handlers, independent of any toolkit.
//
//   FrmQuenbrook form(start, clock, messages, driver, transfer, view);
//   form.Form_Load();              // in run mode T the whole job runs before it returns
//   return form.jobFailed() ? 1 : 0;
//
// Keeps references. The view calls the handlers, and the handlers tell the view what to show. A job
// runs inside cmdStart_Click and yields to the message loop, so handlers are entered again; a
// transfer runs in the background. While either runs no second one is started, and the window asks
// before it closes.
// Errors: Form_Load throws 13 when a date of the command line is not a date; the other handlers and
// the job itself throw nothing.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "job/driver.h"
#include "platform/clock.h"
#include "platform/message_display.h"
#include "settings/start_values.h"
#include "ui/background_transfer.h"
#include "ui/upload_view.h"
#include "values/date_time.h"

class FrmQuenbrook : private job::Window {
 public:
  FrmQuenbrook(const settings::StartValues& start, const platform::Clock& clock,
               platform::MessageDisplay& messages, job::Driver& driver,
               ui::BackgroundTransfer& transfer, ui::UploadView& view);

  void Form_Load();
  void Form_Activate();
  // Whether the window may close. While something runs it asks the operator instead.
  [[nodiscard]] bool Form_QueryUnload();
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
  void cmdSend_Click();
  void TransferTimer_Timer();
  // The window closes as soon as what runs has ended well; after a failure it stays.
  void closeWhenDone();
  void cmdEnd_Click();

  [[nodiscard]] bool loaded() const { return loaded_; }
  // Of the latest job; passed before the first.
  [[nodiscard]] const job::JobVerdict& verdict() const { return verdict_; }
  [[nodiscard]] bool jobFailed() const { return !verdict_.passed(); }

 private:
  void setCaption(std::string_view text) override;
  [[nodiscard]] std::string caption() const override { return sspRem_; }
  void yield() override { view_.yield(); }
  void setHourglass(bool on) override { view_.setHourglass(on); }

  [[nodiscard]] std::string jobLogName() const;
  [[nodiscard]] std::string today() const;
  void begin(ui::Work work);
  void end(ui::Verdict verdict, const std::string& text);
  void showRange();
  void showWaiting();
  void showWarnings();
  void setFromDate(const std::string& text);
  void setToDate(const std::string& text);
  void tick(int index, bool ticked);
  // False, after a message, when no date was picked yet.
  [[nodiscard]] bool requirePickedDate();

  const settings::StartValues& start_;
  const platform::Clock& clock_;
  platform::MessageDisplay& messages_;
  job::Driver& driver_;
  ui::BackgroundTransfer& transfer_;
  ui::UploadView& view_;

  std::string sspRem_;
  std::string transferError_;  // the first line of the running transfer's standard error
  std::string pickedDate_;     // "yyyy/MM/dd", empty before the first click
  values::DateTime fromDate_;
  values::DateTime toDate_;
  std::array<bool, ui::kBoxCount> chk1_{};
  bool loaded_ = false;
  job::JobVerdict verdict_;
  ui::Work work_ = ui::Work::kNone;
  bool closeWhenDone_ = false;
};
