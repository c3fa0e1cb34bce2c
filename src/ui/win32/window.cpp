#include "ui/win32/window.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace ui::win32 {
namespace {

constexpr const wchar_t* kClass = L"QuenbrookWindow";
constexpr int kIcon = 1;          // the program's, in its resources
constexpr int kHintLetters = 40;  // the width at which a hint goes on in the next line

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

HWND Window::makeControl(const wchar_t* kind, const char* caption, DWORD style, int id,
                         DWORD outerStyle) {
  return CreateWindowExW(outerStyle, kind, wide(caption).c_str(), WS_CHILD | WS_VISIBLE | style, 0,
                         0, 0, 0, handle(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                         GetModuleHandleW(nullptr), nullptr);
}

// With notices the second click of a double click is one and does not press the button again.
HWND Window::makeButton(const char* caption, int id, Group group) {
  const DWORD first = group == Group::kNew ? WS_GROUP : 0;
  return makeControl(WC_BUTTONW, caption, BS_PUSHBUTTON | BS_NOTIFY | WS_TABSTOP | first, id);
}

HWND Window::makeLabel(const char* caption, int id, DWORD style) {
  return makeControl(WC_STATICW, caption, SS_CENTERIMAGE | style, id);
}

HWND Window::makePanel(const char* caption, int id) {
  return makeControl(WC_STATICW, caption, SS_OWNERDRAW, id);
}

void Window::drawPanel(const DRAWITEMSTRUCT& panel, COLORREF text, UINT format) const {
  RECT area = panel.rcItem;
  FillRect(panel.hDC, &area, GetSysColorBrush(COLOR_WINDOW));
  FrameRect(panel.hDC, &area, GetSysColorBrush(COLOR_BTNSHADOW));
  InflateRect(&area, -letter() / 4, -letter() / 4);
  const SelectedFont font(panel.hDC, fontOf(panel.hwndItem));
  SetBkMode(panel.hDC, TRANSPARENT);
  SetTextColor(panel.hDC, text);
  DrawTextW(panel.hDC, wide(textOf(panel.hwndItem)).c_str(), -1, &area, format | DT_NOPREFIX);
}

void Window::setHint(HWND control, std::string_view text) {
  if (hints_ == nullptr) {
    hints_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0, 0,
                             0, 0, handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(hints_, TTM_SETMAXTIPWIDTH, 0, static_cast<LPARAM>(letter()) * kHintLetters);
  }
  std::wstring hint = wide(text);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = handle();
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = hint.data();
  SendMessageW(hints_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  SendMessageW(hints_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

SIZE Window::textSizeIn(HWND control, const std::wstring& text) {
  return textSize(fontOf(control), text);
}

SIZE Window::sizeOf(HWND control, double besides, double above) const {
  const SIZE text = textSizeIn(control, wide(textOf(control)));
  return {text.cx + std::lround(besides * letter()), text.cy + std::lround(above * letter())};
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
// fonts do not scale as evenly, so that the controls may need more.
void Window::changeDpi(const RECT& suggested) {
  SIZE size = fitToScreen();
  if ((GetWindowLongW(handle(), GWL_STYLE) & WS_THICKFRAME) != 0) {
    size.cx = std::max(size.cx, suggested.right - suggested.left);
    size.cy = std::max(size.cy, suggested.bottom - suggested.top);
  }
  place({suggested.left, suggested.top, size.cx, size.cy});
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
