#include "platform/text_file.h"

#include <algorithm>
#include <fstream>

#include "platform/code_page.h"
#include "platform/files.h"

namespace platform {

void appendLine(const std::string& path, std::string_view text) {
  thread_local CodePage korean(kKoreanCodePage);  // making one costs more than writing a line
  std::string line;
  line.reserve(text.size() + 2);
  korean.appendFromUtf8(text, line);
  appendToFile(path, line += "\r\n");
}

std::string readFirstLine(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return readFile(path);  // which says why it cannot be read
  std::string line;
  std::getline(file, line);
  line.erase(std::min(line.find('\r'), line.size()));
  return CodePage(kKoreanCodePage).toUtf8(line);
}

}  // namespace platform
