// The central database over ODBC.
//
//   const auto provider = server::makeOdbcProvider();
//   server::CentralDatabase central(*provider, settings::centralServer(settings));
//
// Errors: those of connection.h.
#pragma once

#include <memory>

#include "server/connection.h"
#include "server/time_limits.h"

namespace server {

[[nodiscard]] std::unique_ptr<Provider> makeOdbcProvider(TimeLimits limits = {});

}  // namespace server
