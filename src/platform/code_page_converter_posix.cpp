#include "platform/code_page_converter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include <iconv.h>

#include "text/utf8.h"
#include "values/runtime_error.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

std::string systemName(int number) {
  return number == 65001 ? std::string("UTF-8") : "CP" + std::to_string(number);
}

std::size_t oneByte(std::string_view) { return 1; }

}  // namespace

class CodePageConverter::Implementation {
 public:
  using SkipLength = std::size_t (*)(std::string_view);

  Implementation(const std::string& to, const std::string& from, std::string_view replacement,
                 SkipLength skipLength)
      : handle_(::iconv_open(to.c_str(), from.c_str())),
        replacement_(replacement),
        skipLength_(skipLength) {
    // How iconv_open says that it has no such converter.
    if (reinterpret_cast<std::intptr_t>(handle_) == -1) {
      throw RuntimeError(error::kInvalidCall,
                         "The system cannot convert text from " + from + " to " + to + ".");
    }
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;
  ~Implementation() { ::iconv_close(handle_); }

  void append(std::string_view text, std::string& out) {
    while (!text.empty()) {
      const std::size_t taken = convertSome(text, out);
      text.remove_prefix(taken);
      if (text.empty() || taken != 0) continue;
      out += replacement_;
      text.remove_prefix(std::min(text.size(), skipLength_(text)));
    }
  }

 private:
  // Bytes of `text` converted; 0 when it begins with what cannot be.
  std::size_t convertSome(std::string_view text, std::string& out) {
    std::array<char, 512> buffer;
    char* in = const_cast<char*>(text.data());  // iconv's type; it does not write there
    std::size_t left = text.size();
    char* put = buffer.data();
    std::size_t room = buffer.size();
    ::iconv(handle_, &in, &left, &put, &room);
    out.append(buffer.data(), buffer.size() - room);
    return text.size() - left;
  }

  iconv_t handle_;
  std::string_view replacement_;
  SkipLength skipLength_;
};

CodePageConverter::CodePageConverter(int codePage, Direction direction)
    : implementation_(direction == Direction::kToUtf8
                          ? std::make_unique<Implementation>("UTF-8", systemName(codePage),
                                                             kReplacement, oneByte)
                          : std::make_unique<Implementation>(systemName(codePage), "UTF-8", "?",
                                                             text::characterLength)) {}

CodePageConverter::~CodePageConverter() = default;

void CodePageConverter::append(std::string_view text, std::string& out) {
  implementation_->append(text, out);
}
