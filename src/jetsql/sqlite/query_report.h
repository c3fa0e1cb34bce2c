// How a query was run, for whoever asks why it is slow.
//
//   const QueryReport report = session->explain("SELECT * FROM Selling WHERE rDate = #8/2/2013#");
//   report.reads[0]     Selling, whole: read once, 24,000 rows where 155 were expected, 31 ms
//
// A lookup is one run over a table with one set of values to compare with: the inner table of a
// join has one for each row of the outer one. Times include each other as `running` says.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace jetsql {

struct QueryReport {
  using Duration = std::chrono::steady_clock::duration;

  // A table read in one way.
  struct TableRead {
    std::string table;
    std::string access;        // "whole", "index PrimaryKey of the file: S_ID = value", ...
    double estimatedRows = 0;  // of each lookup, as the planner took it
    std::size_t lookups = 0;
    std::size_t rows = 0;  // of all lookups
    Duration time{};
  };

  // An index built in memory, which the session keeps.
  struct IndexBuild {
    std::string table;
    std::string key;  // its columns
    std::size_t rows = 0;
    Duration time{};
  };

  std::vector<TableRead> reads;  // in the order in which they began
  std::vector<IndexBuild> builds;
  std::vector<std::string> notes;  // what else is done with the rows: "sorts for ORDER BY", ...
  Duration translating{};          // with the indexes over computed values
  Duration planning{};
  Duration running{};    // with the reads and the other indexes
  std::size_t rows = 0;  // of the result
};

}  // namespace jetsql
