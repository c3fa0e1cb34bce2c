#include "ui/win32/fonts.h"

#include <cmath>
#include <stdexcept>

namespace ui::win32 {
namespace {

using DpiForWindow = UINT(WINAPI*)(HWND);
using ParametersForDpi = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);

// A call that older versions of Windows lack; nullptr there.
template <typename Function>
Function ofUser32(const char* name) {
  const HMODULE library = GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

UINT desktopDpi() {
  HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<UINT>(dpi);
}

LOGFONTW messageFont(UINT dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  const auto forDpi = ofUser32<ParametersForDpi>("SystemParametersInfoForDpi");
  if (forDpi != nullptr && forDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi)) {
    return metrics.lfMessageFont;
  }
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  metrics.lfMessageFont.lfHeight =
      MulDiv(metrics.lfMessageFont.lfHeight, static_cast<int>(dpi), static_cast<int>(desktopDpi()));
  return metrics.lfMessageFont;
}

LOGFONTW scaled(LOGFONTW description, double factor) {
  description.lfHeight = std::lround(description.lfHeight * factor);
  return description;
}

}  // namespace

Fonts::Fonts(UINT dpi, double factor) : description_(scaled(messageFont(dpi), factor)) {
  make(description_);
  letter_ = textSize(plain(), L"가").cy;
}

Fonts::~Fonts() {
  for (HFONT font : made_) DeleteObject(font);
}

HFONT Fonts::make(const LOGFONTW& description) {
  HFONT font = CreateFontIndirectW(&description);
  if (font == nullptr) throw std::runtime_error("no font");
  return made_.emplace_back(font);
}

HFONT Fonts::bold(double factor) {
  LOGFONTW description = scaled(description_, factor);
  description.lfWeight = FW_BOLD;
  return make(description);
}

HFONT Fonts::face(const char* name) {
  LOGFONTW description = description_;
  const std::wstring face = wide(name);
  description.lfFaceName[face.copy(description.lfFaceName, LF_FACESIZE - 1)] = L'\0';
  return make(description);
}

SIZE textSize(HFONT font, const std::wstring& text) {
  HDC screen = GetDC(nullptr);
  HGDIOBJ before = SelectObject(screen, font);
  RECT area{};
  DrawTextW(screen, text.c_str(), static_cast<int>(text.size()), &area, DT_CALCRECT);
  SelectObject(screen, before);
  ReleaseDC(nullptr, screen);
  return {area.right, area.bottom};
}

UINT dpiOf(HWND window) {
  const auto forWindow = ofUser32<DpiForWindow>("GetDpiForWindow");
  const UINT dpi = forWindow == nullptr ? 0 : forWindow(window);
  return dpi == 0 ? desktopDpi() : dpi;
}

}  // namespace ui::win32
