// The system's converter applied to a whole text: the plain way with which the code page and the
// text decoder are compared.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include <iconv.h>

namespace bench {

class PlainIconv {
 public:
  PlainIconv(const char* to, const char* from) : handle_(::iconv_open(to, from)) {}
  PlainIconv(const PlainIconv&) = delete;
  PlainIconv& operator=(const PlainIconv&) = delete;
  ~PlainIconv() { ::iconv_close(handle_); }

  // The text has only characters that exist on both sides. The result is valid until the next call.
  std::string_view convert(std::string_view text) {
    // Two bytes of UTF-16 or of code page 949 give three of UTF-8 at most.
    if (buffer_.size() < text.size() * 2) buffer_.resize(text.size() * 2);
    char* in = const_cast<char*>(text.data());  // iconv's type; it does not write there
    std::size_t left = text.size();
    char* put = buffer_.data();
    std::size_t room = buffer_.size();
    if (::iconv(handle_, &in, &left, &put, &room) != 0) throw std::runtime_error("iconv failed");
    return {buffer_.data(), buffer_.size() - room};
  }

 private:
  iconv_t handle_;
  std::string buffer_;
};

}  // namespace bench
