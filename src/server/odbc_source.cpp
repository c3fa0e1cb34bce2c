#include "server/odbc_source.h"

#include <map>
#include <string_view>
#include <utility>

#include "server/odbc.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace server {
namespace {

RuntimeError callFailed(const odbc::Fault& fault) {
  return {error::kCallFailed, std::string("ODBC--call failed. ") + fault.what()};
}

class OdbcRows : public jetsql::ExternalRows {
 public:
  explicit OdbcRows(std::unique_ptr<odbc::Query> query)
      : query_(std::move(query)), values_(query_->columns().size()) {}

  // The driver gives a row's values once and in order, so the whole row is taken.
  bool next() override {
    try {
      if (!query_->next()) return false;
      for (std::size_t i = 0; i < values_.size(); ++i) values_[i] = query_->value(i);
      return true;
    } catch (const odbc::Fault& fault) {
      throw callFailed(fault);
    }
  }

  values::Variant value(std::size_t column) override { return values_.at(column); }

 private:
  std::unique_ptr<odbc::Query> query_;
  std::vector<values::Variant> values_;
};

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

// The value in the server's language. Empty where the server might compare in another way than Jet
// does (texts, fractions): such a condition is left to the query engine, which tests every row
// again.
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
    default:
      return {};
  }
}

class OdbcSource : public jetsql::ExternalSource {
 public:
  std::vector<jetsql::ExternalColumn> columns(const std::string& connect,
                                              const std::string& table) override {
    try {
      const auto connection = connected(connect);
      const odbc::Query query(connection,
                              "SELECT * FROM " + connection->quoted(table) + " WHERE 1 = 0");
      std::vector<jetsql::ExternalColumn> columns;
      for (const auto& column : query.columns()) columns.push_back({column.name, column.type});
      return columns;
    } catch (const odbc::Fault& fault) {
      throw callFailed(fault);
    }
  }

  std::unique_ptr<jetsql::ExternalRows> open(
      const std::string& connect, const std::string& table,
      const std::vector<jetsql::ExternalCondition>& conditions) override {
    try {
      const auto connection = connected(connect);
      std::string text = "SELECT * FROM " + connection->quoted(table);
      const char* joint = " WHERE ";
      for (const auto& condition : conditions) {
        const auto value = literal(condition.value);
        if (value.empty()) continue;
        text += joint + connection->quoted(condition.column) + symbol(condition.comparison) + value;
        joint = " AND ";
      }
      return std::make_unique<OdbcRows>(std::make_unique<odbc::Query>(connection, text));
    } catch (const odbc::Fault& fault) {
      throw callFailed(fault);
    }
  }

 private:
  std::shared_ptr<odbc::Connection> connected(const std::string& connect) {
    auto& connection = connections_[connect];
    if (connection) return connection;
    constexpr std::string_view kPrefix = "odbc;";
    std::string text = connect;
    if (text::lowerCase(std::string_view(text).substr(0, kPrefix.size())) == kPrefix) {
      text.erase(0, kPrefix.size());
    }
    try {
      auto fresh = std::make_shared<odbc::Connection>();
      fresh->connect(text);
      connection = std::move(fresh);
    } catch (const odbc::Fault& fault) {
      throw RuntimeError(error::kConnectFailed,
                         std::string("ODBC--connection failed. ") + fault.what());
    }
    return connection;
  }

  std::map<std::string, std::shared_ptr<odbc::Connection>> connections_;
};

}  // namespace

std::unique_ptr<jetsql::ExternalSource> makeOdbcSource() { return std::make_unique<OdbcSource>(); }

}  // namespace server
