#include "ui/qt/message_box.h"

#include <QApplication>
#include <QScreen>

#include "ui/appearance.h"
#include "ui/qt/window.h"

namespace ui::qt {
namespace {

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

Area areaOf(const QRect& area) { return {area.left(), area.top(), area.width(), area.height()}; }

}  // namespace

void placeBesideParent(QMessageBox& box) {
  const QWidget* parent = box.parentWidget();
  if (parent == nullptr) return;
  box.setFont(parent->font());
  box.ensurePolished();
  box.adjustSize();
  // The box has no frame yet; its parent's is like it.
  const QSize frame = parent->frameGeometry().size() - parent->size();
  const Area place =
      placeBeside(areaOf(parent->frameGeometry()), areaOf(QRect(QPoint(), box.sizeHint() + frame)),
                  areaOf(parent->screen()->availableGeometry()));
  box.move(place.left, place.top);
}

void MessageBox::show(const platform::Message& message) noexcept {
  const bool waiting = QGuiApplication::overrideCursor() != nullptr;
  showHourglass(false);
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setIcon(iconOf(message.icon));
  box.setText(lines(message.prompt));
  box.setWindowTitle(QString::fromStdString(message.title.empty() ? kMessageTitle : message.title));
  box.addButton("확인", QMessageBox::AcceptRole);
  placeBesideParent(box);
  box.exec();
  showHourglass(waiting);
}

}  // namespace ui::qt
