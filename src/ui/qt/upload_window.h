// The upload window's view in Qt: dates, calendar, check boxes, start and progress, connected to
// FrmQuenbrook's handlers.
//
//   UploadWindow view(application);
//   FrmQuenbrook form(start, clock, messages, driver, view);
//   view.bind(form);
#pragma once

#include <QCalendarWidget>
#include <QCheckBox>
#include <QGroupBox>
#include <QProgressBar>
#include <QTimer>
#include <array>

#include "ui/frm_quenbrook.h"
#include "ui/qt/application.h"
#include "ui/qt/controls.h"
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
  void setTick(int index, bool ticked) override;
  void setProgress(const std::string& text) override;
  void setHourglass(bool on) override { showHourglass(on); }
  void setJobRunning(bool running) override;
  void centre() override { centreOnScreen(); }
  void yield() override { QCoreApplication::processEvents(); }
  void close() override { Window::close(); }

 protected:
  void activated() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void makeCalendar();
  void makeBoxes();
  void makeProgress();
  [[nodiscard]] QLayout* layOutDates();
  void layOut();

  Application& application_;
  FrmQuenbrook* form_ = nullptr;
  QTimer timer1_;
  QLabel* sspPanel6_;
  QLabel* lbDelegate_;
  QLabel* lbNow_;
  QLabel* sspPanel5_;
  QLabel* sspFrom_;
  QLabel* sspTo_;
  Button* cmdCalendar_;
  QFrame* fCalendar_;
  QCalendarWidget* monthView1_;
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
  Button* cmdStart_;
  Button* cmdEnd_;
};

}  // namespace ui::qt
