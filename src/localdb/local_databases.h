// The two routines through which the program opens its local databases, on the engine: they trap
// their errors, write them to the message log and report success by their result.
//
//   LocalDatabases databases(engine, [&](const std::string& line) { log.MsgDebug(line, ""); });
//   databases.JetOpenDB(db, dataMdb, false, false, "", "자료수집");
//
// On failure the handle is set to nothing. They never throw. A file that was there is taken to be
// there for half a second, as its pages are taken to be the same (jet/pages/commit_counts.h): a job
// opens a file again for every row of some kinds, which costs a call of the system each on a share.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "localdb/database.h"
#include "localdb/database_access.h"
#include "localdb/record_set.h"
#include "platform/clock.h"

namespace localdb {

// Writes one line to the message log without suffix.
using MessageWriter = std::function<void(const std::string& message)>;

class LocalDatabases : public DatabaseAccess {
 public:
  // Keeps references to the engine and the ticks; nullptr: the system's.
  LocalDatabases(DBEngine& engine, MessageWriter message,
                 const platform::TickCounter* ticks = nullptr);

  bool JetOpenDB(std::shared_ptr<Database>& database, const std::string& path, bool readOnly,
                 bool exclusive, const std::string& connect, std::string_view caller) override;
  bool JetOpenRST(const std::shared_ptr<Database>& database, std::unique_ptr<RecordSet>& recordSet,
                  std::string_view source, std::int32_t type, std::int32_t options,
                  std::int32_t lock, bool trace) override;

  [[nodiscard]] std::string lastFailure() const override { return failure_; }

  // At the end of a job: closes the files that nothing uses any more.
  void closeIdle() {
    found_.clear();
    engine_.closeIdle();
  }

 private:
  struct FoundFile {
    std::string path;     // as the file system has it; empty: not found yet
    std::int32_t at = 0;  // ticks
  };

  // The file of that path (see database_access.h). Error 3024 where there is none.
  [[nodiscard]] const std::string& find(const std::string& path);

  DBEngine& engine_;
  MessageWriter message_;
  platform::SystemTickCounter systemTicks_;
  const platform::TickCounter& ticks_;
  std::map<std::string, FoundFile> found_;  // by path as given
  std::string failure_;
  std::int32_t openCounter_ = 0;  // openings that were traced
};

}  // namespace localdb
