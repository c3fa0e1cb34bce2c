#include "ui/win32/message_box.h"

#include <exception>
#include <string>

#include "ui/win32/screen.h"

namespace ui::win32 {
namespace {

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

// Called when the system creates the box, on the thread that shows it.
LRESULT CALLBACK placeBox(int code, WPARAM window, LPARAM activation) {
  if (code == HCBT_ACTIVATE) placeBesideOwner(reinterpret_cast<HWND>(window));
  return CallNextHookEx(nullptr, code, window, activation);
}

}  // namespace

void placeBesideOwner(HWND box) {
  HWND owner = GetWindow(box, GW_OWNER);
  if (owner == nullptr) return;
  const Area place = placeBeside(frameOf(owner), frameOf(box), workingArea(owner));
  SetWindowPos(box, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void MessageBox::show(const platform::Message& message) noexcept {
  try {
    const std::wstring title = wide(message.title.empty() ? kMessageTitle : message.title);
    const std::wstring prompt = wide(message.prompt);
    HHOOK hook = SetWindowsHookExW(WH_CBT, placeBox, nullptr, GetCurrentThreadId());
    MessageBoxW(GetActiveWindow(), prompt.c_str(), title.c_str(), MB_OK | iconOf(message.icon));
    UnhookWindowsHookEx(hook);
  } catch (const std::exception&) {
    return;  // no memory for the text
  }
}

}  // namespace ui::win32
