// What both windows share: their place on the screen, and what counts as an activation.
#pragma once

#include <QEvent>
#include <QWidget>
#include <vector>

namespace ui::qt {

class Window : public QWidget {
 protected:
  Window();

  // The window became active. Not called on the return from the program's own message boxes.
  virtual void activated() = 0;
  bool event(QEvent* event) override;

  void centreOnScreen();
  // Sets the tab order.
  static void setTabs(const std::vector<QWidget*>& widgets);

 private:
  bool deactivatedByDialog_ = false;
};

// The screen's mouse pointer: the hourglass, or the default.
void showHourglass(bool on);

}  // namespace ui::qt
