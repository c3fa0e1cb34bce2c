// A query's report in lines for a support engineer:
//
//   Selling       whole                                      1 time, 23,996 rows (expected
//   23,996), 31.2 ms Selling_Item  index bySale of the file: S_ID = value     155 times, 540 rows
//   (expected 9 each), 2.1 ms sorts rows for ORDER BY 155 rows; 0.4 ms to understand the query, 0.2
//   ms to plan it, 34.0 ms to run it
#pragma once

#include <string>
#include <vector>

#include "jetsql/sqlite/query_report.h"

[[nodiscard]] std::vector<std::string> reportLines(const jetsql::QueryReport& report);

// "12.3 ms"
[[nodiscard]] std::string milliseconds(jetsql::QueryReport::Duration time);
