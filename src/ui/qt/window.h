// What both windows share: how they stand on the screen, and what counts as their activation.
#pragma once

#include <QEvent>
#include <QWidget>
#include <vector>

namespace ui::qt {

class Window : public QWidget {
 protected:
  Window();

  // The window came to the front; the return from one of the program's own message boxes is none.
  virtual void activated() = 0;
  bool event(QEvent* event) override;

  void centreOnScreen();
  // The order in which the tab key visits them.
  static void setTabs(const std::vector<QWidget*>& widgets);

 private:
  bool leftForBox_ = false;
};

// The screen's mouse pointer: the hourglass, or the default.
void showHourglass(bool on);

}  // namespace ui::qt
