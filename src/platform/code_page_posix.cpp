#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <iconv.h>

#include "platform/runtime_error.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

std::string systemName(int number) {
  return number == 65001 ? std::string("UTF-8") : "CP" + std::to_string(number);
}

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

// Bytes of the UTF-8 character that `text` begins with, going by its first byte.
std::size_t characterLength(std::string_view text) {
  const auto follows = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  std::size_t length = 1;
  while (length < text.size() && length < 4 && follows(text[length])) ++length;
  return length;
}

std::size_t oneByte(std::string_view) { return 1; }

}  // namespace

// One direction. The system's converter is asked for what is not ASCII only.
class CodePage::Converter {
 public:
  using SkipLength = std::size_t (*)(std::string_view);

  Converter(const std::string& to, const std::string& from, std::string_view replacement,
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
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { ::iconv_close(handle_); }

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

CodePage::CodePage(int number)
    : number_(number),
      decoder_(std::make_unique<Converter>("UTF-8", systemName(number), kReplacement, oneByte)) {}

CodePage::CodePage(CodePage&&) noexcept = default;
CodePage& CodePage::operator=(CodePage&&) noexcept = default;
CodePage::~CodePage() = default;

void CodePage::appendUtf8(std::string_view text, std::string& out) {
  const auto ascii = std::find_if_not(text.begin(), text.end(), isAscii) - text.begin();
  out.append(text.data(), static_cast<std::size_t>(ascii));
  text.remove_prefix(static_cast<std::size_t>(ascii));
  if (!text.empty()) decoder_->append(text, out);
}

void CodePage::appendFromUtf8(std::string_view text, std::string& out) {
  const auto ascii = std::find_if_not(text.begin(), text.end(), isAscii) - text.begin();
  out.append(text.data(), static_cast<std::size_t>(ascii));
  text.remove_prefix(static_cast<std::size_t>(ascii));
  if (text.empty()) return;
  if (!encoder_) {
    encoder_ = std::make_unique<Converter>(systemName(number_), "UTF-8", std::string_view("?"),
                                           characterLength);
  }
  encoder_->append(text, out);
}

std::string CodePage::toUtf8(std::string_view text) {
  std::string out;
  appendUtf8(text, out);
  return out;
}

std::string CodePage::fromUtf8(std::string_view text) {
  std::string out;
  appendFromUtf8(text, out);
  return out;
}
