#include "ui/win32/system.h"

#include "text/utf16.h"

namespace ui::win32 {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wide texts are UTF-16 here");

std::wstring wide(std::string_view utf8) {
  const std::u16string units = text::toUtf16(utf8);
  return {units.begin(), units.end()};
}

std::string narrow(std::wstring_view wide) {
  return text::toUtf8(std::u16string(wide.begin(), wide.end()));
}

std::string textOf(HWND control) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
  const int length = GetWindowTextW(control, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return narrow(text);
}

void setText(HWND control, std::string_view utf8) {
  if (textOf(control) != utf8) SetWindowTextW(control, wide(utf8).c_str());
}

HFONT fontOf(HWND control) {
  return reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
}

}  // namespace ui::win32
