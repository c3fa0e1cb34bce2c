#include "server/wide_text.h"

#include "text/utf16.h"

namespace server::odbc {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "the driver manager's wide texts are UTF-16");

WideText toWide(std::string_view utf8) {
  const std::u16string units = text::toUtf16(utf8);
  return {units.begin(), units.end()};
}

std::string fromWide(std::basic_string_view<SQLWCHAR> wide) {
  return text::toUtf8(std::u16string(wide.begin(), wide.end()));
}

}  // namespace server::odbc
