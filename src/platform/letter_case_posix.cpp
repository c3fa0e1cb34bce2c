#include <locale.h>

#include <array>
#include <climits>
#include <cwchar>
#include <cwctype>

#include "platform/letter_case.h"

namespace platform {

namespace {

// Made once: making it maps a file.
locale_t utf8Locale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

// The calling thread works in UTF-8 for as long as this lives, whatever the user's locale.
class InUtf8 {
 public:
  InUtf8() {
    if (utf8Locale() != nullptr) before_ = uselocale(utf8Locale());
  }
  ~InUtf8() {
    if (utf8Locale() != nullptr) uselocale(before_);
  }
  InUtf8(const InUtf8&) = delete;
  InUtf8& operator=(const InUtf8&) = delete;

 private:
  locale_t before_ = nullptr;
};

// The small letter of the first letter of the text, and how many bytes that letter takes; one byte
// as it stands where the text is no UTF-8.
std::string firstLowered(std::string_view text, std::size_t& taken) {
  wchar_t letter = 0;
  std::mbstate_t reading{};
  taken = std::mbrtowc(&letter, text.data(), text.size(), &reading);
  if (taken == 0 || taken > text.size()) taken = 1;
  std::mbstate_t writing{};
  std::array<char, MB_LEN_MAX> bytes{};
  const auto small = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(letter)));
  const auto count = letter == 0 ? 0 : std::wcrtomb(bytes.data(), small, &writing);
  if (count == 0 || count > bytes.size()) return std::string(text.substr(0, taken));
  return {bytes.data(), count};
}

}  // namespace

std::string lowerCase(std::string_view text) {
  const InUtf8 locale;
  std::string lower;
  while (!text.empty()) {
    std::size_t taken = 0;
    lower += firstLowered(text, taken);
    text.remove_prefix(taken);
  }
  return lower;
}

}  // namespace platform
