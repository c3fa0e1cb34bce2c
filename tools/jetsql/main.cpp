// jetsql: shows the contents of a Jet file. Read-only.
//
//   jetsql shop.mdb                          names of tables and saved queries
//   jetsql shop.mdb 'SELECT * FROM Selling'  rows as CSV in UTF-8
//   jetsql --explain shop.mdb 'SELECT …'     how the query is run, for whoever asks why it is slow
#include <chrono>
#include <cstddef>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "csv.h"
#include "jetsql/session.h"
#include "platform/clock.h"
#include "platform/program_start.h"
#include "report_lines.h"
#include "values/runtime_error.h"

namespace {

constexpr std::string_view kUsage =
    "usage: jetsql [--password TEXT] [--time] FILE [QUERY]\n"
    "       jetsql [--password TEXT] --explain FILE QUERY\n"
    "Lists the tables and saved queries of a Jet file, or prints the rows of a query (or of a\n"
    "table or saved query, by its name) as CSV: a header row; text in quotes, Null as nothing,\n"
    "Yes/No as -1 or 0, dates as yyyy-MM-dd hh:nn:ss, binary as 0xHEX. Changes nothing.\n"
    "--time     prints to standard error how long the query took\n"
    "--explain  runs the query and prints how: which tables were read how, and how long it took\n";

struct CommandLine {
  std::string password;
  bool time = false;
  bool explain = false;
  std::vector<std::string> operands;  // FILE, then QUERY
};

// Nothing for a wrong command line.
std::optional<CommandLine> parse(const std::vector<std::string>& arguments) {
  CommandLine line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--password" && i + 1 < arguments.size()) {
      line.password = arguments[++i];
    } else if (arguments[i] == "--time") {
      line.time = true;
    } else if (arguments[i] == "--explain") {
      line.explain = true;
    } else if (arguments[i].starts_with("--")) {
      return {};
    } else {
      line.operands.push_back(arguments[i]);
    }
  }
  if (line.operands.empty() || line.operands.size() > 2) return {};
  if (line.explain && line.operands.size() < 2) return {};
  return line;
}

void printNames(const jetsql::Session& session) {
  for (const std::string& name : session.tableNames()) std::cout << "table\t" << name << '\n';
  for (const std::string& name : session.queryNames()) std::cout << "query\t" << name << '\n';
}

void printRows(jetsql::Session& session, const std::string& query, bool withTime) {
  const auto begin = std::chrono::steady_clock::now();
  const auto rows = session.openRecordSet(query);
  printCsv(*rows, std::cout);
  if (!withTime) return;
  std::cerr << rows->recordCount() << (rows->recordCount() == 1 ? " row in " : " rows in ")
            << milliseconds(std::chrono::steady_clock::now() - begin) << '\n';
}

int run(const CommandLine& line) {
  const platform::SystemClock clock;
  jetsql::SessionOptions options;
  options.password = line.password;
  const auto session = jetsql::Session::open(line.operands[0], options, clock);
  if (line.operands.size() == 1) {
    printNames(*session);
  } else if (line.explain) {
    for (const std::string& text : reportLines(session->explain(line.operands[1]))) {
      std::cout << text << '\n';
    }
  } else {
    printRows(*session, line.operands[1], line.time);
  }
  return std::cout.flush() ? 0 : 1;
}

}  // namespace

int main(int count, char** words) {
  const platform::ProgramStart start(count, words);
  try {
    const auto& arguments = start.arguments();
    if (!arguments.empty() && arguments[0] == "--help") {
      std::cout << kUsage;
      return 0;
    }
    const auto line = parse(arguments);
    if (!line) {
      std::cerr << kUsage;
      return 2;
    }
    return run(*line);
  } catch (const RuntimeError& problem) {
    std::cerr << "jetsql: (" << problem.number() << ") " << problem.description() << '\n';
  } catch (const std::exception& problem) {
    std::cerr << "jetsql: " << problem.what() << '\n';
  }
  return 1;
}
