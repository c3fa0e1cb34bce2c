// The central database: its account, its connection text, and the connection that the login opened.
//
//   central.buildConnectionString();
//   auto& connection = central.newConnection();
//
// Built once by start-up and passed on by reference.
#pragma once

#include <memory>
#include <string>

#include "server/connection.h"
#include "server/connection_text.h"
#include "settings/central_server.h"

namespace server {

class CentralDatabase {
 public:
  CentralDatabase(Provider& provider, settings::CentralServer where);

  // Rebuilds the account and the text from the settings.
  void buildConnectionString();
  [[nodiscard]] const std::string& connectionString() const { return connectionString_; }

  // Closes the previous connection.
  Connection& newConnection();

 private:
  Provider& provider_;
  settings::CentralServer where_;
  std::string connectionString_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace server
