#include "platform/program_start.h"

#include "platform/windows_api.h"

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <streambuf>

#include "text/utf8.h"

namespace platform {

namespace {

// Writes UTF-8 to a standard handle: as text to a console, as bytes to anything else. A program
// with windows has no handles of its own where it was started from a console; it then writes to
// that console.
class StandardStream : public std::streambuf {
 public:
  explicit StandardStream(DWORD which) : which_(which) { setp(buffer_.data(), end()); }
  StandardStream(const StandardStream&) = delete;
  StandardStream& operator=(const StandardStream&) = delete;
  ~StandardStream() override { writeAll(); }

 protected:
  int_type overflow(int_type byte) override {
    writeCharacters();
    if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
    *pptr() = traits_type::to_char_type(byte);
    pbump(1);
    return byte;
  }
  int sync() override { return writeCharacters() ? 0 : -1; }

 private:
  [[nodiscard]] char* end() { return buffer_.data() + buffer_.size(); }

  // All but the beginning of a character whose rest has not come yet.
  bool writeCharacters() {
    const std::string_view text(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    std::size_t whole = text.size();
    while (whole > 0 && text.size() - whole < text::kMaxCharacterBytes - 1 &&
           text::continuesCharacter(text[whole - 1])) {
      --whole;
    }
    const auto lead = whole > 0 ? static_cast<unsigned char>(text[whole - 1]) : 0U;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    const bool cut = lead >= 0xC0 && text.size() - (whole - 1) < length;
    return write(cut ? whole - 1 : text.size());
  }
  bool writeAll() { return write(static_cast<std::size_t>(pptr() - pbase())); }

  // The first `count` bytes; the others move to the front.
  bool write(std::size_t count) {
    const std::string text(pbase(), count);
    const std::string rest(pbase() + count, pptr());
    setp(buffer_.data(), end());
    std::ranges::copy(rest, pptr());
    pbump(static_cast<int>(rest.size()));
    return text.empty() || put(text);
  }

  bool put(std::string_view text) {
    const HANDLE handle = this->handle();
    DWORD done = 0;
    DWORD mode = 0;
    if (::GetConsoleMode(handle, &mode)) {
      const std::wstring wide = toWide(text);
      return ::WriteConsoleW(handle, wide.data(), static_cast<DWORD>(wide.size()), &done, nullptr);
    }
    return ::WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &done, nullptr) &&
           done == text.size();
  }

  [[nodiscard]] HANDLE handle() {
    const HANDLE given = ::GetStdHandle(which_);
    if (given != nullptr && given != INVALID_HANDLE_VALUE) return given;
    if (!console_) {
      ::AttachConsole(ATTACH_PARENT_PROCESS);
      console_ = OwnedHandle(::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
    }
    return console_.get();
  }

  DWORD which_;
  OwnedHandle console_;
  std::array<char, 8192> buffer_{};
};

std::vector<std::string> commandLineWords() {
  std::vector<std::string> words;
  int count = 0;
  wchar_t** const list = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  for (int index = 1; index < count; ++index) words.push_back(fromWide(list[index]));
  ::LocalFree(list);
  return words;
}

}  // namespace

class ProgramStart::Streams {
 public:
  Streams() : output_(std::cout.rdbuf(&newOutput_)), errors_(std::cerr.rdbuf(&newErrors_)) {}
  ~Streams() {
    std::cout.flush();
    std::cout.rdbuf(output_);
    std::cerr.rdbuf(errors_);
  }
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

 private:
  StandardStream newOutput_{STD_OUTPUT_HANDLE};
  StandardStream newErrors_{STD_ERROR_HANDLE};
  std::streambuf* output_;
  std::streambuf* errors_;
};

// The words that main gets have lost what the system's code page lacks.
ProgramStart::ProgramStart(int, char**)
    : arguments_(commandLineWords()), streams_(std::make_unique<Streams>()) {
  // No dialog of the system's for a missing disk: the call fails.
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

ProgramStart::~ProgramStart() = default;

}  // namespace platform
