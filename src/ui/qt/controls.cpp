#include "ui/qt/controls.h"

#include <QKeyEvent>

namespace ui::qt {

Button::Button(QWidget* parent, const char* name, const char* caption)
    : QPushButton(QString::fromUtf8(caption), parent) {
  setObjectName(name);
}

// Larger than the style's hint: a comfortable touch target.
QSize Button::sizeHint() const {
  const int letter = fontMetrics().height();
  return QPushButton::sizeHint() + QSize(letter, letter / 3);
}

void Button::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QPushButton::keyPressEvent(event);
}

QLabel* makeLabel(QWidget* parent, const char* name, const char* caption) {
  auto* label = new QLabel(QString::fromUtf8(caption), parent);
  label->setObjectName(name);
  return label;
}

QLabel* makePanel(QWidget* parent, const char* name, const char* caption) {
  auto* panel = makeLabel(parent, name, caption);
  panel->setTextFormat(Qt::PlainText);
  panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  panel->setAutoFillBackground(true);
  panel->setBackgroundRole(QPalette::Base);
  panel->setMargin(4);
  return panel;
}

QLabel* makeHeading(QWidget* parent, const char* name, const char* caption) {
  auto* heading = makeLabel(parent, name, caption);
  QPalette colours = heading->palette();
  colours.setColor(QPalette::Window, QColor(47, 72, 88));
  colours.setColor(QPalette::WindowText, Qt::white);
  heading->setPalette(colours);
  heading->setAutoFillBackground(true);
  heading->setMargin(10);
  enlarge(heading, 1.3);
  return heading;
}

void enlarge(QWidget* widget, double factor) {
  QFont font = widget->font();
  font.setPointSizeF(font.pointSizeF() * factor);
  font.setBold(true);
  widget->setFont(font);
}

}  // namespace ui::qt
