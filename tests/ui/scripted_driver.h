// A job that does what the test wants.
#pragma once

#include <functional>
#include <vector>

#include "job/driver.h"

namespace ui {

struct ScriptedDriver : job::Driver {
  std::vector<job::Request> requests;
  std::function<bool(job::Window&)> script = [](job::Window&) { return true; };
  job::JobVerdict run(const job::Request& request, job::Window& window) noexcept override {
    requests.push_back(request);
    job::JobVerdict verdict;
    if (!script(window)) verdict.failures.push_back({"매출", 94, "Null", ""});
    return verdict;
  }
};

}  // namespace ui
