#include "ui/win32/message_box.h"

#include <windows.h>
#undef MessageBox

#include <exception>
#include <string>

#include "text/utf16.h"

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

std::wstring wide(const std::string& utf8) {
  const std::u16string units = text::toUtf16(utf8);
  return {units.begin(), units.end()};
}

}  // namespace

void MessageBox::show(const platform::Message& message) noexcept {
  try {
    const std::string title = message.title.empty() ? "Quenbrook" : message.title;
    ::MessageBoxW(::GetActiveWindow(), wide(message.prompt).c_str(), wide(title).c_str(),
                  MB_OK | iconOf(message.icon));
  } catch (const std::exception&) {
    return;  // no memory for the text
  }
}

}  // namespace ui::win32
