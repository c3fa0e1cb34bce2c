// The two routines through which the program opens its local databases, as an interface for the
// rooms that extract and compute. LocalDatabases implements it; tests have their own.
//
//   std::shared_ptr<Database> db;
//   std::unique_ptr<RecordSet> rst;
//   if (access.JetOpenDB(db, dataMdb, false, false, "", "자료수집") &&
//       access.JetOpenRST(db, rst, "SELECT * FROM Selling", kOpenDynaset, 0, 0, false)) ...
//
// They never throw. What fails is written to the message log, the handle is set to nothing and the
// result is false; the caller decides. A file's name matches without regard to the case of Latin
// letters; one that matches exactly is preferred.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "localdb/record_set.h"

namespace localdb {

class Database;

// The numbers that callers pass, as the database objects of the platform define them.
constexpr std::int32_t kOpenTable = 1;
constexpr std::int32_t kOpenDynaset = 2;
constexpr std::int32_t kOpenSnapshot = 4;
constexpr std::int32_t kOpenForwardOnly = 8;
constexpr std::int32_t kOptionReadOnly = 4;
constexpr std::int32_t kLockReadOnly = 4;

class DatabaseAccess {
 public:
  virtual ~DatabaseAccess() = default;

  virtual bool JetOpenDB(std::shared_ptr<Database>& database, const std::string& path,
                         bool readOnly, bool exclusive, const std::string& connect,
                         std::string_view caller) = 0;

  // A number 0 means that the argument is not given; those after it are then not given either.
  // With trace on, each step is written to the message log with the number of the opening. An
  // empty record set is a success with a record count of 0.
  virtual bool JetOpenRST(const std::shared_ptr<Database>& database,
                          std::unique_ptr<RecordSet>& recordSet, std::string_view source,
                          std::int32_t type, std::int32_t options, std::int32_t lock,
                          bool trace) = 0;

  // Why the last opening that failed did: for the message of who cannot go on without it. Empty
  // where nobody knows.
  [[nodiscard]] virtual std::string lastFailure() const { return {}; }
};

// ": " and the reason, for the end of a message; nothing where there is none.
[[nodiscard]] inline std::string reasonOf(const DatabaseAccess& databases) {
  const std::string reason = databases.lastFailure();
  return reason.empty() ? "" : ": " + reason;
}

}  // namespace localdb
