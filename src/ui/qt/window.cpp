#include "ui/qt/window.h"

#include <QApplication>
#include <QLayout>
#include <QScreen>

#include "ui/appearance.h"

namespace ui::qt {
namespace {

constexpr QSize kUsualFrame(8, 32);  // until the window manager has given the window its frame

}  // namespace

Window::Window() : desktopPointSize_(font().pointSizeF()) {
  QFont larger = font();
  larger.setPointSizeF(desktopPointSize_ * kLargestFont);
  setFont(larger);
}

bool Window::event(QEvent* event) {
  if (event->type() == QEvent::WindowDeactivate) {
    deactivatedByDialog_ = QApplication::activeModalWidget() != nullptr;
  } else if (event->type() == QEvent::WindowActivate && !deactivatedByDialog_) {
    activated();
    if (!placedWithFrame_) centreOnScreen();
    placedWithFrame_ = true;
  }
  return QWidget::event(event);
}

QSize Window::availableSize() const {
  const QSize frame = isVisible() ? frameGeometry().size() - size() : kUsualFrame;
  return screen()->availableSize() - frame;
}

// Layouts of a hidden window notice a change of font only when they are activated, innermost first.
void Window::updateLayouts() {
  const auto children = findChildren<QWidget*>();
  for (auto child = children.rbegin(); child != children.rend(); ++child) {
    (*child)->updateGeometry();
    if ((*child)->layout() != nullptr) (*child)->layout()->activate();
  }
  layout()->activate();
}

QSize Window::sizeInFont(double factor) {
  QFont changed = font();
  changed.setPointSizeF(desktopPointSize_ * factor);
  setFont(changed);
  updateLayouts();  // applyFont reads size hints
  applyFont();
  updateLayouts();
  return sizeHint();
}

void Window::centreOnScreen() {
  const QSize room = availableSize();
  const QSize wanted = fitInLargestFont([this](double factor) { return sizeInFont(factor); },
                                        [&](QSize size) { return size.boundedTo(room) == size; });
  resize(wanted.boundedTo(room));
  const QRect screenArea = screen()->geometry();
  const QRect available = screen()->availableGeometry();
  QRect frame(QPoint(), isVisible() ? frameGeometry().size() : size());
  frame.moveCenter(screenArea.center());
  frame.moveRight(std::min(frame.right(), available.right()));
  frame.moveBottom(std::min(frame.bottom(), available.bottom()));
  move(std::max(frame.left(), available.left()), std::max(frame.top(), available.top()));
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
