// The job's table: for each kind of data its check box, its progress texts and its operation, in
// the order in which they run.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "extract/workspace.h"
#include "settlement/get_daily_data.h"

namespace job {

enum class StepKind {
  kRecords,     // the local records of the days
  kSettlement,  // names the days in its start text, and is remembered as the last worked day
};

struct Step {
  std::size_t box;         // index of chk1
  std::string_view start;  // progress texts; a time stamp follows each
  std::string_view end;
  std::function<void(extract::Workspace&)> collect;
  std::string_view name;  // short, for counts and failures
  StepKind kind = StepKind::kRecords;
};

// What `settlement` names outlives the steps.
[[nodiscard]] std::vector<Step> jobSteps(const lib_결산::Dependencies& settlement);

}  // namespace job
