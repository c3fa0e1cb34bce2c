#include "ui/win32/message_box.h"

#include <algorithm>
#include <exception>
#include <string>

#include "ui/win32/system.h"

namespace ui::win32 {
namespace {

constexpr const char* kDefaultTitle = "Quenbrook";

UINT iconOf(platform::Icon icon) {
  switch (icon) {
    case platform::Icon::kCritical:
      return MB_ICONERROR;
    case platform::Icon::kInformation:
      return MB_ICONINFORMATION;
    case platform::Icon::kNone:
      break;
  }
  return 0;
}

RECT working(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

// Below the window or above it, wherever there is room on the screen, so that the field that the
// message is about stays visible; else over the window's lower edge, where its buttons are.
POINT placeBeside(HWND window, SIZE box) {
  RECT frame;
  GetWindowRect(window, &frame);
  const RECT screen = working(window);
  const LONG centred = (frame.left + frame.right - box.cx) / 2;
  const LONG x = std::max(screen.left, std::min(centred, screen.right - box.cx));
  if (frame.bottom + box.cy <= screen.bottom) return {x, frame.bottom};
  if (frame.top - box.cy >= screen.top) return {x, frame.top - box.cy};
  return {x, std::max(screen.top, screen.bottom - box.cy)};
}

// Called when the system creates the box, on the thread that shows it.
LRESULT CALLBACK placeBox(int code, WPARAM window, LPARAM activation) {
  if (code == HCBT_ACTIVATE) {
    auto* box = reinterpret_cast<HWND>(window);
    HWND owner = GetWindow(box, GW_OWNER);
    if (owner != nullptr) {
      RECT area;
      GetWindowRect(box, &area);
      const POINT place = placeBeside(owner, {area.right - area.left, area.bottom - area.top});
      SetWindowPos(box, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
  }
  return CallNextHookEx(nullptr, code, window, activation);
}

}  // namespace

void MessageBox::show(const platform::Message& message) noexcept {
  try {
    const std::wstring title = wide(message.title.empty() ? kDefaultTitle : message.title);
    const std::wstring prompt = wide(message.prompt);
    HHOOK hook = SetWindowsHookExW(WH_CBT, placeBox, nullptr, GetCurrentThreadId());
    MessageBoxW(GetActiveWindow(), prompt.c_str(), title.c_str(), MB_OK | iconOf(message.icon));
    UnhookWindowsHookEx(hook);
  } catch (const std::exception&) {
    return;  // no memory for the text
  }
}

}  // namespace ui::win32
