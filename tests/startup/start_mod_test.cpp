#include "startup/start_mod.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "platform/files.h"
#include "settings/profile_reader.h"
#include "startup/command_line.h"
#include "support/child_process.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace StartMod {
namespace {

TEST(CommandLineTest, ItsLengthInCharactersDecides) {
  const struct {
    const char* text;
    const char* runMode;
    const char* from;
    const char* to;
  } rows[] = {
      {"T2013/08/21", "T", "2013/08/21", "2013/08/21"},
      {"T2013/08/01-2013/08/21", "T", "2013/08/01", "2013/08/21"},
      {"T2013/08/01한2013/08/21", "T", "2013/08/01", "2013/08/21"},
      {"t2013/08/21", "t", "2013/08/21", "2013/08/21"},
      {"한2013/08/21", "한", "2013/08/21", "2013/08/21"},
      {"T2013/08/21 ", "", "", ""},
      {"T2013/08/01-2013/08/2", "", "", ""},
      {"T2013/08/1한", "T", "2013/08/1한", "2013/08/1한"},
      {"한글한글", "", "", ""},
      {"", "", "", ""},
  };
  for (const auto& row : rows) {
    const auto parts = splitCommandLine(row.text);
    EXPECT_EQ(parts.runMode, row.runMode) << row.text;
    EXPECT_EQ(parts.fromDate, row.from) << row.text;
    EXPECT_EQ(parts.toDate, row.to) << row.text;
  }
}

class StartModTest : public testing::Test {
 protected:
  void config(const std::string& utf8) {
    platform::replaceFile(path("config.ini"), CodePage(949).fromUtf8(utf8));
  }
  [[nodiscard]] std::string path(const std::string& name) const {
    return platform::joinPath(folder.path().string(), name);
  }
  Start start(std::string_view commandLine) {
    return Main(commandLine, {folder.path().string(), settings, log, messages});
  }

  support::TemporaryFolder folder;
  support::FakeClock clock;
  support::FakeMemory memory;
  support::ShownMessages messages;
  lib_Message2::MessageLog log{folder.path().string(), clock, memory, messages};
  lib_Setting::ProfileReader settings;
};

TEST_F(StartModTest, TheValuesComeFromTheConfiguration) {
  platform::createFolder(path("db"));
  platform::createEmptyFile(path("db/data.mdb"));
  config(
      "[경영자]\r\nSvrDbName=melauth\r\nGroup=A01\r\n상호=김's "
      "식당\r\n대표자=O'Kim\r\n[경로]\r\nDB=" +
      path("db") + "\r\n");
  const auto begun = start("T2013/08/01-2013/08/21");
  EXPECT_EQ(begun.next, Next::kUploadWindow);
  EXPECT_EQ(begun.values.shop.tradeName, "김's 식당");
  EXPECT_EQ(begun.values.outgoPath, platform::joinPath(path("db"), "outgo.mdb"));
  EXPECT_EQ(begun.values.toDate, "2013/08/21");
  EXPECT_TRUE(begun.values.warnings.empty());
  EXPECT_EQ(start("t2013/08/21").next, Next::kLoginWindow);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(StartModTest, WithoutTheSalesDatabaseItEndsWithAMessage) {
  log.setLevel(1);
  config("[경로]\r\nDB=\r\nPrnDB=/print\r\n");
  EXPECT_EQ(start("T2013/08/21").next, Next::kEnd);
  const auto folders = folder.path().string() + ",/print";
  ASSERT_EQ(messages.shown.size(), 1U);
  EXPECT_EQ(messages.shown[0].title, "데이터베이스 오류");
  EXPECT_EQ(
      messages.shown[0].prompt,
      "지정된 위치(" + folders + ")에 데이터베이스가 없습니다.\r\r\r\r프로그램을 종료합니다.");
  EXPECT_EQ(CodePage(949).toUtf8(platform::readFile(path("130821_Trans.log"))),
            "E)지정된 위치(" + folders + ")에 데이터베이스가 없어 종료\r\n");
}

TEST_F(StartModTest, AnEmptyIdentityGoesOnWithAWarning) {
  platform::createEmptyFile(path("data.mdb"));
  config("[경영자]\r\nGroup=\r\n대표자=O'Kim\r\n");
  const auto begun = start("T2013/08/21");
  EXPECT_EQ(begun.next, Next::kUploadWindow);
  ASSERT_EQ(begun.values.warnings.size(), 2U);
  EXPECT_NE(begun.values.warnings[0].find("Group"), std::string::npos);
  EXPECT_NE(begun.values.warnings[1].find("상호"), std::string::npos);
}

TEST_F(StartModTest, WithoutTheConfigurationItEndsWithARunTimeError) {
  log.setLevel(1);
  try {
    (void)start("T2013/08/21");
    FAIL() << "no error";
  } catch (const RuntimeError& failure) {
    EXPECT_EQ(failure.number(), 13);
  }
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_EQ(CodePage(949).toUtf8(platform::readFile(path("130821.log"))),
            "E)config.ini가 없어 종료함.\r\n");
}

}  // namespace
}  // namespace StartMod
