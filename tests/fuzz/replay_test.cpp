// Past findings of the fuzzer, each a file in findings/TARGET/, run once through its target: under
// the sanitizers none of them may be a finding again. And the seeds, so that a target whose own
// files or script no longer fit the code does not search in vain.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "support/child_process.h"
#include "targets.h"

namespace fuzz {
namespace {

TEST(ReplayTest, SeedsAreNotRefused) {
  for (const Target& target : kTargets) {
    for (const std::string& seed : target.seeds()) {
      EXPECT_TRUE(target.run(seed)) << target.name << ": " << seed;
    }
  }
}

TEST(ReplayTest, FindingsStayMended) {
  std::map<std::string, const Target*> targets;
  for (const Target& target : kTargets) targets.emplace(target.name, &target);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(QUENBROOK_FINDINGS)) {
    if (!entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path().string());
    const auto target = targets.find(entry.path().parent_path().filename());
    ASSERT_NE(target, targets.end());
    (void)target->second->run(support::readFile(entry.path()));
  }
}

}  // namespace
}  // namespace fuzz
