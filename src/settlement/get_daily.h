// GetDaily: writes the daily settlement into the job's statement file, one DELETE and one INSERT of
// DailyDataTB for every day of a range.
//
//   GetDaily(work, dependencies, work.days.first, work.days.last);
//
// A day whose computation failed is written with the figures computed until then, and added to the
// workspace's failures. Errors, thrown to the caller: 6 for more than 32767 days, those of the
// statement file and the job log.
#pragma once

#include "extract/workspace.h"
#include "settlement/get_daily_data.h"
#include "values/date_time.h"

namespace settlement {

// From LastDate, the first day, to LookDate, the last. The result is always false and has no
// meaning.
bool GetDaily(extract::Workspace& work, const lib_결산::Dependencies& dependencies,
              values::DateTime LastDate, values::DateTime LookDate);

}  // namespace settlement
