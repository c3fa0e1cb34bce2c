#include <locale.h>

#include <array>
#include <climits>
#include <cwchar>
#include <cwctype>

#include "platform/letter_case.h"

namespace platform {

namespace {

// The calling thread works in UTF-8 for as long as this lives, whatever the user's locale.
class Utf8Locale {
 public:
  Utf8Locale() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
    if (locale_ != nullptr) before_ = uselocale(locale_);
  }
  ~Utf8Locale() {
    if (locale_ == nullptr) return;
    uselocale(before_);
    freelocale(locale_);
  }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;

 private:
  locale_t locale_;
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
  const Utf8Locale locale;
  std::string lower;
  while (!text.empty()) {
    std::size_t taken = 0;
    lower += firstLowered(text, taken);
    text.remove_prefix(taken);
  }
  return lower;
}

}  // namespace platform
