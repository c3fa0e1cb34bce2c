// The engine that opens local Jet databases. It caches sessions, so that reopening a file is cheap.
//
//   DBEngine engine(clock, external);
//   std::shared_ptr<Database> data = engine.openDatabase(path, false, false);
//   std::unique_ptr<RecordSet> rows = data->openRecordset("SELECT * FROM Selling");
//   ...
//   engine.closeIdle();   // at the end of a job
//
// A file stays open until closeIdle finds that no database or record set on it exists any more.
// Until then another opening shares its page cache, prepared queries and in-memory indexes.
// Databases and record sets may outlive the engine.
//
// Errors: RuntimeError 3001 (an argument that does not exist), 3024 and on as the Jet engine and
// Jet SQL raise them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "jetsql/session.h"
#include "localdb/database_access.h"
#include "localdb/record_set.h"
#include "platform/clock.h"

namespace localdb {

class Database {
 public:
  explicit Database(std::shared_ptr<jetsql::Session> session) : session_(std::move(session)) {}

  // `source` is a query text or the name of a table or saved query. An argument that is not given
  // is empty. A snapshot, a forward-only type and the read-only option and lock refuse edits.
  [[nodiscard]] std::unique_ptr<RecordSet> openRecordset(
      std::string_view source, std::optional<std::int32_t> type = {},
      std::optional<std::int32_t> options = {}, std::optional<std::int32_t> lock = {}) const;

 private:
  std::shared_ptr<jetsql::Session> session_;
};

class DBEngine {
 public:
  // Both must outlive every database opened; `external` may be nullptr (linked server tables then
  // give error 3151).
  DBEngine(const platform::Clock& clock, jetsql::ExternalSource* external);

  // `connect` may carry a password: ";pwd=secret".
  [[nodiscard]] std::shared_ptr<Database> openDatabase(
      const std::string& path, bool exclusive, bool readOnly,
      const std::optional<std::string>& connect = {});

  // Closes every file on which no database or record set exists any more.
  void closeIdle();

 private:
  // Path, exclusive, read-only, connect.
  using Key = std::tuple<std::string, bool, bool, std::string>;

  [[nodiscard]] const std::string& nameOf(const std::string& path);

  const platform::Clock& clock_;
  jetsql::ExternalSource* external_;
  std::map<Key, std::shared_ptr<jetsql::Session>> sessions_;
  std::map<std::string, std::string> names_;  // canonical, by path as given
};

}  // namespace localdb
