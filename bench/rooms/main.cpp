// The measuring program behind bench/pieces; takes the flags of Google Benchmark.
#include <cstdio>
#include <exception>

#include <benchmark/benchmark.h>

#include "rooms/report.h"
#include "rooms/rooms.h"
#include "rooms/sample_shop.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  try {
    const bench::SampleShop shop;
    bench::addPlatform();
    bench::addJet(shop);
    bench::addJetsql(shop);
    bench::addExtract(shop);
    bench::Report report;
    benchmark::RunSpecifiedBenchmarks(&report);
    return report.failed() ? 1 : 0;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "pieces: %s\n", fault.what());
    return 1;
  }
}
