#include "startup/command_line.h"

#include "text/utf8.h"

namespace StartMod {

namespace {

constexpr std::size_t kOneDay = 11;  // characters: run mode, date
constexpr std::size_t kRange = 22;   // run mode, date, any character, date
constexpr std::size_t kDate = 10;

}  // namespace

CommandLine splitCommandLine(std::string_view text) {
  const auto length = text::characterCount(text);
  if (length != kOneDay && length != kRange) return {};
  const auto part = [&](std::size_t first, std::size_t count) {
    return std::string(text::middle(text, first, count));
  };
  return {part(0, 1), part(1, kDate), part(length - kDate, kDate)};
}

}  // namespace StartMod
