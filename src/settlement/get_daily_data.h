// lib_결산: computes the settlement figures of one business day from the shop's three databases.
//
//   DailySettlement day;
//   GetDailyData(sources, date, day);   // false: day holds the figures reached, the rest are 0
//
// The databases are those of the program folder, whatever the configuration says. Never throws: a
// failure is a line of the message log that carries the number of the failing step, and stands in
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

// Handed in by whoever runs the job; all of it outlives the call.
struct Sources {
  std::string programFolder;
  localdb::DatabaseAccess& databases;
  const settings::Settings& settings;  // section `연결` key ODBCcustomer, `NewType` ApplyDCinRO
  const platform::Clock& clock;
  joblog::JobLog& jobLog;
  std::function<void(const std::string& line)> message;  // MsgDebug without suffix
  std::function<bool()> centralAnswers;                  // PING of the central host
};

bool GetDailyData(const Sources& sources, values::DateTime LookupDate,
                  DailySettlement& settlement) noexcept;

}  // namespace lib_결산
