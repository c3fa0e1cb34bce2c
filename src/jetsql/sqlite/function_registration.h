// Registers Jet's functions, operators, aggregates and collation with a SQLite connection.
#pragma once

struct sqlite3;

namespace jetsql {

struct CallbackContext;

// `callbacks` outlives the connection. Names and signatures: functions.h, aggregates.h.
void registerFunctions(sqlite3* database, CallbackContext& callbacks);

}  // namespace jetsql
