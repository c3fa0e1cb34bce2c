// lib_결산: computes the settlement figures of one business day from the shop's three databases.
//
//   DailySettlement day;
//   GetDailyData(dependencies, date, day);   // false: failed; later figures are 0
//
// The databases are those of the program folder, not those of the configuration. Never throws: a
// failure is a line of the message log with the number of the failed step, and is kept in
// day.failure. The three databases are opened one after the other and closed before it returns.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "localdb/database_access.h"
#include "log/job_log.h"
#include "platform/clock.h"
#include "settings/settings.h"
#include "settlement/daily_settlement.h"
#include "values/date_time.h"

namespace lib_결산 {

// Given by the caller that runs the job; all of it outlives the call.
struct Dependencies {
  std::string programFolder;
  localdb::DatabaseAccess& databases;
  const settings::Settings& settings;  // section `연결` key ODBCcustomer, `NewType` ApplyDCinRO
  const platform::Clock& clock;
  joblog::JobLog& jobLog;
  std::function<void(const std::string& line)> message;  // MsgDebug without suffix
  std::function<bool()> centralAnswers;                  // PING of the central host
};

bool GetDailyData(const Dependencies& dependencies, values::DateTime LookupDate,
                  DailySettlement& settlement) noexcept;

}  // namespace lib_결산
