// The ODBC interface with its handles owned: a connection, and the rows of a query on it.
//
//   auto connection = std::make_shared<odbc::Connection>();
//   connection->connect("DRIVER={MySQL ODBC 3.51 Driver};SERVER=…");
//   odbc::Query query(connection, "Select * From EmployeeTB");
//   while (query.next()) use(query.value(0));
//
// Texts are UTF-8 here and UTF-16 at the driver. Each fault of the driver is thrown as an
// odbc::Fault with the driver's own text; what succeeds with a remark is in remarks().
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "values/variant.h"

namespace server::odbc {

class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Handle {
 public:
  Handle(SQLSMALLINT type, SQLHANDLE parent);
  ~Handle();
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  [[nodiscard]] SQLHANDLE get() const { return handle_; }
  // The driver's texts about the latest call.
  [[nodiscard]] std::vector<std::string> diagnostics() const;
  // Throws them when the call failed.
  void check(SQLRETURN result) const { (void)checkedRemarks(result); }
  // The same; returns them when it succeeded with remarks.
  [[nodiscard]] std::vector<std::string> checkedRemarks(SQLRETURN result) const;

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

class Connection {
 public:
  Connection();
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void connect(const std::string& text);
  [[nodiscard]] const std::vector<std::string>& remarks() const { return remarks_; }
  // `name` as an identifier of the server's own language.
  [[nodiscard]] std::string quoted(const std::string& name) const;

 private:
  friend class Query;

  Handle environment_;
  Handle handle_;
  bool connected_ = false;
  std::vector<std::string> remarks_;
};

struct Column {
  std::string name;
  SQLSMALLINT sqlType = SQL_VARCHAR;
  values::VariantType type = values::VariantType::kText;
};

// Keeps its connection alive.
class Query {
 public:
  Query(std::shared_ptr<Connection> connection, const std::string& text);

  [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }
  [[nodiscard]] const std::vector<std::string>& remarks() const { return remarks_; }
  [[nodiscard]] bool next();
  // Column of the current row, each at most once and in ascending order.
  [[nodiscard]] values::Variant value(std::size_t column);

 private:
  void describe();
  [[nodiscard]] values::Variant text(SQLUSMALLINT number);
  [[nodiscard]] values::Variant binary(SQLUSMALLINT number);
  template <typename Value>
  [[nodiscard]] bool fixed(SQLUSMALLINT number, SQLSMALLINT cType, Value& value);

  std::shared_ptr<Connection> connection_;
  Handle handle_;
  std::vector<std::string> remarks_;
  std::vector<Column> columns_;
};

}  // namespace server::odbc
