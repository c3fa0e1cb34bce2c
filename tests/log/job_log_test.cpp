#include "log/job_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "support/child_process.h"
#include "support/fake_platform.h"

namespace joblog {
namespace {

TEST(JobLogTest, ALogThatCannotBeWrittenIsToldOnceAndTheWorkGoesOn) {
  const support::TemporaryFolder folder;
  const support::FakeClock clock;
  std::vector<std::string> told;
  JobLog log(folder.path().string(), clock,
             [&](std::string_view line) { told.emplace_back(line); });
  const auto path = folder.path() / "H20130821D.log";
  std::filesystem::create_directory(path);
  log.tryAppend("first");
  log.tryAppend("second");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(told[0].starts_with("작업 기록: (75) ")) << told[0];
  std::filesystem::remove(path);
  log.tryAppend("third");
  EXPECT_EQ(support::readFile(path), "third\r\n");
}

}  // namespace
}  // namespace joblog
