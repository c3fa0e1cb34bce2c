// The shop's databases for a command that must not change them: every file is opened for reading.
//
//   localdb::DBEngine engine(clock, nullptr);
//   localdb::LocalDatabases databases(engine, message);
//   ReadOnlyDatabases reading(databases);
#pragma once

#include "localdb/database_access.h"

class ReadOnlyDatabases : public localdb::DatabaseAccess {
 public:
  // Outlives this.
  explicit ReadOnlyDatabases(localdb::DatabaseAccess& databases) : databases_(databases) {}

  bool JetOpenDB(std::shared_ptr<localdb::Database>& database, const std::string& path,
                 bool /*readOnly*/, bool exclusive, const std::string& connect,
                 std::string_view caller) override {
    return databases_.JetOpenDB(database, path, true, exclusive, connect, caller);
  }
  bool JetOpenRST(const std::shared_ptr<localdb::Database>& database,
                  std::unique_ptr<localdb::RecordSet>& recordSet, std::string_view source,
                  std::int32_t type, std::int32_t options, std::int32_t lock, bool trace) override {
    return databases_.JetOpenRST(database, recordSet, source, type, options, lock, trace);
  }

 private:
  localdb::DatabaseAccess& databases_;
};
