#include "jetsql/session_catalogue.h"

#include <utility>

#include "jetsql/sqlite/function_registration.h"
#include "jetsql/sqlite/linked_table.h"
#include "jetsql/sqlite/value_encoding.h"
#include "jetsql/syntax/database_reference.h"
#include "jetsql/syntax/saved_query.h"
#include "jetsql/translate/translation.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// They are kept as long as the session, since any prepared statement may refer to one.
constexpr std::size_t kMaxAggregates = 256;

// SQLite's memory statistics take a lock of the whole process and nobody reads them here. They can
// be switched off before its first use only.
void disableMemoryStatistics() {
  [[maybe_unused]] static const int status = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

ConnectionHandle openConnection(CallbackContext& callbacks) {
  disableMemoryStatistics();
  sqlite3* opened = nullptr;
  // A session is used by one thread at a time and needs no lock of SQLite's.
  const int status = sqlite3_open_v2(
      ":memory:", &opened,
      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY | SQLITE_OPEN_NOMUTEX,
      nullptr);
  ConnectionHandle connection(opened);
  if (status != SQLITE_OK) throw RuntimeError(error::kReserved, "SQLite could not be started.");
  registerFunctions(connection.get(), callbacks);
  return connection;
}

}  // namespace

SessionCatalogue::SessionCatalogue(const std::string& file, const SessionOptions& options,
                                   const platform::Clock& clock)
    : options_(options),
      callbacks_{{clock}},
      files_(file, options),
      connection_(openConnection(callbacks_)) {}

CatalogueObject SessionCatalogue::find(std::string_view name) { return find(files_.own(), name); }

CatalogueObject SessionCatalogue::findIn(const DatabaseReference& database, std::string_view name) {
  requireKnownKind(database.connect, name);
  if (!isOdbc(database.connect)) {
    return find(files_.other(files_.own(), database.path, connectValue(database.connect, "PWD")),
                name);
  }
  CatalogueObject& object = foundOutside_[database.connect + '\n' + std::string(name)];
  if (object.table == nullptr) object = addExternal(database.connect, name, name);
  return object;
}

CatalogueObject SessionCatalogue::find(OpenFile& file, std::string_view name) {
  const auto known = file.found.find(name);
  if (known != file.found.end()) return known->second;
  const jet::CatalogueEntry* entry = file.database->find(name);
  if (entry == nullptr) return {};
  const CatalogueObject object = load(file, *entry);
  file.found.emplace(entry->name, object);
  return object;
}

CatalogueObject SessionCatalogue::load(OpenFile& file, const jet::CatalogueEntry& entry) {
  switch (entry.type) {
    case jet::ObjectType::kTable:
      return addTable(*file.database, file.database->openTable(entry), entry.name);
    case jet::ObjectType::kLinkedTable:
      return addLinkedTable(file, entry);
    case jet::ObjectType::kLinkedOdbcTable:
      return addExternal(entry.connect, entry.foreignName, entry.name);
    case jet::ObjectType::kQuery: {
      auto& query = file.queries[entry.name];
      query =
          std::make_unique<SavedQuery>(rebuildQuery(entry.name, file.database->queryRows(entry)));
      return {nullptr, query.get()};
    }
    default:
      return {};
  }
}

CatalogueObject SessionCatalogue::addTable(jet::Database& database, jet::Table& table,
                                           const std::string& name) {
  auto added = std::make_unique<JetTable>(database, table, name, nextName(), callbacks_);
  added->registerIn(connection_.get());
  const CatalogueTable* schema = &added->schema();
  tables_[schema] = std::move(added);
  return {schema, nullptr};
}

CatalogueObject SessionCatalogue::addExternal(const std::string& connect,
                                              std::string_view foreignName, std::string_view name) {
  if (options_.external == nullptr) {
    throw RuntimeError(error::kConnectFailed, "ODBC--connection to '" + connect +
                                                  "' failed: linked table '" + std::string(name) +
                                                  "' cannot be reached from here.");
  }
  auto added =
      std::make_unique<ExternalTable>(*options_.external, connect, std::string(foreignName),
                                      std::string(name), nextName(), callbacks_);
  added->registerIn(connection_.get());
  externals_.push_back(std::move(added));
  return {&externals_.back()->schema(), nullptr};
}

// A link may lead to another link, but not back to itself.
CatalogueObject SessionCatalogue::addLinkedTable(OpenFile& file, const jet::CatalogueEntry& entry,
                                                 int links) {
  constexpr int kMaxLinks = 10;
  if (links == kMaxLinks) {
    throw RuntimeError(error::kCircularQuery,
                       "Circular reference caused by the linked table '" + entry.name + "'.");
  }
  requireKnownKind(entry.connect, entry.name);
  OpenFile& other = files_.other(file, entry.database, connectValue(entry.connect, "PWD"));
  const std::string& name = entry.foreignName.empty() ? entry.name : entry.foreignName;
  const jet::CatalogueEntry* target = other.database->find(name);
  if (target != nullptr && target->type == jet::ObjectType::kLinkedTable) {
    return addLinkedTable(other, *target, links + 1);
  }
  if (target != nullptr && target->type == jet::ObjectType::kLinkedOdbcTable) {
    return addExternal(target->connect, target->foreignName, entry.name);
  }
  return addTable(*other.database, other.database->openTable(name), entry.name);
}

