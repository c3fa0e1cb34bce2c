#include <iostream>

#include "command.h"
#include "status_parts.h"

const std::string_view kStatusDetails =
    R"(
  One page that answers why numbers are missing: the shop as the program understands it, what waits
  to be sent, jobs that were killed, the last job and the last transfer, the last 31 days by kind of
  data, and whether the data files and the servers answer. Changes nothing.

    --json   the same for a program

  Exit status: 0 all is well, 1 something needs a person (the lines under 확인할 것).
)";

int runStatus(const CommandLine& line) {
  const bool json = line.arguments == std::vector<std::string>{"--json"};
  if (!json && !line.arguments.empty()) throw UsageError("status takes --json or nothing");
  InstalledShop shop(line.home, InstalledShop::Reports::kToStandardErrorOnly);
  Report report;
  addIdentity(report, shop);
  addWaiting(report, shop);
  addHistory(report, shop);
  if (shop.ready()) addRows(report, shop);
  addServers(report, shop);
  std::cout << (json ? reportJson(report) : reportText(report));
  return report.problems.empty() ? 0 : 1;
}
