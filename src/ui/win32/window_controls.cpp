// The controls that a window makes, and what they need.
#include <cmath>

#include "ui/win32/window.h"

namespace ui::win32 {
namespace {

constexpr int kHintLetters = 40;  // the width at which a hint goes on in the next line

}  // namespace

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

}  // namespace ui::win32
