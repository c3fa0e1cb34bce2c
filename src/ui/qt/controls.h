// The controls that the windows are made of, under their names.
//
//   auto* start = makeButton(this, "cmdStart", ui::text::kStart);
//
// Each belongs to its parent.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QString>

namespace ui::qt {

// A button that Enter presses as well as the blank, wherever it stands.
class Button : public QPushButton {
 public:
  Button(QWidget* parent, const char* name, const char* caption);

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

[[nodiscard]] QLabel* makeLabel(QWidget* parent, const char* name, const char* caption);

// A label with a sunken edge: what is shown and cannot be typed over.
[[nodiscard]] QLabel* makePanel(QWidget* parent, const char* name, const char* caption);

// A heading across the window, light on dark.
[[nodiscard]] QLabel* makeHeading(QWidget* parent, const char* name, const char* caption);

void enlarge(QWidget* widget, double factor);

}  // namespace ui::qt
