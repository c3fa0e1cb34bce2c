#include <iostream>

#include "command.h"
#include "platform/files.h"
#include "statement_check.h"

int runCheck(const CommandLine& line) {
  if (line.arguments.size() != 1) throw UsageError("check takes one statement file");
  const std::string& path = line.arguments[0];
  const CheckedStatements checked = checkStatements(
      platform::readFile(path), [&](std::size_t lineNumber, const std::string& reason) {
        std::cout << path << ':' << lineNumber << ": " << reason << '\n';
      });
  std::cout << checked.statements << " statements, " << checked.refused
            << " that the server would refuse\n";
  return checked.refused == 0 ? 0 : 1;
}
