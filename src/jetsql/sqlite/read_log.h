// What a statement reads while it runs, for QueryReport: which rows of which table, found how, and
// which indexes are built in memory. Kept only where CallbackContext::log is set.
//
//   ReadLog log;
//   callbacks.log = &log;       // then the statement is prepared and run
//   for (const TableRead& read : log.reads()) ...
//
// Private to the room.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jetsql/sqlite/query_report.h"

namespace jetsql {

// Adds the time from its construction to its end.
class TimeTaken {
 public:
  explicit TimeTaken(QueryReport::Duration& sum)
      : sum_(sum), begin_(std::chrono::steady_clock::now()) {}
  TimeTaken(const TimeTaken&) = delete;
  TimeTaken& operator=(const TimeTaken&) = delete;
  ~TimeTaken() { sum_ += std::chrono::steady_clock::now() - begin_; }

 private:
  QueryReport::Duration& sum_;
  std::chrono::steady_clock::time_point begin_;
};

class ReadLog {
 public:
  // The entry of a table read by a plan, which `describe` makes when it is new. Its address stays.
  template <typename Describe>
  [[nodiscard]] QueryReport::TableRead& read(const void* table, int plan, std::string_view text,
                                             const Describe& describe) {
    for (Entry& entry : entries_) {
      if (entry.table == table && entry.plan == plan && entry.text == text) return entry.read;
    }
    return entries_.emplace_back(Entry{table, plan, std::string(text), describe()}).read;
  }

  void addBuild(QueryReport::IndexBuild build) { builds_.push_back(std::move(build)); }

  // In the order in which they were begun.
  [[nodiscard]] std::vector<QueryReport::TableRead> reads() const {
    std::vector<QueryReport::TableRead> reads;
    for (const Entry& entry : entries_) reads.push_back(entry.read);
    return reads;
  }
  [[nodiscard]] const std::vector<QueryReport::IndexBuild>& builds() const { return builds_; }

 private:
  struct Entry {
    const void* table;
    int plan;
    std::string text;
    QueryReport::TableRead read;
  };

  std::deque<Entry> entries_;
  std::vector<QueryReport::IndexBuild> builds_;
};

}  // namespace jetsql
