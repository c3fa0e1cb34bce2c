// GetDaily: carries the daily settlement to the server, for every day of a range one DELETE and one
// INSERT of DailyDataTB, appended to the job's statement file.
//
//   GetDaily(work, sources, work.days.first, work.days.last);
//
// A day whose computation failed is sent with the figures that were reached, and is noted in
// work.failures. Errors, which end it
// and reach the caller: 6 for more than 32767 days, those of the statement file and the job log.
#pragma once

#include "extract/workspace.h"
#include "settlement/get_daily_data.h"
#include "values/date_time.h"

namespace settlement {

// From LastDate, the first day, to LookDate, the last. The result is never set and tells nothing.
bool GetDaily(extract::Workspace& work, const lib_결산::Sources& sources, values::DateTime LastDate,
              values::DateTime LookDate);

}  // namespace settlement
