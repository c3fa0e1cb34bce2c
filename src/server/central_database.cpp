#include "server/central_database.h"

#include <utility>

namespace server {

CentralDatabase::CentralDatabase(Provider& provider, settings::CentralServer where)
    : provider_(provider), where_(std::move(where)) {}

void CentralDatabase::buildConnectionString() {
  connectionString_ = ServerConnectionString(serverAccount(where_));
}

Connection& CentralDatabase::newConnection() {
  connection_ = provider_.createConnection();
  return *connection_;
}

}  // namespace server
