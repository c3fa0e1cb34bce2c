// The job driver: one run turns the ticked kinds of local data into one statement file under
// AutoLoadData, step by step, each shown in the progress panel and logged.
//
//   job::JobDriver driver(surroundings, job::jobSteps(settlementSources));
//   const bool allPassed = driver.run({ticks, from, to}, window);
//
// One trap stands around every single step: what fails is logged and the next step is run. A run
// that wrote nothing deletes its file, so that the rename behind it fails: such a run ends in the
// trap, always has, and counts as failed.
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
struct Surroundings {
  const settings::StartValues& start;
  localdb::DatabaseAccess& databases;
  settings::Settings& settings;
  const platform::Clock& clock;
  const platform::TickCounter& ticks;
  joblog::JobLog& jobLog;
  lib_Message2::MessageLog& messageLog;
  std::function<void()> letGo;  // closes the database files that no step has open any more
};

class JobDriver : public Driver {
 public:
  JobDriver(const Surroundings& around, std::vector<Step> steps);

  bool run(const Request& request, Window& window) noexcept override;

 private:
  class Run;

  Surroundings around_;
  std::vector<Step> steps_;
};

}  // namespace job
