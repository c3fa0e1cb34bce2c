// From values to the text of a statement.
#include <string>

#include <benchmark/benchmark.h>

#include "extract/conversions.h"
#include "jet/date_time.h"
#include "jet/variant.h"
#include "rooms/rooms.h"

namespace bench {

namespace {

using jet::Variant;

void appended(benchmark::State& state, const Variant& value) {
  std::string statement;
  for (auto _ : state) {
    statement.clear();
    extract::appendSqlText(statement, value);
    benchmark::DoNotOptimize(statement.data());
  }
  state.SetItemsProcessed(state.iterations());
}

void asTextOfItsOwn(benchmark::State& state, const Variant& value) {
  std::string statement;
  for (auto _ : state) {
    statement.clear();
    statement += extract::SqlText(value);
    benchmark::DoNotOptimize(statement.data());
  }
  state.SetItemsProcessed(state.iterations());
}

void addSqlText(const std::string& kind, const Variant& value) {
  const std::string piece = "SqlText of " + kind;
  benchmark::RegisterBenchmark((piece + "/appended").c_str(), appended, value);
  benchmark::RegisterBenchmark((piece + "/a text of its own").c_str(), asTextOfItsOwn, value);
}

}  // namespace

void addExtract(const SampleShop&) {
  addSqlText("a text", "주방장 모둠전, 큰 접시");
  addSqlText("one with apostrophes", "D'Arcy O'Kim의 주방장 모둠전");
  addSqlText("a whole number", 189000);
  addSqlText("an amount", jet::Currency{1890000000});
  addSqlText("a fraction", 1.5);
  addSqlText("a date", jet::toDateTime({2013, 8, 2, 19, 5, 9}));
}

}  // namespace bench
