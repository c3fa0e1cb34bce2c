// The system's message font in the sizes that a window needs: Korean texts are in the system's own
// face.
//
//   Fonts fonts(dpi, 1.15);
//   SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.bold(1.3)), 0);
//
// The fonts live as long as the object.
#pragma once

#include <string>
#include <vector>

#include "ui/win32/system.h"

namespace ui::win32 {

class Fonts {
 public:
  // `factor`: of the size that the operator chose in the system's settings.
  Fonts(UINT dpi, double factor);

  [[nodiscard]] HFONT plain() const { return made_.front().get(); }
  [[nodiscard]] HFONT bold(double factor);
  // The plain size in another face; the system substitutes a face that it lacks.
  [[nodiscard]] HFONT face(const char* name);
  // The height of a line of plain text, in pixels: the unit of all distances.
  [[nodiscard]] int letter() const { return letter_; }

 private:
  HFONT make(const LOGFONTW& description);

  LOGFONTW description_;
  std::vector<Font> made_;
  int letter_ = 0;
};

// Of the longest line and of all lines, in pixels.
[[nodiscard]] SIZE textSize(HFONT font, const std::wstring& text);

}  // namespace ui::win32
