// A connection over ODBC, and the rows of a query on it, within limits of time that hold whatever
// the driver does (see driver_thread.h).
//
//   auto connection = std::make_shared<odbc::Connection>(limits);
//   connection->connect("DRIVER={MySQL ODBC 3.51 Driver};SERVER=…");
//   odbc::Query query(connection, "Select * From EmployeeTB");
//   while (query.next()) use(query.value(0));
//
// Texts are UTF-8 here and UTF-16 at the driver. Errors: Fault with the driver's own text, and
// TimeLimitExceeded; of value also those of Column::convert.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "server/driver_thread.h"
#include "server/odbc_values.h"
#include "server/time_limits.h"
#include "values/variant.h"

namespace server::odbc {

using RawRow = std::vector<values::Variant>;

class Connection {
 public:
  explicit Connection(TimeLimits limits);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  void connect(const std::string& text);
  // The driver's warnings about the connect.
  [[nodiscard]] const std::vector<std::string>& warnings() const { return warnings_; }
  // `name` as an identifier of the server's own language.
  [[nodiscard]] std::string quoted(const std::string& name) const;

 private:
  friend class Query;
  struct Handles;

  TimeLimits limits_;
  std::shared_ptr<Handles> handles_;  // used, and released, on the thread only
  std::string identifierQuote_;
  std::vector<std::string> warnings_;
  DriverThread thread_;
};

// Keeps its connection alive. Rows are taken from the driver some at a time.
class Query {
 public:
  Query(std::shared_ptr<Connection> connection, const std::string& text);
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;
  ~Query();

  [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }
  // The driver's warnings about the query.
  [[nodiscard]] const std::vector<std::string>& warnings() const { return warnings_; }
  [[nodiscard]] bool next();
  // The current row as the driver gave it; see Column::convert.
  [[nodiscard]] const RawRow& rawRow() const { return rows_.front(); }
  [[nodiscard]] values::Variant value(std::size_t column) const {
    return columns_[column].convert(rawRow()[column]);
  }

 private:
  struct Cursor;

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Cursor> cursor_;  // used, and released, on the connection's thread only
  std::vector<Column> columns_;
  std::vector<std::string> warnings_;
  std::deque<RawRow> rows_;  // fetched; the current one is the first
  bool started_ = false;
};

}  // namespace server::odbc
