#include "ui/qt/window.h"

#include <QApplication>
#include <QScreen>

namespace ui::qt {

Window::Window() {
  // Read at arm's length, standing: somewhat larger than a desk's programs.
  constexpr double kLarger = 1.15;
  QFont larger = font();
  larger.setPointSizeF(larger.pointSizeF() * kLarger);
  setFont(larger);
}

bool Window::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) {
    leftForBox_ = QApplication::activeModalWidget() != nullptr;
  } else if (event->type() == QEvent::WindowActivate && !leftForBox_) {
    activated();
  }
  return QWidget::event(event);
}

void Window::centreOnScreen() {
  adjustSize();
  const QRect area = screen()->geometry();
  move(area.left() + (area.width() - width()) / 2, area.top() + (area.height() - height()) / 2);
}

void Window::setTabs(const std::vector<QWidget*>& widgets) {
  for (std::size_t i = 1; i < widgets.size(); ++i) setTabOrder(widgets[i - 1], widgets[i]);
}

void showHourglass(bool on) {
  if (on == (QGuiApplication::overrideCursor() != nullptr)) return;
  if (on) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QGuiApplication::restoreOverrideCursor();
  }
}

}  // namespace ui::qt
