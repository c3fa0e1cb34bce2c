#include "server/odbc.h"

#include <array>
#include <utility>

#include "server/wide_text.h"

namespace server::odbc {
namespace {

// A server that does not answer must not hold the login window up for ever.
constexpr SQLULEN kLoginSeconds = 15;

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

}  // namespace

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) {
    throw Fault("The ODBC driver manager gives no handle.");
  }
}

Handle::~Handle() { SQLFreeHandle(type_, handle_); }

std::vector<std::string> Handle::diagnostics() const {
  std::vector<std::string> texts;
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  for (SQLSMALLINT record = 1;
       SQL_SUCCEEDED(SQLGetDiagRecW(type_, handle_, record, state.data(), &native, text.data(),
                                    static_cast<SQLSMALLINT>(text.size()), &length));
       ++record) {
    texts.push_back(fromWide(text.data()));
  }
  return texts;
}

std::vector<std::string> Handle::checkedRemarks(SQLRETURN result) const {
  if (result == SQL_SUCCESS || result == SQL_NO_DATA) return {};
  auto texts = diagnostics();
  if (result == SQL_SUCCESS_WITH_INFO) return texts;
  if (texts.empty()) throw Fault("The ODBC driver gave no reason.");
  throw Fault(texts.front());
}

Connection::Connection()
    : environment_(SQL_HANDLE_ENV, SQL_NULL_HANDLE), handle_(connectionHandle(environment_)) {}

Connection::~Connection() {
  if (connected_) SQLDisconnect(handle_.get());
}

void Connection::connect(const std::string& text) {
  handle_.check(
      SQLSetConnectAttrW(handle_.get(), SQL_ATTR_LOGIN_TIMEOUT, number(kLoginSeconds), 0));
  auto wide = toWide(text);
  remarks_ = handle_.checkedRemarks(SQLDriverConnectW(handle_.get(), nullptr, wide.data(),
                                                      static_cast<SQLSMALLINT>(wide.size()),
                                                      nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT));
  connected_ = true;
}

std::string Connection::quoted(const std::string& name) const {
  std::array<SQLWCHAR, 8> buffer{};
  SQLSMALLINT bytes = 0;
  handle_.check(SQLGetInfoW(handle_.get(), SQL_IDENTIFIER_QUOTE_CHAR, buffer.data(),
                            static_cast<SQLSMALLINT>(sizeof buffer), &bytes));
  const std::string quote = fromWide(buffer.data());
  if (quote == " ") return name;  // the server knows no quoted identifiers
  std::string text = quote;
  for (const char c : name) {
    text += quote.size() == 1 && c == quote[0] ? quote + c : std::string(1, c);
  }
  return text + quote;
}

Query::Query(std::shared_ptr<Connection> connection, const std::string& text)
    : connection_(std::move(connection)), handle_(SQL_HANDLE_STMT, connection_->handle_.get()) {
  auto wide = toWide(text);
  remarks_ = handle_.checkedRemarks(
      SQLExecDirectW(handle_.get(), wide.data(), static_cast<SQLINTEGER>(wide.size())));
  describe();
}

bool Query::next() {
  const SQLRETURN result = SQLFetch(handle_.get());
  handle_.check(result);
  return result != SQL_NO_DATA;
}

}  // namespace server::odbc
