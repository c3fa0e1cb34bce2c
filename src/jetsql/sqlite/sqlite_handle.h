// Owners of SQLite's handles.
#pragma once

#include <sqlite3.h>

#include <memory>

namespace jetsql {

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
using ConnectionHandle = std::unique_ptr<sqlite3, CloseConnection>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// Leaves a statement ready for its next run whatever happens while it is stepped.
class ResetOnExit {
 public:
  explicit ResetOnExit(sqlite3_stmt* statement) : statement_(statement) {}
  ResetOnExit(const ResetOnExit&) = delete;
  ResetOnExit& operator=(const ResetOnExit&) = delete;
  ~ResetOnExit() { sqlite3_reset(statement_); }

 private:
  sqlite3_stmt* statement_;
};

}  // namespace jetsql
