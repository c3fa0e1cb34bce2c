#include "server/odbc_provider.h"

#include <utility>

#include "server/odbc.h"
#include "values/runtime_error.h"

namespace server {
namespace {

RecordSet readAll(odbc::Query& query) {
  std::vector<std::string> names;
  for (const auto& column : query.columns()) names.push_back(column.name);
  std::vector<RecordSet::Row> rows;
  while (query.next()) {
    RecordSet::Row row;
    for (std::size_t i = 0; i < names.size(); ++i) row.push_back(query.value(i));
    rows.push_back(std::move(row));
  }
  return {std::move(names), std::move(rows)};
}

class OdbcConnection : public Connection {
 public:
  void setConnectionString(const std::string& text) override { text_ = text; }

  void open() override {
    try {
      connection_ = std::make_shared<odbc::Connection>();
      connection_->connect(text_);
      errorCount_ = connection_->remarks().size();
    } catch (const odbc::Fault& fault) {
      connection_.reset();
      throw RuntimeError(error::kConnectionFailed, fault.what());
    }
  }

  [[nodiscard]] std::size_t errorCount() const override { return errorCount_; }

  RecordSet openRecordSet(const std::string& text) override {
    if (!connection_) throw RuntimeError(error::kObjectNotSet, "The connection is not open.");
    try {
      odbc::Query query(connection_, text);
      auto rows = readAll(query);
      errorCount_ = query.remarks().size();
      return rows;
    } catch (const odbc::Fault& fault) {
      throw RuntimeError(error::kQueryRefused, fault.what());
    }
  }

 private:
  std::string text_;
  std::shared_ptr<odbc::Connection> connection_;
  std::size_t errorCount_ = 0;
};

class OdbcProvider : public Provider {
 public:
  std::unique_ptr<Connection> createConnection() override {
    return std::make_unique<OdbcConnection>();
  }
};

}  // namespace

std::unique_ptr<Provider> makeOdbcProvider() { return std::make_unique<OdbcProvider>(); }

}  // namespace server
