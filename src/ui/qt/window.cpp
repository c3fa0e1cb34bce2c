#include "ui/qt/window.h"

#include <QApplication>
#include <QScreen>

namespace ui::qt {

Window::Window() {
  // Larger than the desktop's font: a till's screen is read standing, at arm's length.
  constexpr double kLarger = 1.15;
  QFont larger = font();
  larger.setPointSizeF(larger.pointSizeF() * kLarger);
  setFont(larger);
}

bool Window::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) {
    deactivatedByDialog_ = QApplication::activeModalWidget() != nullptr;
  } else if (event->type() == QEvent::WindowActivate && !deactivatedByDialog_) {
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
