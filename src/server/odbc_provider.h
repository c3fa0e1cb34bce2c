// The central database over ODBC.
//
//   const auto provider = server::makeOdbcProvider();
//   로그인 login(…, *provider, …);
//
// Errors: those of connection.h.
#pragma once

#include <memory>

#include "server/connection.h"

namespace server {

[[nodiscard]] std::unique_ptr<Provider> makeOdbcProvider();

}  // namespace server
