// The groups of an aggregate_plan.h, gathered row by row in memory and then put in the order in
// which SQLite gives groups: by their keys, Null first.
//
//   GroupSums groups(plan);
//   groups.add({{&item, &menu}, parameters});    // for every row
//   groups.sort();
//   groups.setResult(context, 0, 2);             // the third output of the first group
//
// Errors: NotWhole for more groups than are kept in memory, and where a sum leaves the range of its
// type. Private to the room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "jetsql/sqlite/aggregate_plan.h"
#include "jetsql/sqlite/numbers_by_hash.h"

struct sqlite3_context;

namespace jetsql {

class GroupSums {
 public:
  // The plan outlives this.
  explicit GroupSums(const AggregatePlan& plan)
      : plan_(plan), keys_(plan.groups.size()), known_(plan.groups.size()) {}

  void add(const JoinedRow& row) { addTo(groupOf(row), row); }
  // The same in two steps, for rows that are known to be of one group. The number stays good.
  [[nodiscard]] std::size_t groupOf(const JoinedRow& row);
  void addTo(std::size_t group, const JoinedRow& row);
  void sort();

  [[nodiscard]] std::size_t size() const { return count_; }
  // Of a group in the order in which they were found; the bytes of a text are this object's.
  [[nodiscard]] EncodedValue value(std::size_t group, std::size_t output) const;
  // Of a group in the order of the keys.
  void setResult(sqlite3_context* context, std::size_t position, std::size_t output) const;

 private:
  struct Key {
    std::int64_t number = 0;  // of a text: of the texts that compare equal; of a date: its bits
    bool isNull = true;
    std::size_t spelling = 0;  // of a text, in spellings_

    friend bool operator==(const Key& a, const Key& b) {
      return a.isNull == b.isNull && a.number == b.number;
    }
  };
  struct Total {
    std::int64_t sum = 0;
    std::int64_t count = 0;  // values that are not Null
  };
  struct Spelling {
    std::string text;
    std::int64_t number = 0;  // that of the texts which compare equal
  };
  [[nodiscard]] std::size_t groupOfRow(const JoinedRow& row);
  [[nodiscard]] Key keyOf(std::size_t number, const JoinedRow& row);
  [[nodiscard]] Key textKey(const jet::Row& row, std::size_t column);
  // Of a group by a text of the joined row of this number, computed once.
  [[nodiscard]] const Key& knownKey(std::size_t group, const jet::Row& row, std::size_t number);
  [[nodiscard]] std::size_t spellingOf(std::string_view text);
  // The group of keys_, a new one where there is none yet.
  [[nodiscard]] std::size_t groupOfKeys();
  [[nodiscard]] std::span<const Key> keysOf(std::size_t group) const {
    return std::span(groupKeys_).subspan(group * keys_.size(), keys_.size());
  }
  [[nodiscard]] bool isBefore(std::size_t left, std::size_t right) const;

  const AggregatePlan& plan_;
  std::size_t count_ = 0;       // groups
  std::vector<Key> groupKeys_;  // group by group: of its first row, beside the plan's groups
  std::vector<Total> totals_;   // group by group, beside the plan's sums
  NumbersByHash groupsByHash_;
  std::vector<Key> keys_;   // of the row at hand
  std::size_t latest_ = 0;  // the group of the row before it
  std::vector<Spelling> spellings_;
  NumbersByHash spellingsByHash_;
  std::size_t latestSpelling_ = 0;
  // By group and JoinedRow::joinedNumber, such as the names of a menu.
  std::vector<std::vector<std::optional<Key>>> known_;
  std::vector<std::optional<std::size_t>> groupsByJoined_;  // the same, if no other row is read
  std::string text_;
  std::vector<std::size_t> order_;  // groups by position
};

}  // namespace jetsql
