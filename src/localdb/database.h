// The engine that opens local Jet databases and keeps what is dear between openings.
//
//   DBEngine engine(clock, external);
//   std::shared_ptr<Database> data = engine.openDatabase(path, false, false);
//   std::unique_ptr<RecordSet> rows = data->openRecordset("SELECT * FROM Selling");
//   ...
//   engine.closeIdle();   // at the end of a job
//
// Opening a file that is already open (some database or record set of it is alive, or it was
// closed since but closeIdle was not called) costs next to nothing and shares its page cache,
// prepared queries and in-memory indexes. The engine outlives nothing: databases and record sets
// may live longer than it does.
//
// Errors: RuntimeError 3001 (an argument that does not exist), 3024 and on as the Jet engine and
// Jet SQL raise them.
#pragma once

#include <cstdint>
#include <filesystem>
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
  // Both outlive every database opened; `external` may be nullptr (linked server tables then give
  // error 3151).
  DBEngine(const platform::Clock& clock, jetsql::ExternalSource* external);

  // `connect` may carry a password: ";pwd=secret".
  [[nodiscard]] std::shared_ptr<Database> openDatabase(
      const std::filesystem::path& path, bool exclusive, bool readOnly,
      const std::optional<std::string>& connect = {});

  // Lets go of every file of which no database or record set is alive.
  void closeIdle();

 private:
  // Path, exclusive, read-only, connect.
  using Key = std::tuple<std::string, bool, bool, std::string>;

  [[nodiscard]] const std::string& nameOf(const std::filesystem::path& path);

  const platform::Clock& clock_;
  jetsql::ExternalSource* external_;
  std::map<Key, std::shared_ptr<jetsql::Session>> sessions_;
  std::map<std::string, std::string> names_;  // canonical, by path as given
};

}  // namespace localdb
