#include "server_trial.h"

#include "server/central_database.h"
#include "server/odbc_provider.h"
#include "transfer/ftp_account.h"
#include "transfer/upload_data.h"
#include "transfer/zuk_ftp_client.h"
#include "values/runtime_error.h"

namespace {

constexpr transfer::FtpLimits kLimits{10, 10, 10};

transfer::ZukFtpClient client(const settings::CentralServer& central) {
  return {[](const std::string&) {}, kLimits, {central.ftpTls, central.ftpCertificates}};
}

bool connect(transfer::ZukFtpClient& ftp, const settings::CentralServer& central) {
  return ftp.Connect(central.host, central.ftpPort, transfer::kFtpUser, transfer::kFtpPassword,
                     transfer::kRemoteFolder);
}

}  // namespace

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
  transfer::ZukFtpClient ftp = client(central);
  return connect(ftp, central) ? "" : ftp.lastFailure().description;
}

std::string sendTestFile(const settings::CentralServer& central, const std::string& file) {
  transfer::ZukFtpClient ftp = client(central);
  const bool arrived = connect(ftp, central) && ftp.PutFile(file, transfer::kTestFile);
  return arrived ? "" : ftp.lastFailure().description;
}

ServerAnswers ServerTrials::ask(const settings::CentralServer& central) {
  for (const auto& [server, answers] : known_) {
    if (server == central) return answers;
  }
  return known_.emplace_back(central, ServerAnswers{askDatabase(central), askFtp(central)}).second;
}
