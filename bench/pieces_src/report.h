// The table that bench/pieces prints, at the end of the run and in the order in which the
// benchmarks were added, not that in which they ran: the median rate of each, and for the
// plain ways of a piece how many times as long as the first one they take. Every benchmark counts
// items.
#pragma once

#include <vector>

#include <benchmark/benchmark.h>

namespace bench {

class Report : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  [[nodiscard]] bool failed() const { return failed_; }

 private:
  std::vector<Run> medians_;
  bool failed_ = false;
};

}  // namespace bench
