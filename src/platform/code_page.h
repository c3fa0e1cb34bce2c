// Text in a Windows code page, to and from UTF-8.
//
//   CodePage korean(kKoreanCodePage);
//   std::string line = korean.fromUtf8("홀 1번");      // two bytes a syllable
//   std::string utf8 = korean.toUtf8(line);
//
// A character that the code page lacks is written as '?', bytes that are no text in it are read as
// U+FFFD. Plain ASCII is copied without conversion. One object serves one thread at a time and is
// cheap to use again and again; it keeps the system's converters once it needed them.
// Errors: 5 for a code page that the system does not know.
#pragma once

#include <memory>
#include <string>
#include <string_view>

constexpr int kKoreanCodePage = 949;

class CodePageConverter;

class CodePage {
 public:
  // `number` as Windows counts them: 949 Korean, 1252 Western, 65001 UTF-8.
  explicit CodePage(int number);
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;
  CodePage(CodePage&&) noexcept;
  CodePage& operator=(CodePage&&) noexcept;
  ~CodePage();

  [[nodiscard]] int number() const { return number_; }

  [[nodiscard]] std::string toUtf8(std::string_view text);
  [[nodiscard]] std::string fromUtf8(std::string_view text);

  // The same, appended to `out`; for callers that keep one buffer for many texts.
  void appendUtf8(std::string_view text, std::string& out);
  void appendFromUtf8(std::string_view text, std::string& out);
  // Half a surrogate pair is written as U+FFFD is.
  void appendFromUtf16(std::u16string_view units, std::string& out);

 private:
  class Encoder;
  Encoder& encoder();

  int number_;
  std::unique_ptr<CodePageConverter> decoder_;
  std::unique_ptr<Encoder> encoder_;
};
