// The job driver: one run turns the ticked kinds of local data into one statement file under
// AutoLoadData, step by step, each shown in the progress panel and logged.
//
//   job::JobDriver driver(dependencies, job::jobSteps(settlementDependencies));
//   const job::JobVerdict verdict = driver.run({ticks, from, to}, window);
//
// One trap stands around every single step: what fails is logged and the next step is run. A run
// that wrote nothing deletes its file, so that the rename after it fails: such a run ends in the
// trap, always has, and counts as failed. Jobs of one program folder run one after the other.
#pragma once

#include <functional>
#include <vector>

#include "extract/workspace.h"
#include "job/driver.h"
#include "job/job_steps.h"
#include "localdb/database_access.h"
#include "log/job_log.h"
#include "log/message_log.h"
#include "platform/clock.h"
#include "settings/settings.h"
#include "settings/start_values.h"

namespace job {

// Handed in by the program; all of it outlives the driver.
struct Dependencies {
  const settings::StartValues& start;
  localdb::DatabaseAccess& databases;
  settings::Settings& settings;
  const platform::Clock& clock;
  const platform::TickCounter& ticks;
  platform::Sleeper& sleeper;
  joblog::JobLog& jobLog;
  lib_Message2::MessageLog& messageLog;
  std::function<void()> closeIdle;  // closes the database files that no step has open any more
  std::function<void(const joblog::Failure&)> reportFailure;  // each, when it is met
};

class JobDriver : public Driver {
 public:
  JobDriver(Dependencies dependencies, std::vector<Step> steps);

  [[nodiscard]] JobVerdict run(const Request& request, Window& window) noexcept override;

 private:
  Dependencies dependencies_;
  std::vector<Step> steps_;
};

}  // namespace job
