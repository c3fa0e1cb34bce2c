// Rounds of a working till and jobs of the program, killed at random: see rounds.h.
#include "till/rounds.h"

#include <gtest/gtest.h>

#include "support/child_process.h"

namespace till {
namespace {

// Sanitizers make a round four times as long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRounds = 30;
#else
constexpr int kRounds = 75;
#endif

class RoundsTest : public testing::TestWithParam<Options> {
 protected:
  Report run(Options options) {
    options.folder = folder_.path();
    return runRounds(options);
  }

  support::TemporaryFolder folder_;
};

TEST_P(RoundsTest, HarmNothing) {
  Options options = GetParam();
  options.rounds = kRounds;
  options.ofEachKind = kRounds / 10;
  const Report report = run(options);
  for (const std::string& fault : report.faults) ADD_FAILURE() << fault;
  EXPECT_GE(report.fewestOfAKind(), options.ofEachKind);
  EXPECT_GT(report.marks, 0U);
  EXPECT_GT(report.movedRows, 0U);
}

// That the rounds can fail: a till whose cache is never renewed writes old pages over marks.
TEST_P(RoundsTest, FindAnOutdatedCache) {
  Options options = GetParam();
  options.ignoreCounts = true;
  EXPECT_FALSE(run(options).faults.empty());
}

INSTANTIATE_TEST_SUITE_P(Shops, RoundsTest,
                         testing::Values(Options{.seed = 1}, Options{.seed = 2, .indexes = false},
                                         Options{.seed = 3, .format = "jet3"},
                                         Options{.seed = 4, .format = "jet3", .indexes = false}),
                         [](const auto& tried) {
                           return tried.param.format + (tried.param.indexes ? "Indexes" : "Plain");
                         });

}  // namespace
}  // namespace till
