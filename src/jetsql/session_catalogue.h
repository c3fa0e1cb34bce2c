// The catalogue of one open Jet file for the translator, and the SQLite connection that its queries
// run on: a table is registered there when a query first names it. Private to the room.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/database.h"
#include "jetsql/functions/name_map.h"
#include "jetsql/open_files.h"
#include "jetsql/session_options.h"
#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/expression_index.h"
#include "jetsql/sqlite/external_source.h"
#include "jetsql/sqlite/external_table.h"
#include "jetsql/sqlite/hash_aggregate.h"
#include "jetsql/sqlite/jet_table.h"
#include "jetsql/sqlite/row_query.h"
#include "jetsql/sqlite/sqlite_handle.h"
#include "jetsql/translate/catalogue.h"

namespace jetsql {

class SessionCatalogue : public Catalogue {
 public:
  SessionCatalogue(const std::string& file, const SessionOptions& options,
                   const platform::Clock& clock);

  [[nodiscard]] CatalogueObject find(std::string_view name) override;
  [[nodiscard]] CatalogueObject findIn(const DatabaseReference& database,
                                       std::string_view name) override;
  [[nodiscard]] std::vector<values::Variant> values(const Translation& query) override;
  [[nodiscard]] std::optional<std::string> computedColumn(const CatalogueTable& table,
                                                          const IndexedExpression& key) override;
  [[nodiscard]] std::optional<std::string> expressionIndex(
      const CatalogueTable& table, const std::vector<IndexedExpression>& keys) override;
  [[nodiscard]] std::optional<std::string> aggregateTable(const typed::Query& query) override;

  [[nodiscard]] std::shared_ptr<RowQuery> rowQuery(const typed::Query& query,
                                                   const Translation& translation) override;

  // Logs what is prepared and run from now on, until null is set.
  void setLog(ReadLog* log) { callbacks_.log = log; }
  [[nodiscard]] bool isLogged() const { return callbacks_.log != nullptr; }
  // What SQLite does with the rows of a prepared statement, as it explains its plan.
  [[nodiscard]] std::vector<std::string> plan(const std::string& sql);

  // Before a query is run: recomputes what was written since.
  void refreshIndexes() { expressionIndexes_.refresh(connection_.get()); }

  // Nullptr for a table of another system, whose rows have no lasting ids.
  [[nodiscard]] JetTable* jetTable(const CatalogueTable* table) const;

  [[nodiscard]] const jet::Database& database() const { return *files_.own().database; }
  [[nodiscard]] bool readOnly() const { return options_.readOnly; }
  [[nodiscard]] std::size_t mostResultBytes() const { return options_.mostResultBytes; }

  [[nodiscard]] StatementHandle prepare(const std::string& sql);
  // The same of a translation's. Its row query gets the access paths that SQLite chooses; it is
  // dropped where it cannot use them.
  [[nodiscard]] StatementHandle prepare(Translation& translation);
  // To the next row; false after the last. Throws the error that a callback met.
  [[nodiscard]] bool step(sqlite3_stmt* statement);
  // Whether the last error of prepare or step was one of a function, not of a table.
  [[nodiscard]] bool failedInFunction() const { return callbacks_.failedInFunction; }

 private:
  [[nodiscard]] CatalogueObject find(OpenFile& file, std::string_view name);
  [[nodiscard]] CatalogueObject load(OpenFile& file, const jet::CatalogueEntry& entry);
  [[nodiscard]] CatalogueObject addTable(jet::Database& database, jet::Table& table,
                                         const std::string& name);
  // `links`: how many led here.
  [[nodiscard]] CatalogueObject addLinkedTable(OpenFile& file, const jet::CatalogueEntry& entry,
                                               int links = 0);
  [[nodiscard]] CatalogueObject addExternal(const std::string& connect,
                                            std::string_view foreignName, std::string_view name);
  [[nodiscard]] std::string nextName() { return "t" + std::to_string(++names_); }
  [[noreturn]] void fail();

  SessionOptions options_;
  CallbackContext callbacks_;
  OpenFiles files_;
  std::unordered_map<const CatalogueTable*, std::unique_ptr<JetTable>> tables_;
  std::vector<std::unique_ptr<ExternalTable>> externals_;
  std::vector<std::unique_ptr<HashAggregate>> aggregates_;  // each of one translated query
  NameMap<CatalogueObject> foundOutside_;                   // by connect text and name
  ExpressionIndexes expressionIndexes_;
  int names_ = 0;
  ConnectionHandle connection_;  // declared after the tables, so that it closes before they go
};

}  // namespace jetsql
