#include "jetsql/sqlite/expression_index.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "jetsql/sqlite/jet_table.h"
#include "jetsql/sqlite/read_log.h"
#include "jetsql/translate/sql_text.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr double kMaxRows = 1 << 20;  // some 40 MiB, most of it in SQLite's temporary file
constexpr std::size_t kMaxTables = 32;

bool run(sqlite3* connection, const std::string& sql) {
  return sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

std::optional<std::string> ExpressionIndexes::find(sqlite3* connection, const JetTable& table,
                                                   const std::vector<IndexedExpression>& keys) {
  const auto hasKeys = [&](const Index& index) {
    return index.table == &table &&
           std::ranges::equal(index.keys, keys, {}, &IndexedExpression::sql,
                              &IndexedExpression::sql);
  };
  const auto known = std::ranges::find_if(indexes_, hasKeys);
  if (known != indexes_.end()) return known->name;
  if (table.estimatedRows() > kMaxRows || indexes_.size() == kMaxTables) return {};
  Index made{&table, keys, "keys" + std::to_string(indexes_.size()), 0, BuildAge(table.database())};
  std::string columns;
  std::string names;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::string name = "key" + std::to_string(i);
    columns += name + (keys[i].isText ? " COLLATE JET, " : ", ");
    names += name + ", ";
  }
  if (!run(connection, "CREATE TEMP TABLE " + made.name + " (" + columns +
                           "row INTEGER, PRIMARY KEY (" + names + "row)) WITHOUT ROWID")) {
    return {};
  }
  if (!build(connection, made)) {
    // An expression fails for some row: the query itself may not reach that row.
    run(connection, "DROP TABLE " + made.name);
    return {};
  }
  indexes_.push_back(std::move(made));
  return indexes_.back().name;
}

std::size_t ExpressionIndexes::changesOf(const Index& index) {
  std::size_t changes = 0;
  for (const IndexedExpression& key : index.keys) {
    for (const std::size_t column : key.columns) changes += index.table->changesOf(column);
  }
  return changes;
}

bool ExpressionIndexes::build(sqlite3* connection, Index& index) {
  index.changes = changesOf(index);
  index.age = BuildAge(index.table->database());
  // A Null key violates the primary key and is ignored.
  QueryReport::IndexBuild build{index.table->schema().name, "computed from"};
  std::string values;
  for (const IndexedExpression& key : index.keys) {
    values += key.sql + ", ";
    for (const std::size_t column : key.columns) build.key += " " + index.table->nameOf(column);
  }
  ReadLog* log =
      std::exchange(index.table->callbacks().log, nullptr);  // its own reads do not count
  bool done = false;
  {
    const TimeTaken time(build.time);
    done = run(connection, "INSERT OR IGNORE INTO " + index.name + " SELECT " + values +
                               "k.rowid FROM " + quotedName(index.table->schema().sqliteName) +
                               " AS k");
  }
  build.rows = static_cast<std::size_t>(sqlite3_changes(connection));
  index.table->callbacks().log = log;
  if (log != nullptr) log->addBuild(std::move(build));
  index.age.built();
  return done;
}

void ExpressionIndexes::refresh(sqlite3* connection) {
  for (Index& index : indexes_) {
    if (index.changes == changesOf(index) && !index.age.isOutdated()) continue;
    if (!run(connection, "DELETE FROM " + index.name) || !build(connection, index)) {
      throw RuntimeError(error::kReserved, "An index in memory on " + index.table->schema().name +
                                               " could not be rebuilt.");
    }
  }
}

}  // namespace jetsql
