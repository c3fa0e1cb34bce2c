// The settlement of some days as a person reads it: the figures with their labels, the server's
// columns and the sources, in the record's order.
//
//   std::cout << settlementText(days);
//   platform::replaceFile(file, settlementCsv(days));
//
// UTF-8. A day whose computation ended early says so.
#pragma once

#include <string>
#include <vector>

#include "settlement/daily_settlement.h"
#include "values/date_time.h"

struct SettledDay {
  values::DateTime day;
  lib_결산::DailySettlement settlement;
};

[[nodiscard]] std::string settlementText(const std::vector<SettledDay>& days);

// For spreadsheets: with a byte order mark, lines ending CR LF; day, label, column, value, source.
[[nodiscard]] std::string settlementCsv(const std::vector<SettledDay>& days);

// Prints one page a day.
[[nodiscard]] std::string settlementHtml(const std::vector<SettledDay>& days,
                                         const std::string& tradeName);
