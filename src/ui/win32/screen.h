// The screen that a window is on: dots per inch, the area without the task bar, the frame around a
// window there. Where Windows knows no dots per inch of single screens (before 10), the desktop's.
//
//   const UINT dpi = dpiOf(window);
//   LOGFONTW font = messageFont(dpi);
//   const SIZE size = outerSize(window, {600, 400}, dpi);
#pragma once

#include "ui/appearance.h"
#include "ui/win32/system.h"

namespace ui::win32 {

[[nodiscard]] UINT dpiOf(HWND window);
[[nodiscard]] Area workingArea(HWND window);
// The whole window, on the screen.
[[nodiscard]] Area frameOf(HWND window);
// Of the whole window, whose client area has the size `inner`.
[[nodiscard]] SIZE outerSize(HWND window, SIZE inner, UINT dpi);
// The system's font for messages, which the operator chose in the system's settings.
[[nodiscard]] LOGFONTW messageFont(UINT dpi);

}  // namespace ui::win32
