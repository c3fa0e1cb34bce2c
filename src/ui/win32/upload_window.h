// The upload window's view with the system's controls, connected to FrmQuenbrook's handlers.
//
//   UploadWindow view(application);
//   FrmQuenbrook form(start, clock, messages, driver, transfer, view);
//   view.bind(form);
#pragma once

#include <array>
#include <string>
#include <vector>

#include "ui/frm_quenbrook.h"
#include "ui/upload_view.h"
#include "ui/win32/month_calendar.h"
#include "ui/win32/question_window.h"
#include "ui/win32/window.h"

namespace ui::win32 {

class UploadWindow final : public Window, public UploadView {
 public:
  explicit UploadWindow(Application& application);

  // The form must outlive the window.
  void bind(FrmQuenbrook& form) { form_ = &form; }
  void show() { Window::show(); }

  void startTimer(std::chrono::milliseconds interval) override;
  void setNow(const std::string& text) override { setText(lbNow_, text); }
  void setDelegate(const std::string& text) override;
  void setFrom(const std::string& text) override;
  void setTo(const std::string& text) override;
  void setCalendarVisible(bool visible) override;
  void setCalendarDay(values::DateTime day) override { monthView1_.setDay(day); }
  void setRange(values::DateTime from, values::DateTime to) override;
  void setRangeReversed(bool reversed) override;
  void focusCalendar() override;
  void setTick(int index, bool ticked) override;
  void setProgress(const std::string& text) override;
  void setHourglass(bool on) override { application_.setHourglass(on); }
  void setWork(Work work) override;
  void setVerdict(Verdict verdict, const std::string& text) override;
  void setWaiting(const std::string& text, bool sendable) override;
  void ask(const std::string& question) override;
  void centre() override { centreOnScreen(); }
  void yield() override { application_.yield(); }
  void close() override { Window::close(); }

 protected:
  void activated() override;
  bool closing() override;
  void pressed(int control) override;
  void entered(int control) override;
  void escaped() override;
  void ticked(UINT_PTR timer) override;
  void notified(const NMHDR& notice) override;
  void draw(const DRAWITEMSTRUCT& item) override;
  [[nodiscard]] std::optional<Colours> coloursOf(HWND control) const override;
  void applyFonts() override;
  [[nodiscard]] Layout layout() override;

 private:
  void setPanel(HWND panel, const std::string& text);
  [[nodiscard]] bool calendarVisible() const;
  void showTransfer(bool running);
  void giveBackFocus();
  [[nodiscard]] Layout datesLayout();
  [[nodiscard]] Layout boxesLayout();
  [[nodiscard]] Layout calendarLayout();
  [[nodiscard]] Layout endsLayout();

  FrmQuenbrook* form_ = nullptr;
  // In the order of the Tab key.
  HWND ssPanel6_;
  HWND ssPanel5_;
  HWND sspFrom_;
  HWND tilde_;
  HWND sspTo_;
  HWND cmdCalendar_;
  HWND lbDelegate_;
  HWND lbNow_;
  HWND fCalendar_;
  MonthCalendar monthView1_;
  HWND sspFromB_;
  HWND sspToB_;
  HWND sspCurrent_;
  HWND sspPanel9_;
  HWND boxes_;
  std::array<HWND, kBoxCount> chk1_{};
  HWND ssCommand1_ = nullptr;
  HWND ssCommand3_ = nullptr;
  HWND sspRem_ = nullptr;
  HWND bar_ = nullptr;
  HWND lbVerdict_ = nullptr;
  HWND lbWaiting_ = nullptr;
  HWND cmdSend_ = nullptr;
  HWND cmdStart_ = nullptr;
  HWND cmdEnd_ = nullptr;
  QuestionWindow question_;
  HWND focusBeforeWork_ = nullptr;
  Verdict verdict_ = Verdict::kNone;
  Work work_ = Work::kNone;
  bool reversed_ = false;
  bool sendable_ = false;
};

}  // namespace ui::win32
