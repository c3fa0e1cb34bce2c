// What the whole program knows of the central database: its account, the text that connects to it,
// and the connection that the login opened.
//
//   central.buildConnectionString();
//   auto& connection = central.newConnection();
//
// Built once by start-up and handed on.
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

  // Sets the account and the text anew.
  void buildConnectionString();
  [[nodiscard]] const std::string& connectionString() const { return connectionString_; }

  // Lets go of the connection before it.
  Connection& newConnection();

 private:
  Provider& provider_;
  settings::CentralServer where_;
  std::string connectionString_;
  std::unique_ptr<Connection> connection_;
};

}  // namespace server
