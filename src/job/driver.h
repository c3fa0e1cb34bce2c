// The job as the upload window sees it: what is asked for, whom it shows its progress, how it ends.
//
//   const job::JobVerdict verdict = driver.run({ticks, from, to}, window);
#pragma once

#include <array>

#include "job/job_verdict.h"
#include "log/job_log.h"
#include "values/date_time.h"

namespace job {

// The check boxes chk1 by index, and the day range, both days included.
struct Request {
  std::array<bool, 7> ticked{};
  values::DateTime from;
  values::DateTime to;
};

class Window : public joblog::Progress {
 public:
  virtual void setHourglass(bool on) = 0;  // the screen's mouse pointer
};

class Driver {
 public:
  virtual ~Driver() = default;
  // Runs one job from the creation of its statement file to its final name. The steps after one
  // that failed are run all the same. Where another job works in the same folder, it waits until
  // that one has ended; the caption says so, and the window keeps processing its events.
  [[nodiscard]] virtual JobVerdict run(const Request& request, Window& window) noexcept = 0;
};

}  // namespace job
