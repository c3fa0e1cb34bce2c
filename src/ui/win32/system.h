// The system's headers for windows and controls, and its texts; for this room only.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// After it.
#include <commctrl.h>

#include <string>
#include <string_view>

#undef MessageBox  // a class of this room
#undef small       // a word that other headers use

namespace ui::win32 {

[[nodiscard]] std::wstring wide(std::string_view utf8);
[[nodiscard]] std::string narrow(std::wstring_view wide);

// What a control shows or holds.
[[nodiscard]] std::string textOf(HWND control);
// Does nothing where the control shows the text already: it would flicker.
void setText(HWND control, std::string_view utf8);

}  // namespace ui::win32
