// Rows of a small table that were found by a whole number in which at most one row of it has, for a
// query that looks up the same few rows again and again: the menu of each item of a sale.
//
//   LookupRows menu(table, column);
//   menu.forgetOutdated();                              // before each run
//   if (const auto* known = menu.find(7)) use(*known);  // an empty optional: no row has the key
//   else if (menu.canAdd()) menu.add(7, theOnlyRow);    // after looking it up
//
// Rows are kept until the file is known to have changed: what the page cache guarantees, too. The
// table outlives this. Private to the room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

#include "jet/database.h"
#include "jet/rows/row.h"
#include "jetsql/sqlite/jet_table.h"

namespace jetsql {

class LookupRows {
 public:
  // By the index in memory of a column.
  LookupRows(JetTable& table, std::size_t column) : table_(table), column_(column) {}

  [[nodiscard]] static bool isFor(const JetTable& table) { return table.estimatedRows() <= kMost; }

  void forgetOutdated() {
    const State now{table_.database().file().othersChanges(), table_.changes()};
    if (std::exchange(state_, now) != now) rows_.clear();
  }

  [[nodiscard]] const std::optional<jet::Row>* find(std::int64_t key) const {
    const auto found = rows_.find(key);
    return found == rows_.end() ? nullptr : &found->second;
  }

  // Not where the index in memory may lack a row for a while (build_age.h).
  [[nodiscard]] bool canAdd() const { return table_.hasCurrentIndex(column_); }

  void add(std::int64_t key, std::optional<jet::Row> row) {
    if (rows_.size() >= kMost) rows_.clear();
    rows_.insert_or_assign(key, std::move(row));
  }

 private:
  static constexpr std::size_t kMost = 500;  // rows; each holds its page

  struct State {
    std::uint32_t othersChanges = 0;
    std::size_t ownChanges = 0;
    bool operator==(const State&) const = default;
  };

  JetTable& table_;
  std::size_t column_;
  State state_;
  std::unordered_map<std::int64_t, std::optional<jet::Row>> rows_;
};

}  // namespace jetsql
