#include "ui/win32/screen.h"

namespace ui::win32 {
namespace {

using DpiForWindow = UINT(WINAPI*)(HWND);
using ParametersForDpi = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);
using AdjustForDpi = BOOL(WINAPI*)(LPRECT, DWORD, BOOL, DWORD, UINT);

// A call that older versions of Windows lack; nullptr there.
template <typename Function>
Function ofUser32(const char* name) {
  const HMODULE library = GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

UINT desktopDpi() {
  const ScreenContext screen;
  return static_cast<UINT>(GetDeviceCaps(screen.get(), LOGPIXELSY));
}

Area areaOf(const RECT& area) {
  return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

}  // namespace

UINT dpiOf(HWND window) {
  const auto forWindow = ofUser32<DpiForWindow>("GetDpiForWindow");
  const UINT dpi = forWindow == nullptr ? 0 : forWindow(window);
  return dpi == 0 ? desktopDpi() : dpi;
}

Area workingArea(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return areaOf(monitor.rcWork);
}

Area frameOf(HWND window) {
  RECT frame{};
  GetWindowRect(window, &frame);
  return areaOf(frame);
}

SIZE outerSize(HWND window, SIZE inner, UINT dpi) {
  const auto style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
  const auto outerStyle = static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE));
  RECT frame{0, 0, inner.cx, inner.cy};
  const auto forDpi = ofUser32<AdjustForDpi>("AdjustWindowRectExForDpi");
  if (forDpi == nullptr || !forDpi(&frame, style, FALSE, outerStyle, dpi)) {
    AdjustWindowRectEx(&frame, style, FALSE, outerStyle);
  }
  return {frame.right - frame.left, frame.bottom - frame.top};
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

}  // namespace ui::win32
