#include "jetsql/sqlite/expression_index.h"

#include <sqlite3.h>

#include "jetsql/sqlite/jet_table.h"
#include "jetsql/translate/sql_text.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr double kFewRows = 1000;
constexpr double kMaxRows = 1 << 20;  // some 40 MiB of keys, most of them in SQLite's own file
constexpr std::size_t kMaxTables = 16;

bool run(sqlite3* connection, const std::string& sql) {
  return sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

std::optional<std::string> ComputedKeys::find(sqlite3* connection, const JetTable& table,
                                              const ComputedKey& key) {
  for (const Known& known : known_)
    if (known.table == &table && known.key.expression == key.expression) return known.name;
  const double rows = table.estimatedRows();
  if (rows < kFewRows || rows > kMaxRows || known_.size() == kMaxTables) return {};
  Known made{&table, key, "keys" + std::to_string(known_.size()), 0};
  if (!run(connection, "CREATE TEMP TABLE " + made.name + " (key" +
                           (key.isText ? " COLLATE JET" : "") +
                           ", row INTEGER, PRIMARY KEY (key, row)) WITHOUT ROWID"))
    return {};
  if (!build(connection, made)) {
    // An expression that fails for some row is left to the query itself.
    run(connection, "DROP TABLE " + made.name);
    return {};
  }
  known_.push_back(std::move(made));
  return known_.back().name;
}

std::size_t ComputedKeys::changesOf(const Known& known) {
  std::size_t changes = 0;
  for (const std::size_t column : known.key.columns) changes += known.table->changesOf(column);
  return changes;
}

bool ComputedKeys::build(sqlite3* connection, Known& known) {
  known.changes = changesOf(known);
  // A key that is Null cannot be kept and is left out.
  return run(connection, "INSERT OR IGNORE INTO " + known.name + " SELECT " + known.key.expression +
                             ", k.rowid FROM " + quotedName(known.table->schema().sqliteName) +
                             " AS k");
}

void ComputedKeys::refresh(sqlite3* connection) {
  for (Known& known : known_) {
    if (known.changes == changesOf(known)) continue;
    if (!run(connection, "DELETE FROM " + known.name) || !build(connection, known))
      throw RuntimeError(error::kReserved, "The keys of " + known.table->schema().name +
                                               " could not be computed again.");
  }
}

}  // namespace jetsql
