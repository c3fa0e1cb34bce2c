// The system's message font in the sizes that a window needs: Korean texts are in the system's own
// face.
//
//   Fonts fonts(dpi, 1.15);
//   SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.bold(1.3)), 0);
//
// The fonts live as long as the object.
#pragma once

#include <deque>
#include <string>

#include "ui/win32/system.h"

namespace ui::win32 {

class Fonts {
 public:
  // `factor`: of the size that the operator chose in the system's settings.
  Fonts(UINT dpi, double factor);
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;
  ~Fonts();

  [[nodiscard]] HFONT plain() const { return made_.front(); }
  [[nodiscard]] HFONT bold(double factor);
  // The plain size in another face; the system substitutes a face that it lacks.
  [[nodiscard]] HFONT face(const char* name);
  // The height of a line of plain text, in pixels: the unit of all distances.
  [[nodiscard]] int letter() const { return letter_; }

 private:
  HFONT make(const LOGFONTW& description);

  LOGFONTW description_{};
  std::deque<HFONT> made_;
  int letter_ = 0;
};

// Of the longest line and of all lines, in pixels.
[[nodiscard]] SIZE textSize(HFONT font, const std::wstring& text);

// Dots per inch of the screen that the window is on; where Windows does not know (before 10), the
// desktop's.
[[nodiscard]] UINT dpiOf(HWND window);

}  // namespace ui::win32
