#include "server/odbc.h"

#include <array>
#include <chrono>
#include <exception>
#include <utility>

#include "server/wide_text.h"

namespace server::odbc {
namespace {

constexpr std::size_t kRowsAtOnce = 64;  // of a fetch: a change of threads costs more than a row

// Attributes that are whole numbers travel in the pointer's place.
SQLPOINTER number(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

// A connection's handle is taken once its environment knows the version.
Handle connectionHandle(const Handle& environment) {
  environment.check(
      SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, number(SQL_OV_ODBC3), 0));
  return {SQL_HANDLE_DBC, environment.get()};
}

// A driver that honours a limit of its own ends by itself, which is better than to be abandoned.
SQLULEN wholeSeconds(std::chrono::milliseconds limit) {
  return static_cast<SQLULEN>(std::chrono::ceil<std::chrono::seconds>(limit).count());
}

}  // namespace

struct Connection::Handles {
  Handle environment{SQL_HANDLE_ENV, SQL_NULL_HANDLE};
  Handle connection{connectionHandle(environment)};
  bool connected = false;

  Handles() = default;
  Handles(const Handles&) = delete;
  Handles& operator=(const Handles&) = delete;
  ~Handles() {
    if (connected) SQLDisconnect(connection.get());
  }

  std::vector<std::string> connect(const std::string& text, std::chrono::milliseconds limit) {
    connection.check(SQLSetConnectAttrW(connection.get(), SQL_ATTR_LOGIN_TIMEOUT,
                                        number(wholeSeconds(limit)), 0));
    auto wide = toWide(text);
    auto warnings = connection.warningsOf(SQLDriverConnectW(
        connection.get(), nullptr, wide.data(), static_cast<SQLSMALLINT>(wide.size()), nullptr, 0,
        nullptr, SQL_DRIVER_NOPROMPT));
    connected = true;
    return warnings;
  }

  [[nodiscard]] std::string identifierQuote() const {
    std::array<SQLWCHAR, 8> buffer{};
    SQLSMALLINT bytes = 0;
    connection.check(SQLGetInfoW(connection.get(), SQL_IDENTIFIER_QUOTE_CHAR, buffer.data(),
                                 static_cast<SQLSMALLINT>(sizeof buffer), &bytes));
    return fromWide(buffer.data());
  }
};

struct Query::Cursor {
  explicit Cursor(std::shared_ptr<Connection::Handles> owner)
      : handles(std::move(owner)), statement(SQL_HANDLE_STMT, handles->connection.get()) {}

  void execute(const std::string& text) {
    auto wide = toWide(text);
    warnings = statement.warningsOf(
        SQLExecDirectW(statement.get(), wide.data(), static_cast<SQLINTEGER>(wide.size())));
    columns = describe(statement);
  }

  [[nodiscard]] std::deque<RawRow> fetchSome() const {
    std::deque<RawRow> rows;
    while (rows.size() < kRowsAtOnce) {
      const SQLRETURN result = SQLFetch(statement.get());
      statement.check(result);
      if (result == SQL_NO_DATA) break;
      RawRow& row = rows.emplace_back();
      for (std::size_t i = 0; i < columns.size(); ++i) {
        row.push_back(fetch(statement, i, columns[i]));
      }
    }
    return rows;
  }

  std::shared_ptr<Connection::Handles> handles;
  Handle statement;
  std::vector<std::string> warnings;
  std::vector<Column> columns;
};

Connection::Connection(TimeLimits limits) : limits_(limits) {}

Connection::~Connection() {
  try {
    thread_.run(limits_.answer, [handles = std::move(handles_)]() mutable { handles.reset(); });
  } catch (const std::exception&) {
    // The thread releases them when the driver returns.
  }
}

void Connection::connect(const std::string& text) {
  struct Outcome {
    std::shared_ptr<Handles> handles;
    std::vector<std::string> warnings;
    std::string quote;
  };
  auto outcome = thread_.run(limits_.connect, [text, limit = limits_.connect] {
    Outcome made{std::make_shared<Handles>(), {}, {}};
    made.warnings = made.handles->connect(text, limit);
    made.quote = made.handles->identifierQuote();
    return made;
  });
  handles_ = std::move(outcome.handles);
  warnings_ = std::move(outcome.warnings);
  identifierQuote_ = std::move(outcome.quote);
}

std::string Connection::quoted(const std::string& name) const {
  const std::string& quote = identifierQuote_;
  if (quote == " ") return name;  // the server knows no quoted identifiers
  std::string text = quote;
  for (const char c : name) {
    text += quote.size() == 1 && c == quote[0] ? quote + c : std::string(1, c);
  }
  return text + quote;
}

Query::Query(std::shared_ptr<Connection> connection, const std::string& text)
    : connection_(std::move(connection)) {
  cursor_ = connection_->thread_.run(connection_->limits_.answer,
                                     [handles = connection_->handles_, text] {
                                       auto cursor = std::make_shared<Cursor>(handles);
                                       cursor->execute(text);
                                       return cursor;
                                     });
  columns_ = cursor_->columns;
  warnings_ = cursor_->warnings;
}

Query::~Query() {
  try {
    connection_->thread_.run(connection_->limits_.answer,
                             [cursor = std::move(cursor_)]() mutable { cursor.reset(); });
  } catch (const std::exception&) {
    // The thread releases it when the driver returns.
  }
}

bool Query::next() {
  if (std::exchange(started_, true)) rows_.pop_front();
  if (rows_.empty()) {
    rows_ = connection_->thread_.run(connection_->limits_.answer,
                                     [cursor = cursor_] { return cursor->fetchSome(); });
  }
  return !rows_.empty();
}

}  // namespace server::odbc
