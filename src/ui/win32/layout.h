// Rows and columns of controls.
//
//   Layout ends = Layout::row(spacing);
//   ends.add(cmdSend, size).addStretch().add(cmdStart, size, 2).add(cmdEnd, size, 1);
//   Layout window = Layout::column(spacing).add(ends);
//   window.least();                 // in pixels
//   window.place(clientArea);       // moves the controls
//
// A hidden control keeps its place. In a row every control is as high as the row, in a column as
// wide as the column.
#pragma once

#include <vector>

#include "ui/win32/system.h"

namespace ui::win32 {

class Layout {
 public:
  [[nodiscard]] static Layout row(int spacing) { return {true, spacing}; }
  [[nodiscard]] static Layout column(int spacing) { return {false, spacing}; }

  // Space beyond the least sizes is shared in proportion to `stretch`.
  Layout& add(HWND control, SIZE least, int stretch = 0);
  Layout& add(Layout inner, int stretch = 0);
  Layout& addStretch();
  // Pixels around the controls; `frame`, a control such as a group box, covers them too.
  Layout& withMargins(int horizontal, int vertical, HWND frame = nullptr);

  [[nodiscard]] SIZE least() const;
  void place(const RECT& area) const;

 private:
  struct Item {
    HWND control = nullptr;
    SIZE least{};
    int stretch = 0;
    std::vector<Layout> inner;  // one, or none for a control
  };

  Layout(bool horizontal, int spacing) : horizontal_(horizontal), spacing_(spacing) {}
  [[nodiscard]] int along(SIZE size) const { return horizontal_ ? size.cx : size.cy; }

  bool horizontal_;
  int spacing_;
  SIZE margins_{};
  HWND frame_ = nullptr;
  std::vector<Item> items_;
};

}  // namespace ui::win32
