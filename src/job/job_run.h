// One run of the job, from the click to its return: JobDriver makes one, tells it its steps in
// order, and takes its verdict.
//
//   JobRun run(dependencies, request, window);
//   run.open();
//   for (const Step& step : steps) run.collect(step);
//   run.finish();
//   return run.verdict();
//
// Nothing throws: the trap around every single step shows and logs the failure, reports it, and
// keeps it for the verdict.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "extract/workspace.h"
#include "job/job_driver.h"
#include "job/job_steps.h"

namespace job {

class JobRun {
 public:
  JobRun(const Dependencies& dependencies, const Request& request, Window& window);

  void open();  // the statement file and the job log
  void collect(const Step& step);
  void finish();  // checks the statement file and gives it its final name

  [[nodiscard]] const JobVerdict& verdict() const { return verdict_; }

 private:
  // What the operator is told when a part of the run fails.
  struct Part {
    std::string_view name;
    std::string_view left;
  };

  template <typename Body>
  void attempt(const Part& part, Body&& body) noexcept;
  void trap(const Part& part, int number, const char* description) noexcept;
  void fail(joblog::Failure failure) noexcept;

  void report(std::string_view text);
  [[nodiscard]] std::string stamp() const;
  void rememberLastDay();
  void checkSyntax();
  void deleteFile();
  void giveFinalName();

  const Dependencies& dependencies_;
  const Request& request_;
  Window& window_;
  extract::Workspace work_;
  bool deleted_ = false;  // the statement file, for want of statements
  JobVerdict verdict_;
};

}  // namespace job
