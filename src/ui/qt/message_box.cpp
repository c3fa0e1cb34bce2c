#include "ui/qt/message_box.h"

#include <QApplication>
#include <QMessageBox>

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

}  // namespace

void MessageBox::show(const platform::Message& message) noexcept {
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setIcon(iconOf(message.icon));
  box.setText(lines(message.prompt));
  box.setWindowTitle(QString::fromStdString(message.title.empty() ? kDefaultTitle : message.title));
  box.addButton("확인", QMessageBox::AcceptRole);
  box.exec();
}

}  // namespace ui::qt
