#include "ui/qt/controls.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace ui::qt {

Button::Button(QWidget* parent, const char* name, const char* caption)
    : QPushButton(QString::fromUtf8(caption), parent) {
  setObjectName(name);
}

// Of the font alone: the style's least width would not fit on a small screen. Higher than the
// style's hint: a comfortable touch target.
QSize Button::sizeHint() const {
  const int letter = fontMetrics().height();
  return fontMetrics().size(Qt::TextShowMnemonic, text()) + QSize(letter * 2, letter);
}

void Button::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (!event->isAutoRepeat()) click();
    return;
  }
  QPushButton::keyPressEvent(event);
}

void Button::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }

ElidedLabel::ElidedLabel(QWidget* parent, const char* name) : QLabel(parent) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().horizontalAdvance(QString(kGroupLetters, 'M')), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.drawText(contentsRect(), static_cast<int>(alignment()),
                   fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
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
  return panel;
}

QLabel* makeHeading(QWidget* parent, const char* name, const char* caption) {
  auto* heading = makeLabel(parent, name, caption);
  QPalette colours = heading->palette();
  colours.setColor(QPalette::Window, toQt(kHeadingGround));
  colours.setColor(QPalette::WindowText, toQt(kHeadingText));
  heading->setPalette(colours);
  heading->setAutoFillBackground(true);
  return heading;
}

void enlarge(QWidget* widget, double factor) {
  QFont font = widget->window()->font();
  font.setPointSizeF(font.pointSizeF() * factor);
  font.setBold(true);
  widget->setFont(font);
}

}  // namespace ui::qt
