// How a job ended: what every ticked kind of data came to, and everything that failed.
//
//   const job::JobVerdict verdict = driver.run(request, window);
//   if (!verdict.passed()) show(joblog::failureLine(verdict.failures.front()));
//
// Unattended runs print the same failures on standard error, and quenbrook-errors.log keeps them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "log/failure.h"

namespace job {

// Of a ticked kind of data, failed or not.
struct KindCount {
  std::size_t box = 0;    // index of chk1
  std::string_view name;  // short, in the windows' words: "매출"
  bool passed = true;
  // Local records, or days of the settlement, whose statements were written.
  std::int32_t records = 0;
};

struct JobVerdict {
  std::vector<KindCount> counts;          // in the order in which they ran
  std::vector<joblog::Failure> failures;  // in the order in which they came
  std::string statementFile;              // finished, under its final name; empty: none was

  [[nodiscard]] bool passed() const { return failures.empty(); }
};

}  // namespace job
