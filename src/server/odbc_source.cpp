#include "server/odbc_source.h"

#include <chrono>
#include <map>
#include <string_view>
#include <utility>

#include "server/odbc.h"
#include "text/ascii.h"
#include "values/runtime_error.h"

namespace server {
namespace {

RuntimeError callFailed(const odbc::Fault& fault) {
  return {error::kCallFailed, std::string("ODBC--call failed. ") + fault.what()};
}

RuntimeError connectionFailed(const std::string& reason) {
  return {error::kConnectFailed, "ODBC--connection failed. " + reason};
}

class OdbcRows : public jetsql::ExternalRows {
 public:
  explicit OdbcRows(std::unique_ptr<odbc::Query> query) : query_(std::move(query)) {}

  bool next() override {
    try {
      return query_->next();
    } catch (const odbc::Fault& fault) {
      throw callFailed(fault);
    }
  }

  values::Variant value(std::size_t column) override { return query_->value(column); }

 private:
  std::unique_ptr<odbc::Query> query_;
};

std::string withoutPrefix(const std::string& connect) {
  constexpr std::string_view kPrefix = "odbc;";
  const bool prefixed = text::startsWithIgnoringAsciiCase(connect, kPrefix);
  return connect.substr(prefixed ? kPrefix.size() : 0);
}

const char* symbol(jetsql::Comparison comparison) {
  switch (comparison) {
    case jetsql::Comparison::kEqual:
      return " = ";
    case jetsql::Comparison::kLess:
      return " < ";
    case jetsql::Comparison::kLessOrEqual:
      return " <= ";
    case jetsql::Comparison::kGreater:
      return " > ";
    case jetsql::Comparison::kGreaterOrEqual:
      return " >= ";
  }
  return " = ";
}

// In quotes; nothing for what a server may take for more than a text: MySQL's backslash is an
// escape unless it is told otherwise.
std::string quotedText(const std::string& text) {
  if (text.find_first_of(std::string_view("\\\0", 2)) != std::string::npos) return {};
  std::string quoted = "'";
  for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

// The value in the server's language. Empty where the server might compare in another way than Jet
// does (fractions): such a condition is left to the query engine, which tests every row again.
std::string literal(const values::Variant& value) {
  switch (value.type()) {
    case values::VariantType::kByte:
    case values::VariantType::kInteger:
    case values::VariantType::kLong:
      return values::toText(value);
    case values::VariantType::kDateTime: {
      const auto& date = *value.as<values::DateTime>();
      return "{ts '" + values::dayText(date) + " " + values::timeText(date) + "'}";
    }
    case values::VariantType::kText:
      return quotedText(*value.as<std::string>());
    default:
      return {};
  }
}

// Nothing where the server is not to be asked. Any number but 0 is Yes.
std::string conditionText(const odbc::Connection& connection,
                          const jetsql::ExternalCondition& condition) {
  const std::string column = connection.quoted(condition.column);
  if (const auto* yes = condition.value.as<bool>()) return column + (*yes ? " <> 0" : " = 0");
  const std::string value = literal(condition.value);
  return value.empty() ? value : column + symbol(condition.comparison) + value;
}

std::string selectText(const odbc::Connection& connection, const std::string& table,
                       const std::vector<jetsql::ExternalCondition>& conditions) {
  std::string text = "SELECT * FROM " + connection.quoted(table);
  const char* joint = " WHERE ";
  for (const auto& condition : conditions) {
    const std::string asked = conditionText(connection, condition);
    if (asked.empty()) continue;
    text += joint + asked;
    joint = " AND ";
  }
  return text;
}

class OdbcSource : public jetsql::ExternalSource {
 public:
  explicit OdbcSource(TimeLimits limits) : limits_(limits) {}

  std::vector<jetsql::ExternalColumn> columns(const std::string& connect,
                                              const std::string& table) override {
    std::vector<jetsql::ExternalColumn> columns;
    const auto query = opened(connect, [&](const odbc::Connection& connection) {
      return "SELECT * FROM " + connection.quoted(table) + " WHERE 1 = 0";
    });
    for (const auto& column : query->columns()) columns.push_back({column.name, column.type});
    return columns;
  }

  std::unique_ptr<jetsql::ExternalRows> open(
      const std::string& connect, const std::string& table,
      const std::vector<jetsql::ExternalCondition>& conditions) override {
    return std::make_unique<OdbcRows>(opened(connect, [&](const odbc::Connection& connection) {
      return selectText(connection, table, conditions);
    }));
  }

 private:
  using SteadyClock = std::chrono::steady_clock;

  struct Server {
    std::shared_ptr<odbc::Connection> connection;
    SteadyClock::time_point silentSince;
    std::string silence;  // what was said of it; empty while it answers
  };

  template <typename Text>
  std::unique_ptr<odbc::Query> opened(const std::string& connect, Text text) {
    Server& server = connected(connect);
    try {
      return std::make_unique<odbc::Query>(server.connection, text(*server.connection));
    } catch (const odbc::Fault& fault) {
      server.connection.reset();  // it may be what failed; the next query connects anew
      noteSilence(server, fault);
      throw callFailed(fault);
    }
  }

  Server& connected(const std::string& connect) {
    Server& server = servers_[connect];
    if (server.connection) return server;
    // A job asks for linked tables hundreds of times; a silent server is not waited for each time.
    if (!server.silence.empty() && SteadyClock::now() - server.silentSince < kRetryAfter) {
      throw connectionFailed(server.silence);
    }
    try {
      auto fresh = std::make_shared<odbc::Connection>(limits_);
      fresh->connect(withoutPrefix(connect));
      server = {std::move(fresh), {}, {}};
    } catch (const odbc::Fault& fault) {
      noteSilence(server, fault);
      throw connectionFailed(fault.what());
    }
    return server;
  }

  static void noteSilence(Server& server, const odbc::Fault& fault) {
    if (dynamic_cast<const odbc::TimeLimitExceeded*>(&fault) == nullptr) return;
    server.silence = fault.what();
    server.silentSince = SteadyClock::now();
  }

  static constexpr std::chrono::minutes kRetryAfter{1};

  TimeLimits limits_;
  std::map<std::string, Server> servers_;  // by connect text
};

}  // namespace

std::unique_ptr<jetsql::ExternalSource> makeOdbcSource(TimeLimits limits) {
  return std::make_unique<OdbcSource>(limits);
}

}  // namespace server
