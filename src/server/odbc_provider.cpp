#include "server/odbc_provider.h"

#include <utility>

#include "server/odbc.h"
#include "values/runtime_error.h"

namespace server {
namespace {

RecordSet readAll(odbc::Query& query) {
  std::vector<std::string> names;
  std::vector<RecordSet::Conversion> conversions;
  for (const auto& column : query.columns()) {
    names.push_back(column.name);
    conversions.emplace_back([column](const values::Variant& raw) { return column.convert(raw); });
  }
  std::vector<RecordSet::Row> rows;
  while (query.next()) rows.push_back(query.rawRow());
  return {std::move(names), std::move(rows), std::move(conversions)};
}

class OdbcConnection : public Connection {
 public:
  explicit OdbcConnection(TimeLimits limits) : limits_(limits) {}

  void setConnectionString(const std::string& text) override { text_ = text; }

  void open() override {
    connection_.reset();
    errors_.clear();
    try {
      auto fresh = std::make_shared<odbc::Connection>(limits_);
      fresh->connect(text_);
      errors_ = fresh->warnings();
      connection_ = std::move(fresh);
    } catch (const odbc::TimeLimitExceeded& silence) {
      errors_ = {silence.what()};
    } catch (const odbc::Fault& fault) {
      throw RuntimeError(error::kConnectionFailed, fault.what());
    }
  }

  [[nodiscard]] std::size_t errorCount() const override { return errors_.size(); }

  [[nodiscard]] std::string errorTexts() const override {
    std::string texts;
    for (const auto& text : errors_) texts += (texts.empty() ? "" : "\r\n") + text;
    return texts;
  }

  RecordSet openRecordSet(const std::string& text) override {
    if (!connection_) throw RuntimeError(error::kObjectNotSet, "The connection is not open.");
    errors_.clear();
    try {
      odbc::Query query(connection_, text);
      auto rows = readAll(query);
      errors_ = query.warnings();
      return rows;
    } catch (const odbc::TimeLimitExceeded& silence) {
      errors_ = {silence.what()};
      return {{}, {}};
    } catch (const odbc::Fault& fault) {
      throw RuntimeError(error::kQueryRefused, fault.what());
    }
  }

 private:
  TimeLimits limits_;
  std::string text_;
  std::shared_ptr<odbc::Connection> connection_;
  std::vector<std::string> errors_;
};

class OdbcProvider : public Provider {
 public:
  explicit OdbcProvider(TimeLimits limits) : limits_(limits) {}

  std::unique_ptr<Connection> createConnection() override {
    return std::make_unique<OdbcConnection>(limits_);
  }

 private:
  TimeLimits limits_;
};

}  // namespace

std::unique_ptr<Provider> makeOdbcProvider(TimeLimits limits) {
  return std::make_unique<OdbcProvider>(limits);
}

}  // namespace server
