// The collation JET of a SQLite connection: texts compare as text_compare.h compares them.
#pragma once

struct sqlite3;

namespace jetsql {

void registerCollation(sqlite3* connection);

}  // namespace jetsql
