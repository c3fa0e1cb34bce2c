// An ODBC handle with an owner, and the driver's faults.
//
//   Handle environment(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
//   environment.check(SQLSetEnvAttr(environment.get(), ...));   // throws Fault
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "server/odbc_api.h"

namespace server::odbc {

// Its text is the driver's own.
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
  void check(SQLRETURN result) const { (void)warningsOf(result); }
  // The same; returns them when it succeeded with warnings.
  [[nodiscard]] std::vector<std::string> warningsOf(SQLRETURN result) const;

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

}  // namespace server::odbc
