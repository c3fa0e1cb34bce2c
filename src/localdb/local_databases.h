// The two routines through which the program opens its local databases, on the engine: they trap
// their errors, write them to the message log and report success by their result.
//
//   LocalDatabases databases(engine, [&](const std::string& line) { log.MsgDebug(line, ""); });
//   databases.JetOpenDB(db, dataMdb, false, false, "", "자료수집");
//
// On failure the handle is set to nothing. They never throw.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "localdb/database.h"
#include "localdb/database_access.h"
#include "localdb/record_set.h"

namespace localdb {

// Writes one line to the message log without suffix.
using MessageWriter = std::function<void(const std::string& message)>;

class LocalDatabases : public DatabaseAccess {
 public:
  // Keeps a reference to the engine.
  LocalDatabases(DBEngine& engine, MessageWriter message);

  bool JetOpenDB(std::shared_ptr<Database>& database, const std::string& path, bool readOnly,
                 bool exclusive, const std::string& connect, std::string_view caller) override;
  bool JetOpenRST(const std::shared_ptr<Database>& database, std::unique_ptr<RecordSet>& recordSet,
                  std::string_view source, std::int32_t type, std::int32_t options,
                  std::int32_t lock, bool trace) override;

  [[nodiscard]] std::string lastFailure() const override { return failure_; }

  // At the end of a job: closes the files that nothing uses any more.
  void closeIdle() { engine_.closeIdle(); }

 private:
  DBEngine& engine_;
  MessageWriter message_;
  std::string failure_;
  std::int32_t openCounter_ = 0;  // openings that were traced
};

}  // namespace localdb
