// The controls of both windows. `name` is the object name.
//
//   auto* start = makeButton(this, "cmdStart", ui::text::kStart);
//
// The parent owns each.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QString>

namespace ui::qt {

// A push button that Enter presses as well as the space bar.
class Button : public QPushButton {
 public:
  Button(QWidget* parent, const char* name, const char* caption);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

[[nodiscard]] QLabel* makeLabel(QWidget* parent, const char* name, const char* caption);

// A label with a sunken frame: a value that cannot be edited.
[[nodiscard]] QLabel* makePanel(QWidget* parent, const char* name, const char* caption);

// A heading over the width of the window, light on dark.
[[nodiscard]] QLabel* makeHeading(QWidget* parent, const char* name, const char* caption);

void enlarge(QWidget* widget, double factor);

}  // namespace ui::qt
