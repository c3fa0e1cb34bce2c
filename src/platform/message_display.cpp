#include "platform/message_display.h"

#include <exception>
#include <iostream>

namespace platform {

std::string messageLine(const Message& message) {
  std::string line = message.title.empty() ? "" : message.title + ": ";
  bool broken = false;
  for (const char letter : message.prompt) {
    if (letter == '\r' || letter == '\n') {
      broken = true;
      continue;
    }
    if (broken && !line.empty() && !line.ends_with(' ')) line += ' ';
    broken = false;
    line += letter;
  }
  return line;
}

void StandardErrorDisplay::show(const Message& message) noexcept {
  try {
    std::cerr << messageLine(message) << std::endl;
  } catch (const std::exception&) {
    return;  // standard error was the last resort
  }
}

}  // namespace platform
