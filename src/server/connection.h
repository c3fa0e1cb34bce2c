// The connection to the central database as the login uses it.
//
//   auto connection = provider.createConnection();
//   connection->setConnectionString(server::ServerConnectionString(account));
//   connection->open();
//   if (connection->errorCount() > 0) …
//   const auto rows = connection->openRecordSet("Select * From EmployeeTB");
//   if (rows.recordCount() > 0) password = rows.field("EMP_PSWD");
//
// Errors: error::kConnectionFailed when the connection cannot be opened, error::kQueryRefused when
// the server refuses a query, each with the driver's text. Not thrown, but entered in the list that
// errorCount counts, are the driver's warnings about calls that succeeded, and a server that keeps
// silent beyond the limits of time_limits.h: then the connection stays closed, or the record set is
// empty.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "server/record_set.h"

namespace server {

class Connection {
 public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() = default;

  virtual void setConnectionString(const std::string& text) = 0;
  virtual void open() = 0;
  // Entries about the latest open or query; each call clears those of the one before.
  [[nodiscard]] virtual std::size_t errorCount() const = 0;
  // Their texts, a line each; empty where there are none.
  [[nodiscard]] virtual std::string errorTexts() const { return {}; }
  // All rows, read to this side.
  [[nodiscard]] virtual RecordSet openRecordSet(const std::string& query) = 0;
};

class Provider {
 public:
  virtual ~Provider() = default;
  [[nodiscard]] virtual std::unique_ptr<Connection> createConnection() = 0;
};

}  // namespace server
