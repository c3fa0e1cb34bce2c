#include "log/error_log.h"

#include <exception>
#include <iostream>
#include <utility>

#include "log/failure.h"
#include "platform/files.h"
#include "platform/text_file.h"

namespace joblog {

std::string failureLine(const Failure& failure) {
  std::string line = failure.step + ": ";
  if (failure.number != 0) line += "(" + std::to_string(failure.number) + ") ";
  line += failure.description;
  if (!failure.left.empty()) line += " - " + failure.left;
  for (char& c : line) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return line;
}

ErrorLog::ErrorLog(std::string programFolder, const platform::Clock& clock)
    : programFolder_(std::move(programFolder)), clock_(clock) {}

void ErrorLog::report(std::string_view line) noexcept {
  if (line == latest_) return;
  try {
    latest_ = line;
    std::cerr << line << std::endl;
    platform::appendLine(
        platform::joinPath(programFolder_, kErrorLogName),
        values::formatTime(clock_.now(), values::kMomentFormat) + " " + std::string(line));
  } catch (const std::exception& failure) {
    std::cerr << kErrorLogName << ": " << failure.what() << std::endl;
  }
}

}  // namespace joblog
