#include "job/job_driver.h"

#include <utility>

#include "job/job_run.h"
#include "job/job_turn.h"
#include "job/statement_file.h"

namespace job {

JobDriver::JobDriver(Dependencies dependencies, std::vector<Step> steps)
    : dependencies_(std::move(dependencies)), steps_(std::move(steps)) {}

JobVerdict JobDriver::run(const Request& request, Window& window) noexcept {
  bool told = false;
  const auto turn =
      waitForTurn(statementFolder(dependencies_.start.programFolder), dependencies_.sleeper, [&] {
        // Once, so that an unattended run prints one line.
        if (!std::exchange(told, true)) window.setCaption(kWaitingText);
        window.yield();
      });
  JobRun run(dependencies_, request, window);
  run.open();
  for (const auto& step : steps_) {
    if (request.ticked.at(step.box)) run.collect(step);
  }
  run.finish();
  return run.verdict();
}

}  // namespace job
