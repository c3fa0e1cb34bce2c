#include "platform/files.h"
#include "server_trial.h"
#include "settings/profile_reader.h"
#include "setup_parts.h"
#include "values/runtime_error.h"

namespace {

// What unixODBC says of a driver that is not registered, or whose library is missing.
bool isDriverMissing(const std::string& why) {
  return why.find("Can't open lib") != std::string::npos || why.find("IM002") != std::string::npos;
}

void tryDatabase(Setup& setup, const settings::CentralServer& central) {
  const std::string why = askDatabase(central);
  if (why.empty()) {
    SetupPage::right("데이터베이스가 응답합니다: " + central.host);
  } else if (isDriverMissing(why)) {
    setup.page.missing(
        "ODBC 드라이버가 등록되어 있지 않습니다. 관리자 권한으로: apt install odbc-mariadb 다음에 "
        "/opt/quenbrook/register-odbc-driver (" +
        why + ")");
  } else {
    setup.page.missing(
        "본사 데이터베이스가 응답하지 않습니다: " + why +
        ". 인터넷과 config.ini의 ServerHost, DbPort를 확인하고, 맞으면 본사에 알리십시오.");
  }
}

void tryFtp(Setup& setup, const settings::CentralServer& central) {
  const std::string why = sendTestFile(central, setup.file("Pellmorn.exe"));
  if (why.empty()) {
    SetupPage::right("FTP 서버에 시험 파일을 보냈습니다: " + central.host + ":" +
                     std::to_string(central.ftpPort));
  } else {
    setup.page.missing(
        "FTP 서버에 시험 파일을 보낼 수 없습니다: " + why +
        ". 방화벽과 config.ini의 ServerHost, FtpPort를 확인하고, 맞으면 본사에 알리십시오.");
  }
}

}  // namespace

void tryServers(Setup& setup) {
  try {
    lib_Setting::ProfileReader profile;
    profile.setFile(setup.file("config.ini"));
    const auto central = settings::centralServer(profile);
    tryDatabase(setup, central);
    tryFtp(setup, central);
  } catch (const RuntimeError& failure) {
    setup.page.missing(failure.description());  // a port that is none
  }
}
