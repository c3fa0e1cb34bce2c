// Jet SQL on one open Jet file.
//
//   auto session = Session::open("/shop/data.mdb", {.readOnly = false}, clock);
//   auto rows = session->openRecordSet("SELECT * FROM Selling WHERE rDate = #2013-08-02#");
//
// A session caches prepared statements (texts that differ only in their literals share one) and
// indexes built in memory for columns without an index. Both live as long as the session does.
// Record sets keep their session alive.
//
// Errors: those of opening a Jet file (3024, 3031, 3049, 3343, ...), of the language (3061 unknown
// name or a parameter without value, 3075 syntax, 3078 unknown table or query), of linked tables
// (3024, 3044, 3151), and whatever a function or a damaged page raises while rows are collected.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/record_set.h"
#include "jetsql/session_options.h"
#include "jetsql/sqlite/query_report.h"
#include "platform/clock.h"

namespace jetsql {

class Session : public std::enable_shared_from_this<Session> {
 public:
  class Implementation;

  // The clock, which Date() and Now() read, outlives the session.
  [[nodiscard]] static std::shared_ptr<Session> open(const std::string& file,
                                                     const SessionOptions& options,
                                                     const platform::Clock& clock);
  explicit Session(std::unique_ptr<Implementation> implementation);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  // `source` is a SELECT (UNION, TRANSFORM) text or the name of a table or saved query.
  [[nodiscard]] std::unique_ptr<RecordSet> openRecordSet(std::string_view source);

  // Runs the query as openRecordSet does, and tells how instead of its rows.
  [[nodiscard]] QueryReport explain(std::string_view source);

  // Names as the catalogue has them, without system tables and hidden queries.
  [[nodiscard]] std::vector<std::string> tableNames() const;
  [[nodiscard]] std::vector<std::string> queryNames() const;

 private:
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace jetsql
