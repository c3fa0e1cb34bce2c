#include <algorithm>
#include <array>

#include "platform/code_page_converter.h"
#include "platform/windows_api.h"
#include "text/utf8.h"
#include "values/runtime_error.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

}  // namespace

class CodePageConverter::Implementation {
 public:
  Implementation(int codePage, Direction direction)
      : codePage_(static_cast<UINT>(codePage)), direction_(direction) {
    if (!::IsValidCodePage(codePage_)) {
      throw RuntimeError(error::kInvalidCall,
                         "The system does not know code page " + std::to_string(codePage) + ".");
    }
  }

  void append(std::string_view text, std::string& out) const {
    while (!text.empty()) {
      const bool decodes = direction_ == Direction::kToUtf8;
      text.remove_prefix(decodes ? appendDecoded(text, out) : appendEncoded(text, out));
    }
  }

 private:
  // All of it, or where it is not all text its first character; the count of bytes.
  std::size_t appendDecoded(std::string_view text, std::string& out) const {
    if (decode(text, out)) return text.size();
    for (std::size_t length = 1; length <= std::min(text.size(), text::kMaxCharacterBytes);
         ++length) {
      if (decode(text.substr(0, length), out)) return length;
    }
    out += kReplacement;
    return 1;
  }

  bool decode(std::string_view text, std::string& out) const {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int units = ::MultiByteToWideChar(codePage_, MB_ERR_INVALID_CHARS, text.data(), size,
                                            wide.data(), size);
    if (units <= 0) return false;
    out += platform::fromWide({wide.data(), static_cast<std::size_t>(units)});
    return true;
  }

  // One character; the count of bytes. Not one that only looks like it: that would be another name.
  std::size_t appendEncoded(std::string_view text, std::string& out) const {
    std::size_t end = 0;
    const char32_t character = text::nextCharacter(text, end);
    if (character >= text::kInvalidByte) {
      while (end < std::min(text.size(), text::kMaxCharacterBytes) &&
             text::continuesCharacter(text[end])) {
        ++end;
      }
      out += '?';
      return end;
    }
    const std::wstring wide = platform::toWide(text.substr(0, end));
    std::array<char, 8> bytes{};
    BOOL lacking = FALSE;
    const bool utf8 = codePage_ == CP_UTF8;
    const int count = ::WideCharToMultiByte(
        codePage_, utf8 ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
        bytes.data(), static_cast<int>(bytes.size()), nullptr, utf8 ? nullptr : &lacking);
    if (count <= 0 || lacking) {
      out += '?';
    } else {
      out.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return end;
  }

  UINT codePage_;
  Direction direction_;
};

CodePageConverter::CodePageConverter(int codePage, Direction direction)
    : implementation_(std::make_unique<Implementation>(codePage, direction)) {}

CodePageConverter::~CodePageConverter() = default;

void CodePageConverter::append(std::string_view text, std::string& out) {
  implementation_->append(text, out);
}
