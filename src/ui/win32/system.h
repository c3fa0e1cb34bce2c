// The system's headers for windows and controls, its texts and colours, and the owners of what it
// lends; for this room only.
//
//   const Brush ground(CreateSolidBrush(toSystem(kHeadingGround)));
//   const SelectedFont selected(context, font);   // until the end of the block
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// After it.
#include <commctrl.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "ui/appearance.h"

#undef MessageBox  // a class of this room
#undef small       // a word that other headers use

namespace ui::win32 {

struct DeleteGdiObject {
  void operator()(void* object) const { DeleteObject(object); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteGdiObject>;
using Brush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, DeleteGdiObject>;

// For measuring texts and the screen's dots.
class ScreenContext {
 public:
  ScreenContext() : context_(GetDC(nullptr)) {}
  ScreenContext(const ScreenContext&) = delete;
  ScreenContext& operator=(const ScreenContext&) = delete;
  ~ScreenContext() { ReleaseDC(nullptr, context_); }

  [[nodiscard]] HDC get() const { return context_; }

 private:
  HDC context_;
};

class SelectedFont {
 public:
  SelectedFont(HDC context, HFONT font) : context_(context), before_(SelectObject(context, font)) {}
  SelectedFont(const SelectedFont&) = delete;
  SelectedFont& operator=(const SelectedFont&) = delete;
  ~SelectedFont() { SelectObject(context_, before_); }

 private:
  HDC context_;
  HGDIOBJ before_;
};

[[nodiscard]] constexpr COLORREF toSystem(Colour colour) {
  return RGB(colour.red, colour.green, colour.blue);
}

[[nodiscard]] std::wstring wide(std::string_view utf8);
[[nodiscard]] std::string narrow(std::wstring_view wide);

// What a control shows or holds.
[[nodiscard]] std::string textOf(HWND control);
// Does nothing where the control shows the text already: it would flicker.
void setText(HWND control, std::string_view utf8);
[[nodiscard]] HFONT fontOf(HWND control);

}  // namespace ui::win32
