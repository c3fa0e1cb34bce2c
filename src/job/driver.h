// The job as the upload window sees it: what is asked for, whom it shows its progress, how it ends.
//
//   failed = !driver.run({ticks, from, to}, window);
#pragma once

#include <array>

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
  // Runs one job from the creation of its statement file to its final name. False when a step
  // failed; the steps behind it were run all the same. Never throws.
  virtual bool run(const Request& request, Window& window) noexcept = 0;
};

}  // namespace job
