// What both windows share: their size and place on the screen, and what counts as an activation.
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
  // The window's font changed: sizes and fonts that are computed from it are set again.
  virtual void applyFont() = 0;
  bool event(QEvent* event) override;

  // Gives the window its size hint, in the largest font in which it fits into the available screen,
  // and centres it, frame included. The frame is known from the first activation on, so the window
  // is placed a second time then.
  void centreOnScreen();
  // Sets the tab order.
  static void setTabs(const std::vector<QWidget*>& widgets);

 private:
  [[nodiscard]] QSize availableSize() const;
  void updateLayouts();
  // The size hint after the font was set to `factor` times the desktop's.
  [[nodiscard]] QSize sizeInFont(double factor);

  double desktopPointSize_;
  bool deactivatedByDialog_ = false;
  bool placedWithFrame_ = false;
};

// The screen's mouse pointer: the hourglass, or the default.
void showHourglass(bool on);

}  // namespace ui::qt
