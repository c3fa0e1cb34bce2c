#include "ui/win32/window.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ui::win32 {
namespace {

constexpr const wchar_t* kClass = L"QuenbrookWindow";
constexpr UINT kDpiChanged = 0x02E0;  // WM_DPICHANGED, of Windows 8.1
constexpr int kIcon = 1;              // the program's, in its resources

// Factors of the system's font. A till's screen is read standing, at arm's length; on a small
// screen a small font is better than controls that are out of reach.
constexpr double kLargestFont = 1.15;
constexpr double kSmallestFont = 0.4;
constexpr double kFontStep = 0.05;

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
  window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kClass, wide(title).c_str(), styleOf(border),
                            CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, owner, nullptr,
                            GetModuleHandleW(nullptr), this);
  if (window_ == nullptr) throw std::runtime_error("no window");
  fonts_ = std::make_unique<Fonts>(dpiOf(window_), kLargestFont);
}

Window::~Window() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);  // the rest is handled without this object
  DestroyWindow(window_);
  if (brush_ != nullptr) DeleteObject(brush_);
}

HWND Window::makeControl(const wchar_t* kind, const char* caption, DWORD style, int id,
                         DWORD outerStyle) {
  return CreateWindowExW(outerStyle, kind, wide(caption).c_str(), WS_CHILD | WS_VISIBLE | style, 0,
                         0, 0, 0, window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                         GetModuleHandleW(nullptr), nullptr);
}

// With notices the second click of a double click is one and does not press the button again.
HWND Window::makeButton(const char* caption, int id) {
  return makeControl(WC_BUTTONW, caption, BS_PUSHBUTTON | BS_NOTIFY | WS_TABSTOP | WS_GROUP, id);
}

HWND Window::makeLabel(const char* caption, int id, DWORD style) {
  return makeControl(WC_STATICW, caption, SS_CENTERIMAGE | style, id);
}

HWND Window::makePanel(const char* caption, int id, DWORD style) {
  return makeControl(WC_STATICW, caption, SS_NOPREFIX | style, id, WS_EX_STATICEDGE);
}

void Window::setHint(HWND control, const char* text) {
  if (hints_ == nullptr) {
    hints_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0, 0,
                             0, 0, window_, nullptr, GetModuleHandleW(nullptr), nullptr);
  }
  std::wstring hint = wide(text);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = window_;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = hint.data();
  SendMessageW(hints_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

SIZE Window::textSizeIn(HWND control, const std::wstring& text) {
  return textSize(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), text);
}

SIZE Window::sizeOf(HWND control, double besides, double above) const {
  const SIZE text = textSizeIn(control, wide(textOf(control)));
  return {text.cx + std::lround(besides * letter()), text.cy + std::lround(above * letter())};
}

void Window::show() {
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

void Window::focus(HWND control) {
  focus_ = control;
  if (GetActiveWindow() == window_) SetFocus(control);
}

HWND Window::focused() const {
  HWND now = GetFocus();
  return now != nullptr && IsChild(window_, now) ? now : focus_;
}

RECT Window::workingArea() const {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window_, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

SIZE Window::outerSize(SIZE inner) const {
  RECT frame{0, 0, inner.cx, inner.cy};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(window_, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongW(window_, GWL_EXSTYLE)));
  return {frame.right - frame.left, frame.bottom - frame.top};
}

SIZE Window::sizeInFont(double factor) {
  const auto before = std::exchange(fonts_, std::make_unique<Fonts>(dpiOf(window_), factor));
  applyFonts();  // no control uses the fonts of `before` any more
  return outerSize(layout().least());
}

void Window::centreOnScreen() {
  const RECT area = workingArea();
  const SIZE room{area.right - area.left, area.bottom - area.top};
  double factor = kLargestFont;
  SIZE wanted = sizeInFont(factor);
  while (factor > kSmallestFont && (wanted.cx > room.cx || wanted.cy > room.cy)) {
    factor -= kFontStep;
    wanted = sizeInFont(factor);
  }
  const SIZE size{std::min(wanted.cx, room.cx), std::min(wanted.cy, room.cy)};
  SetWindowPos(window_, nullptr, area.left + (room.cx - size.cx) / 2,
               area.top + (room.cy - size.cy) / 2, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  placeControls();
}

void Window::placeControls() {
  RECT inside;
  GetClientRect(window_, &inside);
  layout().place(inside);
  InvalidateRect(window_, nullptr, TRUE);
}

// The window came to a screen with other dots per inch.
void Window::changeDpi(const RECT& suggested) {
  sizeInFont(kLargestFont);
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  placeControls();
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
    case WM_SIZE:
      placeControls();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE least = outerSize(layout().least());
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
    case kDpiChanged:
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
  SetFocus(window_);  // which passes it on to the control
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
  if (brush_ != nullptr) DeleteObject(brush_);
  brush_ = CreateSolidBrush(colours->ground);
  return reinterpret_cast<LRESULT>(brush_);
}

std::optional<LRESULT> Window::showPointer(LPARAM place) {
  if (!application_.hourglass() || LOWORD(place) != HTCLIENT) return {};
  SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  return TRUE;
}

}  // namespace ui::win32
