// One direction of the system's converter between a code page and UTF-8; for code_page.cpp only.
//
//   CodePageConverter decoder(949, CodePageConverter::Direction::kToUtf8);
//   decoder.append(bytes, text);
//
// Bytes that are no text in the code page become U+FFFD one by one, a character that it lacks '?'.
// Errors: 5 for a code page that the system does not know.
#pragma once

#include <memory>
#include <string>
#include <string_view>

class CodePageConverter {
 public:
  enum class Direction { kToUtf8, kFromUtf8 };

  CodePageConverter(int codePage, Direction direction);
  CodePageConverter(const CodePageConverter&) = delete;
  CodePageConverter& operator=(const CodePageConverter&) = delete;
  ~CodePageConverter();

  void append(std::string_view text, std::string& out);

 private:
  class Implementation;

  std::unique_ptr<Implementation> implementation_;
};
