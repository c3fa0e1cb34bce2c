// The upload window's view in Qt: dates, calendar, check boxes, start, send and progress, connected
// to FrmQuenbrook's handlers.
//
//   UploadWindow view(application);
//   FrmQuenbrook form(start, clock, messages, driver, transfer, view);
//   view.bind(form);
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QTimer>
#include <array>

#include "ui/frm_quenbrook.h"
#include "ui/qt/application.h"
#include "ui/qt/controls.h"
#include "ui/qt/month_calendar.h"
#include "ui/qt/window.h"
#include "ui/upload_view.h"

namespace ui::qt {

class UploadWindow final : public Window, public UploadView {
 public:
  explicit UploadWindow(Application& application);

  // The form must outlive the window.
  void bind(FrmQuenbrook& form);

  void startTimer(std::chrono::milliseconds interval) override { timer1_.start(interval); }
  void setNow(const std::string& text) override;
  void setDelegate(const std::string& text) override;
  void setFrom(const std::string& text) override;
  void setTo(const std::string& text) override;
  void setCalendarVisible(bool visible) override;
  void setCalendarDay(values::DateTime day) override;
  void setRange(values::DateTime from, values::DateTime to) override;
  void setRangeReversed(bool reversed) override;
  void focusCalendar() override;
  void setTick(int index, bool ticked) override;
  void setProgress(const std::string& text) override;
  void setHourglass(bool on) override { showHourglass(on); }
  void setWork(Work work) override;
  void setVerdict(Verdict verdict, const std::string& text) override;
  void setWaiting(const std::string& text, bool sendable) override;
  void ask(const std::string& question) override;
  void centre() override { centreOnScreen(); }
  void yield() override { QCoreApplication::processEvents(); }
  void close() override { Window::close(); }

 protected:
  void activated() override;
  void applyFont() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void makeCalendar();
  void makeBoxes();
  void makeProgress();
  void nameControls();
  [[nodiscard]] QLayout* layOutDates();
  [[nodiscard]] QLayout* layOutEnds();
  void layOut();

  Application& application_;
  FrmQuenbrook* form_ = nullptr;
  QTimer timer1_;
  QTimer transferTimer_;
  QLabel* sspPanel6_;
  ElidedLabel* lbDelegate_;
  QLabel* lbNow_;
  QLabel* sspPanel5_;
  QLabel* sspFrom_;
  QLabel* sspTo_;
  Button* cmdCalendar_;
  QFrame* fCalendar_;
  MonthCalendar* monthView1_;
  Button* sspFromB_;
  Button* sspToB_;
  Button* sspCurrent_;
  Button* sspPanel9_;
  QGroupBox* boxes_;
  std::array<QCheckBox*, kBoxCount> chk1_{};
  Button* ssCommand1_;
  Button* ssCommand3_;
  QLabel* sspRem_;
  QProgressBar* bar_;
  QLabel* lbVerdict_;
  QLabel* lbWaiting_;
  Button* cmdStart_;
  Button* cmdSend_;
  Button* cmdEnd_;
  QPointer<QMessageBox> question_;
  QPointer<QWidget> focusBeforeWork_;
  bool sendable_ = false;
  Work work_ = Work::kNone;
};

}  // namespace ui::qt