JetTable* SessionCatalogue::jetTable(const CatalogueTable* table) const {
  const auto found = tables_.find(table);
  return found == tables_.end() ? nullptr : found->second.get();
}

std::vector<values::Variant> SessionCatalogue::values(const Translation& query) {
  const StatementHandle statement = prepare(query.sql);
  for (std::size_t i = 0; i < query.literals.size(); ++i) {
    bind(statement.get(), static_cast<int>(i) + 1, query.literals[i]);
  }
  std::vector<values::Variant> values;
  while (step(statement.get())) {
    values.push_back(decode(encodedColumn(statement.get(), 0), query.columns.at(0).type));
  }
  return values;
}

std::optional<std::string> SessionCatalogue::computedColumn(const CatalogueTable& table,
                                                            const IndexedExpression& key) {
  JetTable* jetTable = this->jetTable(&table);
  return jetTable == nullptr ? std::nullopt : jetTable->computedColumn(key);
}

std::optional<std::string> SessionCatalogue::expressionIndex(
    const CatalogueTable& table, const std::vector<IndexedExpression>& keys) {
  const JetTable* jetTable = this->jetTable(&table);
  if (jetTable == nullptr) return std::nullopt;
  return expressionIndexes_.find(connection_.get(), *jetTable, keys);
}

std::optional<std::string> SessionCatalogue::aggregateTable(const typed::Query& query) {
  if (aggregates_.size() == kMaxAggregates) return std::nullopt;
  auto plan = planAggregate(query, [this](const CatalogueTable* table) { return jetTable(table); });
  if (!plan) return std::nullopt;
  auto added = std::make_unique<HashAggregate>(std::move(*plan), nextName(), callbacks_);
  added->registerIn(connection_.get());
  aggregates_.push_back(std::move(added));
  return aggregates_.back()->source();
}

std::shared_ptr<RowQuery> SessionCatalogue::rowQuery(const typed::Query& query,
                                                     const Translation& translation) {
  return RowQuery::of(query, translation,
                      [this](const CatalogueTable* table) { return jetTable(table); });
}

StatementHandle SessionCatalogue::prepare(Translation& translation) {
  callbacks_.paths.clear();
  StatementHandle statement = prepare(translation.sql);
  if (translation.rowQuery && !translation.rowQuery->takePaths(callbacks_.paths)) {
    translation.rowQuery = nullptr;
  }
  callbacks_.paths.clear();
  return statement;
}

StatementHandle SessionCatalogue::prepare(const std::string& sql) {
  callbacks_.clear();
  sqlite3_stmt* prepared = nullptr;
  const int status = sqlite3_prepare_v3(connection_.get(), sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  StatementHandle statement(prepared);
  if (status != SQLITE_OK) fail();
  return statement;
}

std::vector<std::string> SessionCatalogue::plan(const std::string& sql) {
  constexpr int kDetail = 3;  // column of its rows
  const StatementHandle statement = prepare("EXPLAIN QUERY PLAN " + sql);
  std::vector<std::string> lines;
  while (step(statement.get())) {
    lines.emplace_back(encodedColumn(statement.get(), kDetail).bytes);
  }
  return lines;
}

bool SessionCatalogue::step(sqlite3_stmt* statement) {
  callbacks_.clear();
  const int status = sqlite3_step(statement);
  if (status == SQLITE_ROW) return true;
  if (status == SQLITE_DONE) return false;
  fail();
}

// What went wrong in SQLite: an error of ours that it carried, or its own.
void SessionCatalogue::fail() {
  callbacks_.rethrow();
  if (sqlite3_errcode(connection_.get()) == SQLITE_NOMEM) {
    throw RuntimeError(error::kOutOfStringSpace, "Out of string space.");
  }
  const std::string text = sqlite3_errmsg(connection_.get());
  if (text.find("integer overflow") != std::string::npos) {
    throw RuntimeError(error::kOverflow, "Overflow.");
  }
  if (text.find("too large") != std::string::npos || text.find("too many") != std::string::npos ||
      text.find("parser stack overflow") != std::string::npos ||
      text.find("at most") != std::string::npos) {
    throw RuntimeError(error::kQueryTooComplex, "Query is too complex: " + text + ".");
  }
  throw RuntimeError(error::kReserved, "The query could not be run: " + text + ".");
}

}  // namespace jetsql
