#include "ui/win32/application.h"

#include <cstdlib>

namespace ui::win32 {
namespace {

constexpr LPARAM kRepeated = LPARAM{1} << 30U;  // of WM_KEYDOWN: the key was down before

// Whether the process has a desktop that is seen.
bool hasDisplay() {
  USEROBJECTFLAGS flags{};
  if (!GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                 nullptr)) {
    return true;
  }
  return (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

Application::Application(const std::string& /*programName*/,
                         const std::function<int()>& withoutDisplay) {
  if (!hasDisplay()) std::exit(withoutDisplay());
  INITCOMMONCONTROLSEX classes{sizeof classes,
                               ICC_DATE_CLASSES | ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&classes);
}

void Application::handle(const std::function<void()>& handler) noexcept {
  ++runningHandlers_;
  try {
    handler();
  } catch (...) {
    if (!fault_) fault_ = std::current_exception();
  }
  if (--runningHandlers_ == 0) setHourglass(false);
}

void Application::setHourglass(bool on) {
  if (hourglass_ == on) return;
  hourglass_ = on;
  SetCursor(LoadCursorW(nullptr, on ? IDC_WAIT : IDC_ARROW));
}

// Tab, arrows, Enter, Esc and the underlined letters are the dialog manager's. A held Enter presses
// a button once.
void Application::dispatch(MSG& message) {
  if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN &&
      (message.lParam & kRepeated) != 0) {
    return;
  }
  HWND window = message.hwnd == nullptr ? nullptr : GetAncestor(message.hwnd, GA_ROOT);
  if (window != nullptr && IsDialogMessageW(window, &message)) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void Application::run() {
  MSG message;
  while (!fault_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    dispatch(message);
    if (std::exchange(closed_, false) && !anyLoaded_()) break;
  }
  setHourglass(false);
  if (fault_) std::rethrow_exception(std::exchange(fault_, nullptr));
}

void Application::yield() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
    dispatch(message);
  }
}

}  // namespace ui::win32
