#include "ui/win32/window.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ui::win32 {
namespace {

constexpr const wchar_t* kClass = L"QuenbrookWindow";
constexpr int kIcon = 1;  // the program's, in its resources

DWORD styleOf(Border border) {
  constexpr DWORD kFixed = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
  return border == Border::kFixed ? kFixed : WS_OVERLAPPEDWINDOW;
}

bool isButton(HWND control) {
  return (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0;
}

void registerClass(WNDPROC procedure) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  if (GetClassInfoExW(GetModuleHandleW(nullptr), kClass, &description)) return;
  description.lpfnWndProc = procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hIcon = LoadIconW(description.hInstance, MAKEINTRESOURCEW(kIcon));
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  description.lpszClassName = kClass;
  RegisterClassExW(&description);
}

}  // namespace

Window::Window(Application& application, const char* title, Border border, HWND owner)
    : application_(application) {
  registerClass(&Window::procedure);
  window_.reset(CreateWindowExW(WS_EX_CONTROLPARENT, kClass, wide(title).c_str(), styleOf(border),
                                CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, owner, nullptr,
                                GetModuleHandleW(nullptr), this));
  if (window_ == nullptr) throw std::runtime_error("no window");
  fonts_ = std::make_unique<Fonts>(dpiOf(onScreen()), kLargestFont);
}

void Window::show() {
  ShowWindow(handle(), SW_SHOW);
  SetForegroundWindow(handle());
}

void Window::focus(HWND control) {
  focus_ = control;
  if (GetActiveWindow() == handle()) SetFocus(control);
}

HWND Window::focused() const {
  HWND now = GetFocus();
  return now != nullptr && IsChild(handle(), now) ? now : focus_;
}

// Whose screen counts: an owned window comes up on its owner's.
HWND Window::onScreen() const {
  HWND owner = GetWindow(handle(), GW_OWNER);
  return owner != nullptr ? owner : handle();
}

SIZE Window::sizeInFont(double factor) {
  const UINT dpi = dpiOf(onScreen());
  const auto before = std::exchange(fonts_, std::make_unique<Fonts>(dpi, factor));
  applyFonts();  // no control uses the fonts of `before` any more
  return outerSize(handle(), layout().least(), dpi);
}

SIZE Window::fitToScreen() {
  const Area room = workingArea(onScreen());
  const SIZE wanted =
      fitInLargestFont([this](double factor) { return sizeInFont(factor); },
                       [&](SIZE size) { return size.cx <= room.width && size.cy <= room.height; });
  return {std::min<LONG>(wanted.cx, room.width), std::min<LONG>(wanted.cy, room.height)};
}

void Window::centreOnScreen() {
  const Area room = workingArea(onScreen());
  const SIZE size = fitToScreen();
  place({room.left + (room.width - size.cx) / 2, room.top + (room.height - size.cy) / 2, size.cx,
         size.cy});
}

void Window::place(const Area& area) {
  SetWindowPos(handle(), nullptr, area.left, area.top, area.width, area.height,
               SWP_NOZORDER | SWP_NOACTIVATE);
  placeControls();
}

void Window::placeControls() {
  RECT inside;
  GetClientRect(handle(), &inside);
  layout().place(inside);
  InvalidateRect(handle(), nullptr, TRUE);
}

// The window came to a screen with other dots per inch. The suggested size is the old one, scaled;
// fonts do not scale as evenly. Where the controls need more, the answer to WM_GETMINMAXINFO, which
// the system asks for with every new size, gives it.
void Window::changeDpi(const RECT& suggested) {
  fitToScreen();
  place({suggested.left, suggested.top, suggested.right - suggested.left,
         suggested.bottom - suggested.top});
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_NCCREATE) {
    auto* creation = reinterpret_cast<CREATESTRUCTW*>(second);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
  }
  auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  std::optional<LRESULT> result;
  if (self != nullptr && self->fonts_ != nullptr) {  // whose constructor is far enough
    self->application_.handle([&] { result = self->handle(message, first, second); });
  }
  return result ? *result : DefWindowProcW(window, message, first, second);
}

std::optional<LRESULT> Window::handle(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_COMMAND:
      command(LOWORD(first), HIWORD(first));
      return 0;
    case WM_NOTIFY:
      notified(*reinterpret_cast<const NMHDR*>(second));
      return 0;
    case WM_TIMER:
      ticked(first);
      return 0;
    case WM_CLOSE:
      if (closing()) hide();
      return 0;
    case WM_ACTIVATE:
      activate(LOWORD(first), reinterpret_cast<HWND>(second));
      return 0;
    case WM_SETFOCUS:
      if (focus_ != nullptr) SetFocus(focus_);
      return 0;
    case WM_NEXTDLGCTL:
      // An arrow key in a group names the control; the underlined letter of a caption names the
      // caption and then asks for the next control.
      SetFocus(LOWORD(second) != 0 ? reinterpret_cast<HWND>(first)
                                   : GetNextDlgTabItem(handle(), GetFocus(), first != 0));
      return 0;
    case WM_SIZE:
      placeControls();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE least = outerSize(handle(), layout().least(), dpiOf(handle()));
      reinterpret_cast<MINMAXINFO*>(second)->ptMinTrackSize = {least.cx, least.cy};
      return 0;
    }
    case WM_DRAWITEM:
      draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(second));
      return TRUE;
    case WM_CTLCOLORSTATIC:
      return colour(reinterpret_cast<HDC>(first), reinterpret_cast<HWND>(second));
    case WM_SETCURSOR:
      return showPointer(second);
    case WM_DPICHANGED:
      changeDpi(*reinterpret_cast<const RECT*>(second));
      return 0;
    default:
      return {};
  }
}

// A return from a window of this program's own, such as a message box, is no activation.
void Window::activate(WPARAM state, HWND other) {
  if (state == WA_INACTIVE) {
    focus_ = focused();
    deactivatedByDialog_ =
        other != nullptr && GetWindowThreadProcessId(other, nullptr) == GetCurrentThreadId();
    return;
  }
  SetFocus(handle());  // which passes it on to the control
  if (!std::exchange(deactivatedByDialog_, false)) activated();
}

// Enter presses the button that has the focus.
void Window::command(int id, int code) {
  HWND now = focused();
  if (id == IDOK) {
    if (now == nullptr || !IsWindowEnabled(now)) return;
    if (isButton(now)) {
      SendMessageW(now, BM_CLICK, 0, 0);
    } else {
      entered(GetDlgCtrlID(now));
    }
  } else if (id == IDCANCEL) {
    escaped();
  } else if (code == BN_CLICKED) {
    pressed(id);
  }
}

std::optional<LRESULT> Window::colour(HDC context, HWND control) {
  const auto colours = coloursOf(control);
  if (!colours) return {};
  SetTextColor(context, colours->text);
  SetBkColor(context, colours->ground);
  ground_.reset(CreateSolidBrush(colours->ground));
  return reinterpret_cast<LRESULT>(ground_.get());
}

std::optional<LRESULT> Window::showPointer(LPARAM place) {
  if (!application_.hourglass() || LOWORD(place) != HTCLIENT) return {};
  SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  return TRUE;
}

}  // namespace ui::win32
