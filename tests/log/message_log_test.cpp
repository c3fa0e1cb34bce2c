#include "log/message_log.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/child_process.h"
#include "support/fake_platform.h"

namespace lib_Message2 {
namespace {

class MessageLogTest : public testing::Test {
 protected:
  [[nodiscard]] std::string file(const std::string& name) const {
    const auto path = folder.path() / name;
    return std::filesystem::exists(path) ? support::readFile(path) : "none";
  }

  support::TemporaryFolder folder;
  support::FakeClock clock;
  support::FakeMemory memory;
  support::ShownMessages messages;
  MessageLog log{folder.path().string(), clock, memory, messages};
};

TEST_F(MessageLogTest, TheLevelSaysWhereAMessageGoes) {
  const std::string stamped = "[13.08.21 15:30:45.047 612/1843]E)x";
  const struct {
    int level;
    std::string file;
    std::string box;
  } rows[] = {
      {0, "none", ""},           {1, "E)x\r\n", ""}, {2, "none", stamped}, {3, "none", ""},
      {4, stamped + "\r\n", ""}, {5, "none", ""},    {-1, "none", ""},
  };
  for (const auto& row : rows) {
    std::filesystem::remove(folder.path() / "130821_Trans.log");
    messages.shown.clear();
    log.setLevel(row.level);
    log.MsgDebug("E)x", "_Trans");
    EXPECT_EQ(file("130821_Trans.log"), row.file) << "level " << row.level;
    EXPECT_EQ(messages.shown.empty() ? "" : messages.shown[0].prompt, row.box)
        << "level " << row.level;
  }
}

TEST_F(MessageLogTest, ALineGoesToTheFileOfItsDay) {
  log.setLevel(1);
  log.MsgDebug("one", "");
  clock.time = {2013, 8, 22, 0, 0, 1};
  log.MsgDebug("two", "");
  EXPECT_EQ(file("130821.log"), "one\r\n");
  EXPECT_EQ(file("130822.log"), "two\r\n");
}

TEST_F(MessageLogTest, WhatCannotBeWrittenIsShown) {
  log.setLevel(4);
  log.MsgDebug("x", "/no/folder");
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].icon, platform::Icon::kCritical);
  EXPECT_TRUE(messages.shown[0].prompt.starts_with("E)MsgDebug[0](76)"));
  EXPECT_TRUE(messages.shown[0].prompt.ends_with(
      "\r\n이 메시지는 시스템에 심각한 영향을 미칠 수 있는 상황을 검출했을 때\r\n"
      "출력됩니다. 개발자에게 연락을 주십시오."));
}

}  // namespace
}  // namespace lib_Message2
