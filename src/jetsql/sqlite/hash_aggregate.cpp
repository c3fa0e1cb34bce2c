#include "jetsql/sqlite/hash_aggregate.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "jetsql/sqlite/jet_table_cursor.h"
#include "jetsql/sqlite/joined_rows.h"
#include "jetsql/sqlite/virtual_module.h"
#include "jetsql/translate/sql_text.h"

namespace jetsql {
namespace {

constexpr double kGroups = 10;  // a guess

bool passesAll(const std::vector<WholeExpression>& conditions, const JoinedRow& row) {
  return std::ranges::all_of(conditions, [&](const auto& test) { return test(row).isTrue(); });
}

// One run of a plan.
class Gathering {
 public:
  // Keeps references. `log`: null where nobody asks.
  Gathering(const AggregatePlan& plan, std::span<const EncodedValue> parameters, ReadLog* log,
            GroupSums& groups)
      : plan_(plan), parameters_(parameters), log_(log), groups_(groups) {}

  void run() { plan_.inside ? addGroups() : addRows(); }

 private:
  void addGroups();
  void addRows();
  // Adds a row of the table with each row that is joined to it.
  void addJoined(JoinedRows& joined, JoinedRow& row);
  // Null where nobody asks.
  [[nodiscard]] QueryReport::TableRead* logRead() const;

  const AggregatePlan& plan_;
  std::span<const EncodedValue> parameters_;
  ReadLog* log_;
  GroupSums& groups_;
};

// Counts and sums do not depend on the order of the groups inside.
void Gathering::addGroups() {
  const AggregatePlan& inside = *plan_.inside;
  const std::size_t own = plan_.parameters.size() - inside.parameters.size();
  GroupSums groups(inside);
  Gathering(inside, parameters_.subspan(own), log_, groups).run();
  std::vector<EncodedValue> values(inside.outputs.size());
  const JoinedRow row{.parameters = parameters_.first(own), .grouped = values};
  for (std::size_t group = 0; group < groups.size(); ++group) {
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = groups.value(group, i);
    if (passesAll(plan_.conditions, row)) groups_.add(row);
  }
}

void Gathering::addRows() {
  std::vector<EncodedValue> wanted;
  for (const std::size_t place : plan_.access.parameters) wanted.push_back(parameters_[place]);
  std::optional<JoinedRows> joined;
  if (plan_.joined) joined.emplace(*plan_.joined->table, plan_.joined->column);
  QueryReport::TableRead* read = logRead();
  JoinedRow row{{}, parameters_};
  JetTableCursor cursor(*plan_.table);
  for (cursor.filter(plan_.access.path, {}, wanted); !cursor.atEnd(); cursor.next()) {
    if (read != nullptr) ++read->rows;
    row.rows = {&cursor.row(), nullptr};
    if (!passesAll(plan_.conditions, row)) continue;
    if (joined) {
      addJoined(*joined, row);
    } else {
      groups_.add(row);
    }
  }
}

void Gathering::addJoined(JoinedRows& joined, JoinedRow& row) {
  bool matched = false;
  std::optional<std::size_t> group;
  const auto addWith = [&](const jet::Row* other, std::optional<std::size_t> number) {
    matched = true;
    row.rows[1] = other;
    row.joinedNumber = number;
    if (!passesAll(plan_.joinedConditions, row)) return;
    if (!group || !plan_.groupsReadFirstTableOnly) group = groups_.groupOf(row);
    groups_.addTo(*group, row);
  };
  const WholeValue key = plan_.joined->key(row);
  if (!key.isNull) {
    joined.forEach(key.number, [&](const auto& found) { addWith(&found.row, found.number); });
  }
  if (!matched && plan_.joined->keepsUnmatched) addWith(nullptr, {});
}

QueryReport::TableRead* Gathering::logRead() const {
  if (log_ == nullptr) return nullptr;
  const int path = plan_.access.path;
  auto& read = log_->read(plan_.table, path, {}, [&] { return plan_.table->describe(path, {}); });
  ++read.lookups;
  return &read;
}

}  // namespace

HashAggregate::HashAggregate(AggregatePlan plan, std::string sqliteName, CallbackContext& callbacks)
    : plan_(std::move(plan)), callbacks_(callbacks) {
  schema_.sqliteName = std::move(sqliteName);
  schema_.columns = plan_.columns;
  schema_.updatable = false;
}

void HashAggregate::registerIn(sqlite3* connection) {
  sqlite3_create_module_v2(connection, schema_.sqliteName.c_str(),
                           &kVirtualModule<HashAggregate, HashAggregateCursor>, this, nullptr);
}

std::string HashAggregate::source() const {
  std::vector<std::string> arguments;
  for (const std::size_t number : plan_.parameters) {
    arguments.push_back("?" + std::to_string(number + 1));
  }
  const std::string list = joined(arguments, ", ");
  return quotedName(schema_.sqliteName) + (list.empty() ? "" : "(" + list + ")");
}

// The arguments in their order. They are constants of the statement, so all of them are usable.
void HashAggregate::chooseAccessPath(sqlite3_index_info& info) const {
  for (int i = 0; i < info.nConstraint; ++i) {
    const auto& constraint = info.aConstraint[i];
    const int place = constraint.iColumn - static_cast<int>(plan_.columns.size());
    if (place < 0 || constraint.usable == 0 || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) {
      continue;
    }
    info.aConstraintUsage[i].argvIndex = place + 1;
    info.aConstraintUsage[i].omit = 1;
  }
  const std::span order(info.aOrderBy, static_cast<std::size_t>(info.nOrderBy));
  const bool isOrdered =
      std::ranges::all_of(order, [&](const auto& term) { return hasOneValue(term.iColumn); });
  info.orderByConsumed = isOrdered ? 1 : 0;
  info.estimatedCost = plan_.table->estimatedRows();
  info.estimatedRows = static_cast<sqlite3_int64>(kGroups);
}

QueryReport::TableRead HashAggregate::describe(int, std::string_view) const {
  return {"groups of " + plan_.table->schema().name, "computed in memory", kGroups};
}

bool HashAggregate::hasOneValue(int column) const {
  if (column < 0 || static_cast<std::size_t>(column) >= plan_.outputs.size()) return false;
  const AggregatePlan::Output& output = plan_.outputs[static_cast<std::size_t>(column)];
  return output.isGroup && plan_.groups[output.number].isFixed;
}

void HashAggregateCursor::filter(int, std::string_view, std::span<const EncodedValue> values) {
  position_ = 0;
  groups_.emplace(table_.plan());
  try {
    Gathering(table_.plan(), values, table_.callbacks().log, *groups_).run();
  } catch (const NotWhole&) {
    table_.callbacks().failedInFunction = true;
    throw RuntimeError(error::kOverflow, "Overflow.");
  }
  groups_->sort();
}

}  // namespace jetsql
