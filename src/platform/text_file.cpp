#include "platform/text_file.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/code_page.h"
#include "platform/files.h"
#include "platform/random_access_file.h"

namespace platform {

void appendLine(const std::string& path, std::string_view text) {
  thread_local CodePage korean(kKoreanCodePage);  // making one costs more than writing a line
  std::string line;
  line.reserve(text.size() + 2);
  korean.appendFromUtf8(text, line);
  appendToFile(path, line += "\r\n");
}

std::string readFirstLine(const std::string& path) {
  const auto file = RandomAccessFile::open(path, RandomAccessFile::Mode::kReadOnly);
  std::string line;
  std::array<std::byte, 512> block{};
  for (std::size_t end = std::string::npos; end == std::string::npos;) {
    const std::size_t count = file.readAt(line.size(), block);
    if (count == 0) break;
    line.append(reinterpret_cast<const char*>(block.data()), count);
    end = line.find_first_of("\r\n");
    line.erase(std::min(end, line.size()));
  }
  return CodePage(kKoreanCodePage).toUtf8(line);
}

}  // namespace platform
