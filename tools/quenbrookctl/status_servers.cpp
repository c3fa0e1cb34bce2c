#include "settings/central_server.h"
#include "status_parts.h"
#include "values/runtime_error.h"

namespace {

std::string shown(const std::string& failure) { return failure.empty() ? "응답" : failure; }

}  // namespace

void addServers(Report& report, const InstalledShop& shop, ServerTrials& trials) {
  try {
    const auto central = settings::centralServer(shop.program.settings);
    const auto [database, ftp] = trials.ask(central);
    report.sections.push_back({"servers",
                               "본사 서버",
                               {{"host", "주소", central.host},
                                {"database", "데이터베이스", shown(database)},
                                {"ftp", "FTP", shown(ftp)}}});
    if (!database.empty()) {
      report.problems.push_back("본사 데이터베이스가 응답하지 않습니다: " + database);
    }
    if (!ftp.empty()) report.problems.push_back("FTP 서버가 응답하지 않습니다: " + ftp);
  } catch (const RuntimeError& failure) {
    report.problems.push_back(failure.description());  // a port that is none
  }
}
