// The program itself, copied into a shop's folder as an installation is.

#include <gtest/gtest.h>

#include <filesystem>
#include <list>
#include <regex>
#include <set>

#include "jetcheck/file_check.h"
#include "platform/code_page.h"
#include "platform/files.h"
#include "support/child_process.h"

namespace {

namespace fs = std::filesystem;

class ProgramTest : public testing::Test {
 protected:
  void SetUp() override {
    fs::copy_file(QUENBROOK_PROGRAM, program());
    fs::create_directory(path("AutoLoadData"));
  }
  [[nodiscard]] std::string path(const std::string& name) const {
    return platform::joinPath(folder_.path().string(), name);
  }
  void file(const std::string& name, const std::string& utf8) {
    platform::replaceFile(path(name), CodePage(949).fromUtf8(utf8));
  }
  // The program in this folder, or in one of its folders.
  [[nodiscard]] std::string program(const std::string& folder = "") const {
    return path(folder + fs::path(QUENBROOK_PROGRAM).filename().string());
  }
  int run(const std::string& argument) { return support::run({program(), argument}, &output); }
  // The one file whose name ends so.
  [[nodiscard]] std::string text(const std::string& folder, const std::string& ending) const {
    for (const auto& entry : platform::listFolder(path(folder))) {
      if (!entry.name.ends_with(ending)) continue;
      return CodePage(949).toUtf8(platform::readFile(path(folder + entry.name)));
    }
    return "none";
  }

  std::string output;

