// A grouped query as a virtual table: its rows are the groups, which a walk over the Jet table
// gathers in memory. SQLite, which asks for each field through a callback, sorts the rows and calls
// a function for each difference, takes four to ten times as long.
//
//   HashAggregate sums(std::move(*plan), "g3", callbacks);
//   sums.registerIn(connection);          // SELECT c0, c1 FROM "g3"(?1)
//
// The arguments are the parameters of the plan. Nothing is kept from one run to the next: the rows
// are those that the Jet table gives at the moment.
//
// Where a number leaves the range of its type the run fails as one does in which a function fails
// (CallbackContext::failedInFunction), and the session has SQLite compute the query. Private to the
// room.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "jetsql/sqlite/aggregate_plan.h"
#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/group_sums.h"

struct sqlite3;
struct sqlite3_context;
struct sqlite3_index_info;

namespace jetsql {

class HashAggregate {
 public:
  static constexpr std::size_t kComputedColumns = 0;

  // The plan's tables and the callbacks outlive this; this outlives the connection it is registered
  // in.
  HashAggregate(AggregatePlan plan, std::string sqliteName, CallbackContext& callbacks);
  HashAggregate(const HashAggregate&) = delete;
  HashAggregate& operator=(const HashAggregate&) = delete;
  ~HashAggregate() = default;

  void registerIn(sqlite3* connection);
  void chooseAccessPath(sqlite3_index_info& info) const;

  // The groups; that they are read from a Jet table is logged for itself.
  [[nodiscard]] QueryReport::TableRead describe(int path, std::string_view text) const;

  [[nodiscard]] const AggregatePlan& plan() const { return plan_; }
  [[nodiscard]] const CatalogueTable& schema() const { return schema_; }
  [[nodiscard]] CallbackContext& callbacks() const { return callbacks_; }
  // The columns p0, p1, ... of the arguments.
  [[nodiscard]] std::size_t argumentCount() const { return plan_.parameters.size(); }

  // As it stands in a FROM, with its arguments.
  [[nodiscard]] std::string source() const;

 private:
  // Whether a column is the same in all rows.
  [[nodiscard]] bool hasOneValue(int column) const;

  AggregatePlan plan_;
  CatalogueTable schema_;
  CallbackContext& callbacks_;
};

class HashAggregateCursor {
 public:
  explicit HashAggregateCursor(HashAggregate& table) : table_(table) {}

  void filter(int path, std::string_view text, std::span<const EncodedValue> values);

  [[nodiscard]] bool atEnd() const { return position_ >= groups_->size(); }
  void next() { ++position_; }
  [[nodiscard]] std::int64_t rowid() const { return static_cast<std::int64_t>(position_); }
  void setColumn(sqlite3_context* context, int column) const {
    groups_->setResult(context, position_, static_cast<std::size_t>(column));
  }

 private:
  HashAggregate& table_;
  std::optional<GroupSums> groups_;  // from filter() on
  std::size_t position_ = 0;
};

}  // namespace jetsql
