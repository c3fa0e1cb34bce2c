// The two routines through which the program opens its local databases. Both trap their errors,
// write them to the message log and report success by their result.
//
//   std::shared_ptr<Database> db;
//   std::unique_ptr<RecordSet> rst;
//   if (databases.JetOpenDB(db, dataMdb, false, false, "", "자료수집") &&
//       databases.JetOpenRST(db, rst, "SELECT * FROM Selling", kOpenDynaset, 0, 0, false)) ...
//
// On failure the handle is set to nothing. They never throw.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "localdb/database.h"
#include "localdb/record_set.h"

namespace localdb {

// Writes one line to the message log without suffix.
using MessageWriter = std::function<void(const std::string& message)>;

class LocalDatabases {
 public:
  // The engine outlives this.
  LocalDatabases(DBEngine& engine, MessageWriter message);

  bool JetOpenDB(std::shared_ptr<Database>& database, const std::filesystem::path& path,
                 bool readOnly, bool exclusive, const std::string& connect,
                 std::string_view caller);

  // A number 0 means that the argument is not given; those behind it are then not given either.
  // With trace on, each step is written to the message log with the number of the opening. An
  // empty record set is a success with a record count of 0.
  bool JetOpenRST(const std::shared_ptr<Database>& database, std::unique_ptr<RecordSet>& recordSet,
                  std::string_view source, std::int32_t type, std::int32_t options,
                  std::int32_t lock, bool trace);

  // How many openings were traced.
  [[nodiscard]] std::int32_t openCounter() const { return openCounter_; }

  // At the end of a job: files that nobody has open any more are let go.
  void closeIdle() { engine_.closeIdle(); }

 private:
  DBEngine& engine_;
  MessageWriter message_;
  std::int32_t openCounter_ = 0;
};

}  // namespace localdb
