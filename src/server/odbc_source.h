// Tables that a Jet file links to another database by ODBC.
//
//   const auto source = server::makeOdbcSource();
//   session options: .external = source.get()
//
// The connect text is the Jet file's own, "ODBC;DSN=…" or "ODBC;DRIVER={…};…". Connections stay
// open as long as the source lives; rows keep theirs beyond that. A server that stayed silent is
// asked again after a minute, until then it is an error at once.
// Errors: 3151 the connection failed, 3146 the call failed, each with the driver's text.
#pragma once

#include <memory>

#include "jetsql/sqlite/external_source.h"
#include "server/time_limits.h"

namespace server {

[[nodiscard]] std::unique_ptr<jetsql::ExternalSource> makeOdbcSource(TimeLimits limits = {});

}  // namespace server
