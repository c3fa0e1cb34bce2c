#include "server/connection_text.h"

namespace server {

ServerAccount serverAccount(const settings::CentralServer& central) {
  ServerAccount account;
  account.host = central.host;
  account.port = central.databasePort;
  return account;
}

std::string ServerConnectionString(const ServerAccount& account) {
  std::string text = " DRIVER={MySQL ODBC 3.51 Driver};SERVER=" + account.host +
                     ";DATABASE=" + account.databaseName + ";UID=" + account.user +
                     ";PWD=" + account.password + ";OPTION=" + std::to_string(account.option);
  if (account.port) text += ";PORT=" + std::to_string(*account.port);
  return text;
}

}  // namespace server
