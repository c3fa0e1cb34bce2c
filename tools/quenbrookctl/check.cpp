#include <cstdio>
#include <iostream>

#include "command.h"
#include "platform/files.h"
#include "statement_check.h"

// One statement a line: a text with a line break in it is a statement broken in two, for the
// server as well.
int runCheck(const CommandLine& line) {
  if (line.arguments.size() != 1) throw UsageError("check takes one statement file");
  const std::string& path = line.arguments[0];
  const std::string content = platform::readFile(path);
  std::size_t number = 0;
  std::size_t refused = 0;
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t end = std::min(content.find('\n', at), content.size());
    std::string_view statement(content.data() + at, end - at);
    if (statement.ends_with('\r')) statement.remove_suffix(1);
    at = end + 1;
    ++number;
    if (const auto reason = checkStatement(statement)) {
      std::cout << path << ':' << number << ": " << *reason << '\n';
      ++refused;
    }
  }
  std::cout << number << " statements, " << refused << " that the server would refuse\n";
  return refused == 0 ? 0 : 1;
}
