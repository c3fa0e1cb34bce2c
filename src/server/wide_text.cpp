#include "server/wide_text.h"

#include <cstddef>

#include "text/utf8.h"

namespace server::odbc {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isHigh(SQLWCHAR unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(SQLWCHAR unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

WideText toWide(std::string_view utf8) {
  WideText wide;
  wide.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    char32_t character = text::nextCharacter(utf8, position);
    if (character >= text::kInvalidByte) character = kReplacement;
    if (character < 0x10000) {
      wide += static_cast<SQLWCHAR>(character);
      continue;
    }
    character -= 0x10000;
    wide += static_cast<SQLWCHAR>(0xD800 + (character >> 10));
    wide += static_cast<SQLWCHAR>(0xDC00 + (character & 0x3FF));
  }
  return wide;
}

std::string fromWide(std::basic_string_view<SQLWCHAR> wide) {
  std::string utf8;
  utf8.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t character = wide[i];
    if (isHigh(wide[i]) && i + 1 < wide.size() && isLow(wide[i + 1])) {
      character = 0x10000 + ((character - 0xD800) << 10) + (wide[i + 1] - 0xDC00U);
      ++i;
    } else if (isHigh(wide[i]) || isLow(wide[i])) {
      character = kReplacement;
    }
    text::appendCharacter(utf8, character);
  }
  return utf8;
}

}  // namespace server::odbc
