// The program that bench/pieces runs; takes the flags of Google Benchmark.
#include <cstdio>
#include <exception>
#include <thread>

#include <benchmark/benchmark.h>

#include "pieces_src/pieces.h"
#include "pieces_src/report.h"
#include "pieces_src/sample_shop.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  try {
    // A job appends its statements in a thread. From a process's first thread on, shared pointers
    // are counted atomically, which slows the page walk; here that holds for every piece.
    std::thread([] {}).join();
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
