#include "jetsql/session.h"

#include <optional>
#include <utility>

#include "jetsql/plan_notes.h"
#include "jetsql/record_set_implementation.h"
#include "jetsql/session_catalogue.h"
#include "jetsql/sqlite/read_log.h"
#include "jetsql/statement_cache.h"
#include "jetsql/translate/translation.h"
#include "values/runtime_error.h"

namespace jetsql {

class Session::Implementation {
 public:
  Implementation(const std::string& file, const SessionOptions& options,
                 const platform::Clock& clock)
      : catalogue(file, options, clock) {}

  // Runs a query. An error in a computed column is raised when that field is read.
  [[nodiscard]] std::unique_ptr<RecordSet> open(std::string_view source,
                                                const std::shared_ptr<Session>& session);

  [[nodiscard]] QueryReport explain(std::string_view source,
                                    const std::shared_ptr<Session>& session);

  SessionCatalogue catalogue;

 private:
  [[nodiscard]] QueryReport explain(std::string_view source,
                                    const std::shared_ptr<Session>& session, ColumnErrors errors);
  [[nodiscard]] std::unique_ptr<RecordSet> openCached(std::string_view source,
                                                      const std::shared_ptr<Session>& session);
  [[nodiscard]] PreparedQuery prepare(Translation& translation);
  [[nodiscard]] std::unique_ptr<RecordSet> run(const PreparedQuery& query,
                                               const std::vector<values::Variant>& literals,
                                               const std::shared_ptr<Session>& session);

  [[nodiscard]] static bool appendRows(RowQuery& query,
                                       const std::vector<values::Variant>& literals,
                                       RecordSet::Implementation& rows);
  void appendRows(sqlite3_stmt* statement, const std::vector<values::Variant>& literals,
                  RecordSet::Implementation& rows);

  StatementCache cache_;  // declared after the catalogue: statements go before the connection
};

namespace {

// The cache key of a text whose literals are part of its SQL.
std::string exactKey(std::string_view text) { return '\x01' + std::string(text); }

std::shared_ptr<const QueryLayout> layoutOf(const Translation& translation,
                                            const SessionCatalogue& catalogue) {
  auto layout = std::make_shared<QueryLayout>();
  layout->columns = translation.columns;
  layout->computedTypes.resize(translation.computedCount);
  for (std::size_t i = 0; i < translation.columns.size(); ++i) {
    const Translation::Column& column = translation.columns[i];
    layout->fields.push_back({column.name, column.type});
    layout->byName.emplace(column.name, i);
    if (!column.base) layout->computedTypes.at(column.computed) = column.type;
  }
  for (const Translation::Source& source : translation.sources) {
    layout->sources.push_back(catalogue.jetTable(source.table));
  }
  layout->updatable = translation.updatable;
  return layout;
}

class LogScope {
 public:
  LogScope(SessionCatalogue& catalogue, ReadLog& log) : catalogue_(catalogue) {
    catalogue.setLog(&log);
  }
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;
  ~LogScope() { catalogue_.setLog(nullptr); }

