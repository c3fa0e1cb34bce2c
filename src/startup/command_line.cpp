#include "startup/command_line.h"

#include <vector>

namespace StartMod {

namespace {

constexpr std::size_t kOneDay = 11;  // characters: run mode, date
constexpr std::size_t kRange = 22;   // run mode, date, any character, date
constexpr std::size_t kDate = 10;

// The byte offset of each character, and the length of the text as the last element.
std::vector<std::size_t> characterStarts(std::string_view text) {
  std::vector<std::size_t> starts;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool continued = (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    if (!continued) starts.push_back(at);
  }
  starts.push_back(text.size());
  return starts;
}

}  // namespace

CommandLine splitCommandLine(std::string_view text) {
  const auto starts = characterStarts(text);
  const auto length = starts.size() - 1;
  if (length != kOneDay && length != kRange) return {};
  const auto part = [&](std::size_t first, std::size_t count) {
    return std::string(text.substr(starts[first], starts[first + count] - starts[first]));
  };
  return {part(0, 1), part(1, kDate), part(length - kDate, kDate)};
}

}  // namespace StartMod
