#include "server/central_database.h"
#include "server/odbc_provider.h"
#include "settings/central_server.h"
#include "status_parts.h"
#include "transfer/ftp_account.h"
#include "transfer/zuk_ftp_client.h"
#include "values/runtime_error.h"

namespace {

constexpr transfer::FtpLimits kLimits{10, 10, 10};

// Empty, or why it does not answer.
std::string askDatabase(const settings::CentralServer& central) {
  try {
    const auto provider = server::makeOdbcProvider();
    server::CentralDatabase database(*provider, central);
    database.buildConnectionString();
    server::Connection& connection = database.newConnection();
    connection.setConnectionString(database.connectionString());
    connection.open();
    return "";
  } catch (const RuntimeError& failure) {
    return failure.description();
  }
}

std::string askFtp(const settings::CentralServer& central) {
  transfer::ZukFtpClient ftp([](const std::string&) {}, kLimits);
  const bool answers =
      ftp.Connect(central.host, central.ftpPort, transfer::kFtpUser, transfer::kFtpPassword, "/MU");
  return answers ? "" : ftp.lastFailure().description;
}

std::string shown(const std::string& failure) { return failure.empty() ? "응답" : failure; }

}  // namespace

void addServers(Report& report, InstalledShop& shop) {
  try {
    const auto central = settings::centralServer(shop.program.settings);
    const std::string database = askDatabase(central);
    const std::string ftp = askFtp(central);
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