 private:
  support::TemporaryFolder folder_;
};

TEST_F(ProgramTest, WithoutConfigurationARunTimeErrorEndsIt) {
  EXPECT_EQ(run("T2013/08/21"), 2);
  EXPECT_TRUE(output.starts_with("런타임 오류 '13':")) << output;
  EXPECT_EQ(output.find("지정된 위치"), std::string::npos);
}

TEST_F(ProgramTest, WithoutTheSalesDatabaseAMessageEndsIt) {
  file("config.ini", "[경로]\r\nDB=/no/홀\r\n");
  EXPECT_EQ(run("T2013/08/21"), 2);
  EXPECT_EQ(output, "데이터베이스 오류: 지정된 위치(/no/홀," +
                        path("").substr(0, path("").size() - 1) +
                        ")에 데이터베이스가 없습니다. 프로그램을 종료합니다.\n");
  EXPECT_EQ(text("", ".log"), "none");
}

TEST_F(ProgramTest, AConfigurationThatCannotBeReadEndsItAndNothingIsWritten) {
  if (support::kOnWindows) GTEST_SKIP();
  fs::create_symlink("/proc/self/mem", path("config.ini"));  // there, but its first byte is not
  file("data.mdb", "");
  EXPECT_EQ(run("T2013/08/21"), 2);
  EXPECT_TRUE(output.starts_with("런타임 오류 '57':")) << output;
  EXPECT_NE(output.find("config.ini"), std::string::npos);
  EXPECT_TRUE(fs::is_empty(path("AutoLoadData")));
}

TEST_F(ProgramTest, DaysThatAreNoneEndIt) {
  file("config.ini", "[경영자]\r\nGroup=A01\r\n상호=한옥\r\n");
  file("data.mdb", "");
  EXPECT_EQ(run("T2013/13/45"), 2);
  EXPECT_NE(output.find("\n런타임 오류 '13':"), std::string::npos) << output;
}

TEST_F(ProgramTest, AShopWhoseFilesAreDamagedStillGetsItsDeletes) {
  file("config.ini", "[경영자]\r\nGroup=A01\r\n상호=한옥\r\n");
  for (const auto* name : {"data.mdb", "config.mdb", "outgo.mdb"}) file(name, "scribbled over");
  EXPECT_EQ(run("T2013/08/21"), 1);
  EXPECT_NE(output.find("전송오류... Trans\n"), std::string::npos) << output;
  for (const auto* failure : {"매출: (91) ", "결산 2013-08-21: (91) 4단계: "}) {
    EXPECT_NE(output.find(std::string("\n") + failure), std::string::npos) << output;
    EXPECT_NE(text("", "-errors.log").find(failure), std::string::npos);
  }
  EXPECT_TRUE(text("AutoLoadData/", "_한옥.txt")
                  .starts_with("Delete FROM SellingTB  Where SL_GROUP = 'A01'   And SL_SANGHO = "
                               "'한옥'   And SL_RDATE >= '2013-08-21'"));
  EXPECT_TRUE(text("", "D.log").starts_with("File Create..\r\nSelling Start "));
  EXPECT_NE(text("", "config.ini").find("LastDate=2013/08/21"), std::string::npos);
}

// Jet 3 has other pages, rows, texts and commit pairs; of the first days' sales the rows grow, and
// some move to other pages. What is sent must not show it.
TEST_F(ProgramTest, TheFormatOfTheFilesDoesNotShowInTheStatements) {
  std::string expected;
  for (const std::string format : {"jet4", "jet3", "accdb", "accdb14"}) {
    ASSERT_EQ(support::run({QUENBROOK_MAKESHOP, path(format), "--days", "3", "--format", format}),
              0);
    fs::copy_file(program(), program(format + "/"));
    EXPECT_EQ(support::run({program(format + "/"), "T2013/08/01-2013/08/03"}), 0) << format;
    const std::string statements = text(format + "/AutoLoadData/", ".txt");
    const std::regex momentOfSending("'20[2-9][0-9][-/][0-9]{2}[-/][0-9]{2}', '[0-9:]{8}'");
    const std::string sent = std::regex_replace(statements, momentOfSending, "");
    if (expected.empty()) expected = sent;
    EXPECT_GT(sent.size(), 50000U);
    EXPECT_TRUE(sent == expected) << format;
    for (const char* name : {"/data.mdb", "/config.mdb", "/outgo.mdb"}) {
      const std::string file = path(format + name);
      (void)jetcheck::checkFile(
          file, [&](const std::string& line) { ADD_FAILURE() << format << name << ": " << line; });
      const std::size_t pairs = format == "jet3" ? 0x600 : 0xe00;
      EXPECT_NE(support::readFile(file)[pairs + 2], '\0') << format << name;  // slot 1
    }
  }
}

TEST_F(ProgramTest, TenJobsWithinASecondLeaveTenFiles) {
  constexpr int kJobs = 10;
  ASSERT_EQ(support::run({QUENBROOK_MAKESHOP, path("shop"), "--days", std::to_string(kJobs),
                          "--sales-per-day", "2"}),
            0);
  fs::copy_file(program(), program("shop/"));
  std::list<support::ChildProcess> jobs;
  for (int day = 1; day <= kJobs; ++day) {
    const std::string text = "T2013/08/" + std::string(day < 10 ? "0" : "") + std::to_string(day);
    jobs.emplace_back(std::vector<std::string>{program("shop/"), text}, path("output"));
  }
  for (auto& job : jobs) EXPECT_EQ(job.wait(), 0);
  std::set<std::string> firstLines;
  for (const auto& entry : fs::directory_iterator(path("shop/AutoLoadData"))) {
    EXPECT_EQ(entry.path().extension(), ".txt");
    const std::string content = support::readFile(entry.path());
    firstLines.insert(content.substr(0, content.find('\n')));
    EXPECT_NE(content.find("Insert Into EmployeeItemTB"), std::string::npos);
    EXPECT_EQ(content.find("Insert Into DailyDataTB"), content.rfind("Insert Into DailyDataTB"));
  }
  EXPECT_EQ(firstLines.size(), static_cast<std::size_t>(kJobs));
}

TEST_F(ProgramTest, AnUnattendedStartLoadsNoPluginAndWithoutADisplayItSaysWhatToDo) {
  if (support::kOnWindows) GTEST_SKIP();
  file("config.ini", "[경영자]\r\nGroup=A01\r\n상호=한옥\r\n");
  for (const auto* name : {"data.mdb", "config.mdb", "outgo.mdb"}) file(name, "");
  support::run({"env", "-u", "DISPLAY", "LD_DEBUG=files", program(), "T2013/08/21"}, &output);
  EXPECT_NE(output.find("libQt6Widgets"), std::string::npos);  // the loader did report
  EXPECT_EQ(output.find("/plugins/"), std::string::npos);
  EXPECT_NE(output.find("File Create..\n"), std::string::npos);

  EXPECT_EQ(support::run(
                {"env", "-u", "DISPLAY", "-u", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM=xcb", program()},
                &output),
            2);
  EXPECT_TRUE(output.starts_with("창을 띄울 화면이 없습니다.")) << output;
  EXPECT_EQ(output.find("qt."), std::string::npos) << output;
}

}  // namespace
