// The controls of both windows. `name` is the object name.
//
//   auto* start = makeButton(this, "cmdStart", ui::text::kStart);
//
// The parent owns each.
#pragma once

#include <QColor>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QString>

#include "ui/appearance.h"

namespace ui::qt {

// A push button that Enter presses as well as the space bar. The second click of a double click and
// the repeats of a held key do nothing.
class Button : public QPushButton {
 public:
  Button(QWidget* parent, const char* name, const char* caption);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
};

// A label that cuts its text with an ellipsis where there is no room for all of it.
class ElidedLabel : public QLabel {
 public:
  ElidedLabel(QWidget* parent, const char* name);

  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

[[nodiscard]] QLabel* makeLabel(QWidget* parent, const char* name, const char* caption);

// A label with a sunken frame: a value that cannot be edited.
[[nodiscard]] QLabel* makePanel(QWidget* parent, const char* name, const char* caption);

// A heading over the width of the window, light on dark.
[[nodiscard]] QLabel* makeHeading(QWidget* parent, const char* name, const char* caption);

[[nodiscard]] inline QColor toQt(Colour colour) { return {colour.red, colour.green, colour.blue}; }

// Bold, in `factor` times the font size of the widget's window.
void enlarge(QWidget* widget, double factor);

}  // namespace ui::qt
