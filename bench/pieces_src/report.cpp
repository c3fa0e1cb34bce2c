#include "pieces_src/report.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace bench {

namespace {

using Run = benchmark::BenchmarkReporter::Run;

// "page walk" of "page walk/table cursor".
std::string pieceOf(const Run& run) {
  return run.run_name.function_name.substr(0, run.run_name.function_name.find('/'));
}

double itemsPerSecond(const Run& run) { return run.counters.at("items_per_second").value; }

std::string rateOf(const Run& run) {
  std::string text;
  const auto add = [&](const char* counter, double unit, const char* format) {
    const auto found = run.counters.find(counter);
    char rate[32];
    if (found == run.counters.end()) return;
    std::snprintf(rate, sizeof rate, format, found->second.value / unit);
    text += rate;
  };
  add("bytes_per_second", 1e6, "%9.1f MB/s");
  add("items_per_second", 1e3, "%9.1f thousand/s");
  return text;
}

}  // namespace

bool Report::ReportContext(const Context&) { return true; }

void Report::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.error_occurred) {
      std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
      failed_ = true;
    } else if (run.repetitions <= 1 || run.aggregate_name == "median") {
      medians_.push_back(run);
    }
  }
}

void Report::Finalize() {
  std::ranges::stable_sort(medians_, {}, &Run::family_index);
  const Run* first = nullptr;
  for (const Run& run : medians_) {
    const bool leads = first == nullptr || pieceOf(*first) != pieceOf(run);
    if (leads) first = &run;
    std::printf("%-52s%s", run.run_name.function_name.c_str(), rateOf(run).c_str());
    if (!leads) {
      std::printf("   takes %.2f times as long", itemsPerSecond(*first) / itemsPerSecond(run));
    }
    std::printf("\n");
  }
}

}  // namespace bench
