#include <algorithm>
#include <iostream>
#include <iterator>

#include "command.h"
#include "platform/files.h"
#include "statement_check.h"
#include "text/ascii.h"

namespace {

// Whether a line begins a statement; one that does not may be the rest of a text with line breaks.
bool beginsStatement(std::string_view line) {
  constexpr std::string_view kOpenings[] = {"insert into ", "delete from "};
  return std::any_of(std::begin(kOpenings), std::end(kOpenings), [&](std::string_view opening) {
    return text::startsWithIgnoringAsciiCase(line, opening);
  });
}

// Up to the next line that begins a statement.
std::string_view linesOfStatement(std::string_view content) {
  std::size_t end = content.find('\n');
  while (end != std::string_view::npos && !beginsStatement(content.substr(end + 1))) {
    end = content.find('\n', end + 1);
  }
  return content.substr(0, end == std::string_view::npos ? end : end + 1);
}

}  // namespace

int runCheck(const CommandLine& line) {
  if (line.arguments.size() != 1) throw UsageError("check takes one statement file");
  const std::string& path = line.arguments[0];
  const std::string content = platform::readFile(path);
  std::size_t statements = 0;
  std::size_t refused = 0;
  std::size_t lineNumber = 1;
  for (std::size_t at = 0; at < content.size(); ++statements) {
    const std::string_view rest = std::string_view(content).substr(at);
    std::string_view statement = rest.substr(0, rest.find('\n') + 1);
    // Either whole in its line, or broken, or a text in it continues in the following lines.
    auto reason = checkStatement(statement);
    if (reason) {
      statement = linesOfStatement(rest);
      reason = checkStatement(statement);
    }
    if (reason) {
      std::cout << path << ':' << lineNumber << ": " << *reason << '\n';
      ++refused;
    }
    lineNumber += static_cast<std::size_t>(std::count(statement.begin(), statement.end(), '\n'));
    at += statement.size();
  }
  std::cout << statements << " statements, " << refused << " that the server would refuse\n";
  return refused == 0 ? 0 : 1;
}
