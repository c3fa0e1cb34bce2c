#include "ui/qt/message_box.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>

#include "ui/qt/window.h"

namespace ui::qt {
namespace {

constexpr const char* kDefaultTitle = "Quenbrook";

QMessageBox::Icon iconOf(platform::Icon icon) {
  switch (icon) {
    case platform::Icon::kCritical:
      return QMessageBox::Critical;
    case platform::Icon::kInformation:
      return QMessageBox::Information;
    case platform::Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QString lines(const std::string& prompt) {
  QString text = QString::fromStdString(prompt);
  return text.replace("\r\n", "\n").replace('\r', '\n');
}

// Beside the window rather than over it: below, above, to the right, to the left, wherever there is
// room on the screen. Without room the box lies over the window's lower edge, where its buttons
// are.
QPoint placeBeside(const QRect& window, const QSize& box, const QRect& screen) {
  const int centredX = window.center().x() - box.width() / 2;
  const int centredY = window.center().y() - box.height() / 2;
  const QPoint places[] = {{centredX, window.bottom() + 1},
                           {centredX, window.top() - box.height()},
                           {window.right() + 1, centredY},
                           {window.left() - box.width(), centredY}};
  for (const QPoint& place : places) {
    if (screen.contains(QRect(place, box))) return place;
  }
  return {std::max(screen.left(), std::min(centredX, screen.right() - box.width())),
          std::max(screen.top(), screen.bottom() - box.height())};
}

}  // namespace

void placeBesideParent(QMessageBox& box) {
  const QWidget* parent = box.parentWidget();
  if (parent == nullptr) return;
  box.setFont(parent->font());
  box.ensurePolished();
  box.adjustSize();
  // The box has no frame yet; its parent's is like it.
  const QSize frame = parent->frameGeometry().size() - parent->size();
  box.move(placeBeside(parent->frameGeometry(), box.sizeHint() + frame,
                       parent->screen()->availableGeometry()));
}

void MessageBox::show(const platform::Message& message) noexcept {
  const bool waiting = QGuiApplication::overrideCursor() != nullptr;
  showHourglass(false);
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setIcon(iconOf(message.icon));
  box.setText(lines(message.prompt));
  box.setWindowTitle(QString::fromStdString(message.title.empty() ? kDefaultTitle : message.title));
  box.addButton("확인", QMessageBox::AcceptRole);
  placeBesideParent(box);
  box.exec();
  showHourglass(waiting);
}

}  // namespace ui::qt
