// jetcheck: says whether Jet files are whole. Read-only.
//
//   jetcheck data.mdb config.mdb    a line a file, or a line a fault
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "jetcheck/file_check.h"
#include "platform/program_start.h"

namespace {

constexpr std::string_view kUsage =
    "usage: jetcheck FILE...\n"
    "Says whether Jet files (.mdb, .accdb) are whole: a line for each file that is, else a line "
    "for\n"
    "each fault, with page, row and index. Changes nothing and takes no locks: a file that is "
    "being\n"
    "written to at the moment may look faulty. No password is needed.\n"
    "Exit status: 0 all whole, 1 faults, 2 a file could not be read or is no Jet file.\n";

std::string summaryLine(const jetcheck::Summary& found) {
  std::string line = "whole: " + std::to_string(found.tables) + " tables, " +
                     std::to_string(found.rows) + " rows, " + std::to_string(found.indexes) +
                     " indexes, " + std::to_string(found.pages) + " pages";
  if (found.lostPages != 0) {
    line += ", " + std::to_string(found.lostPages) + " of them empty and not free";
  }
  return line;
}

enum Status { kWhole = 0, kFaulty = 1, kUnreadable = 2 };

Status check(const std::string& path) {
  const auto print = [&](const std::string& line) { std::cout << path << ": " << line << '\n'; };
  try {
    const jetcheck::Summary found = jetcheck::checkFile(path, print);
    if (found.faults != 0) return kFaulty;
    print(summaryLine(found));
    return kWhole;
  } catch (const std::exception& problem) {
    std::cout.flush();
    std::cerr << "jetcheck: " << path << ": " << problem.what() << '\n';
    return kUnreadable;
  }
}

}  // namespace

int main(int count, char** words) {
  const platform::ProgramStart start(count, words);
  const auto& arguments = start.arguments();
  if (!arguments.empty() && arguments[0] == "--help") {
    std::cout << kUsage;
    return kWhole;
  }
  if (arguments.empty() || arguments[0].starts_with("--")) {
    std::cerr << kUsage;
    return kUnreadable;
  }
  Status worst = kWhole;
  for (const std::string& path : arguments) worst = std::max(worst, check(path));
  return std::cout.flush() ? worst : kUnreadable;
}
