#include <iostream>
#include <optional>

#include "command.h"
#include "installed_shop.h"
#include "localdb/local_databases.h"
#include "platform/files.h"
#include "probes/network_probe.h"
#include "read_only_databases.h"
#include "server/odbc_source.h"
#include "settings/central_server.h"
#include "settlement/get_daily_data.h"
#include "settlement_page.h"

const std::string_view kSettlementDetails =
    R"(
  DAY is yyyy/MM/dd. Computes the 48 figures of each day as a job does, from the same three files of
  the program folder, and prints them with their labels, the server's columns and their sources.
  Nothing is written to the shop's files or logs, and nothing is marked as sent.

    --csv FILE    the figures for a spreadsheet, UTF-8
    --html FILE   a page a day, for printing

  Exit status: 0 all days were computed, 1 one ended early (its page says where), 2 it could not start.
)";

namespace {

constexpr std::size_t kDayLength = 10;

// The job's lines are not the command's to write.
class NoJobLog : public joblog::JobLog {
 public:
  using JobLog::JobLog;
  void append(std::string_view) override {}
};

struct Request {
  values::DateTime first;
  values::DateTime last;
  std::string csv;
  std::string html;
};

values::DateTime dayOf(std::string_view text) {
  const auto day = values::parseDate(text);
  if (!day) throw UsageError(std::string(text) + " is no day");
  return *day;
}

Request parse(const std::vector<std::string>& words) {
  Request request;
  std::string days;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool file = words[i] == "--csv" || words[i] == "--html";
    if (file && i + 1 == words.size()) throw UsageError(words[i] + " needs a file");
    if (file) {
      (words[i] == "--csv" ? request.csv : request.html) = words[i + 1];
      ++i;
    } else if (days.empty()) {
      days = words[i];
    } else {
      throw UsageError("settlement takes one DAY or DAY-DAY");
    }
  }
  if (days.size() != kDayLength && days.size() != 2 * kDayLength + 1) {
    throw UsageError("settlement takes a DAY or DAY-DAY, as 2013/08/01-2013/08/21");
  }
  request.first = dayOf(std::string_view(days).substr(0, kDayLength));
  request.last = dayOf(std::string_view(days).substr(days.size() - kDayLength));
  return request;
}

std::vector<SettledDay> settle(InstalledShop& shop, const Request& request) {
  Installation& program = shop.program;
  const auto external = server::makeOdbcSource();
  localdb::DBEngine engine(program.clock, external.get());
  localdb::LocalDatabases databases(engine,
                                    [](const std::string& line) { std::cerr << line << '\n'; });
  ReadOnlyDatabases reading(databases);
  NoJobLog log(program.folder, program.clock);
  const lib_결산::Dependencies dependencies{
      program.folder,
      reading,
      program.settings,
      program.clock,
      log,
      [](const std::string& line) { std::cerr << line << '\n'; },
      [&] {
        return lib_Network::PING(program.network, program.log,
                                 settings::centralHost(program.settings));
      }};
  std::vector<SettledDay> days;
  const int count = static_cast<int>(request.last.serial - request.first.serial) + 1;
  for (int i = 0; i < count; ++i) {
    SettledDay& settled = days.emplace_back();
    settled.day = {request.first.serial + i};
    (void)lib_결산::GetDailyData(dependencies, settled.day, settled.settlement);
  }
  return days;
}

}  // namespace

int runSettlement(const CommandLine& line) {
  const Request request = parse(line.arguments);
  InstalledShop shop(line.home());
  if (!shop.ready()) return kNotStarted;
  const auto days = settle(shop, request);
  if (!request.csv.empty()) platform::replaceFile(request.csv, settlementCsv(days));
  if (!request.html.empty()) {
    platform::replaceFile(request.html, settlementHtml(days, shop.start.values.shop.tradeName));
  }
  if (request.csv.empty() && request.html.empty()) std::cout << settlementText(days);
  for (const SettledDay& day : days) {
    if (day.settlement.failure) return 1;
  }
  return 0;
}
