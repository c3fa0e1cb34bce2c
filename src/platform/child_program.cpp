#include "platform/child_program.h"

#include <utility>

namespace platform {

std::vector<std::string> ChildProgram::linesOf(Stream& stream) {
  const bool ended = exitStatus().has_value();
  auto& text = stream.unfinished;
  readWaiting(stream.pipe, text);
  std::vector<std::string> lines;
  for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
    lines.push_back(text.substr(0, end));
    text.erase(0, end + 1);
  }
  if (ended && !text.empty()) lines.push_back(std::exchange(text, {}));
  return lines;
}

}  // namespace platform
