// What SQLite does with rows beside reading tables, in words.
//
//   planNotes({"SCAN t0", "USE TEMP B-TREE FOR ORDER BY"})     {"sorts rows for ORDER BY"}
#pragma once

#include <string>
#include <vector>

namespace jetsql {

// `plan`: the lines of EXPLAIN QUERY PLAN. Each note once.
[[nodiscard]] std::vector<std::string> planNotes(const std::vector<std::string>& plan);

}  // namespace jetsql