 private:
  SessionCatalogue& catalogue_;
};

}  // namespace

PreparedQuery Session::Implementation::prepare(Translation& translation) {
  StatementHandle statement = catalogue.prepare(translation);
  return {std::move(statement), layoutOf(translation, catalogue), translation.rowQuery};
}

std::unique_ptr<RecordSet> Session::Implementation::open(std::string_view source,
                                                         const std::shared_ptr<Session>& session) {
  try {
    return openCached(source, session);
  } catch (const RuntimeError&) {
    if (!catalogue.failedInFunction()) throw;
  }
  // The error may be in a column that nobody reads. The statement that keeps errors as values is
  // slower and rare, so it is not cached.
  Translation translation = translate(normalize(source), catalogue, ColumnErrors::kDefer);
  return run(prepare(translation), translation.literals, session);
}

std::unique_ptr<RecordSet> Session::Implementation::openCached(
    std::string_view source, const std::shared_ptr<Session>& session) {
  if (const auto known = cache_.match(source)) return run(*known->query, known->literals, session);
  NormalizedQuery text = normalize(source);
  if (const PreparedQuery* query = cache_.find(text.key)) {
    return run(*query, text.literals, session);
  }
  if (const PreparedQuery* query = cache_.find(exactKey(source))) return run(*query, {}, session);
  std::string key = text.key;
  std::optional<QueryTemplate> literalsApart(text);
  Translation translation = translate(std::move(text), catalogue);
  PreparedQuery prepared = prepare(translation);
  if (translation.dataDependent) return run(prepared, translation.literals, session);
  if (translation.exactTextOnly) {
    key = exactKey(source);
    literalsApart.reset();
  }
  return run(cache_.insert(std::move(key), std::move(prepared), std::move(literalsApart)),
             translation.literals, session);
}

std::unique_ptr<RecordSet> Session::Implementation::run(
    const PreparedQuery& query, const std::vector<values::Variant>& literals,
    const std::shared_ptr<Session>& session) {
  const auto emptyRows = [&] {
    return std::make_unique<RecordSet::Implementation>(session, query.layout, !catalogue.readOnly(),
                                                       catalogue.mostResultBytes());
  };
  auto rows = emptyRows();
  const bool isComplete =
      query.rowQuery && !catalogue.isLogged() && appendRows(*query.rowQuery, literals, *rows);
  if (!isComplete) {
    rows = emptyRows();
    appendRows(query.statement.get(), literals, *rows);
  }
  rows->endOfRows();
  return std::make_unique<RecordSet>(std::move(rows));
}

// False where the query meets an error, which SQLite then meets in its own way.
bool Session::Implementation::appendRows(RowQuery& query,
                                         const std::vector<values::Variant>& literals,
                                         RecordSet::Implementation& rows) {
  try {
    rows.reorder(query.run(literals, [&rows](auto ids, auto values) { rows.append(ids, values); }));
    return true;
  } catch (const RuntimeError&) {
    return false;
  } catch (const NotWhole&) {
    return false;
  }
}

void Session::Implementation::appendRows(sqlite3_stmt* statement,
                                         const std::vector<values::Variant>& literals,
                                         RecordSet::Implementation& rows) {
  catalogue.refreshIndexes();
  const ResetOnExit reset(statement);
  for (std::size_t i = 0; i < literals.size(); ++i) {
    bind(statement, static_cast<int>(i) + 1, literals[i]);
  }
  while (catalogue.step(statement)) rows.append(statement);
}

QueryReport Session::Implementation::explain(std::string_view source,
                                             const std::shared_ptr<Session>& session) {
  try {
    return explain(source, session, ColumnErrors::kRaise);
  } catch (const RuntimeError&) {
    if (!catalogue.failedInFunction()) throw;
  }
  return explain(source, session, ColumnErrors::kDefer);
}

QueryReport Session::Implementation::explain(std::string_view source,
                                             const std::shared_ptr<Session>& session,
                                             ColumnErrors errors) {
  ReadLog log;
  const LogScope logged(catalogue, log);
  QueryReport report;
  std::optional<Translation> translation;
  {
    const TimeTaken time(report.translating);
    translation = translate(normalize(source), catalogue, errors);
  }
  std::optional<PreparedQuery> query;
  {
    const TimeTaken time(report.planning);
    query = prepare(*translation);
  }
  {
    const TimeTaken time(report.running);
    report.rows =
        static_cast<std::size_t>(run(*query, translation->literals, session)->recordCount());
  }
  report.reads = log.reads();
  report.builds = log.builds();
  report.notes = planNotes(catalogue.plan(translation->sql));
  return report;
}

std::shared_ptr<Session> Session::open(const std::string& file, const SessionOptions& options,
                                       const platform::Clock& clock) {
  return std::make_shared<Session>(std::make_unique<Implementation>(file, options, clock));
}

Session::Session(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}

Session::~Session() = default;

QueryReport Session::explain(std::string_view source) {
  return implementation_->explain(source, shared_from_this());
}

std::unique_ptr<RecordSet> Session::openRecordSet(std::string_view source) {
  return implementation_->open(source, shared_from_this());
}

namespace {

template <typename Wanted>
std::vector<std::string> namesOf(const jet::Database& database, Wanted wanted) {
  std::vector<std::string> names;
  for (const jet::CatalogueEntry& entry : database.catalogue()) {
    if (!entry.system && !entry.hidden && wanted(entry.type)) names.push_back(entry.name);
  }
  return names;
}

}  // namespace

std::vector<std::string> Session::tableNames() const {
  return namesOf(implementation_->catalogue.database(), [](jet::ObjectType type) {
    return type == jet::ObjectType::kTable || type == jet::ObjectType::kLinkedTable ||
           type == jet::ObjectType::kLinkedOdbcTable;
  });
}

std::vector<std::string> Session::queryNames() const {
  return namesOf(implementation_->catalogue.database(),
                 [](jet::ObjectType type) { return type == jet::ObjectType::kQuery; });
}

}  // namespace jetsql
