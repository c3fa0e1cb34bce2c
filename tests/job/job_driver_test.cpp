#include "job/job_driver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "job/job_turn.h"
#include "platform/code_page.h"
#include "platform/files.h"
#include "settings/profile_reader.h"
#include "support/child_process.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace job {
namespace {

namespace fs = std::filesystem;

// How the trade name Kim's stands in a file's name.
const std::string kEscapedName = support::kOnWindows ? "Kim_'s" : "Kim\\'s";
const std::string kTrap = "전송오류... Trans";

struct FakeWindow : Window {
  std::vector<std::string> captions;
  std::string pointer;
  int yields = 0;
  std::function<void()> whileYielding = [] {};
  void setCaption(std::string_view text) override { captions.emplace_back(text); }
  [[nodiscard]] std::string caption() const override { return captions.back(); }
  void yield() override { ++yields, whileYielding(); }
  void setHourglass(bool on) override { pointer += on ? "11 " : "0 "; }
};

struct NoDatabases : localdb::DatabaseAccess {
  bool JetOpenDB(std::shared_ptr<localdb::Database>&, const std::string&, bool, bool,
                 const std::string&, std::string_view) override {
    return false;
  }
  bool JetOpenRST(const std::shared_ptr<localdb::Database>&, std::unique_ptr<localdb::RecordSet>&,
                  std::string_view, std::int32_t, std::int32_t, std::int32_t, bool) override {
    return false;
  }
};

class JobDriverTest : public testing::Test {
 protected:
  void SetUp() override {
    start.programFolder = folder.path().string();
    start.shop = {"A01", "Kim's", "Kim"};
    settings.setFile(path("config.ini"));
    fs::create_directory(path("AutoLoadData"));
    messageLog.setLevel(1);
  }
  [[nodiscard]] std::string path(const std::string& name) const {
    return platform::joinPath(folder.path().string(), name);
  }
  [[nodiscard]] std::string text(const std::string& name) const {
    return fs::exists(path(name)) ? CodePage(949).toUtf8(platform::readFile(path(name))) : "";
  }
  // A run with the boxes ticked; the fake steps are those of the real table.
  bool run(std::initializer_list<std::size_t> boxes) {
    JobDriver driver({start, databases, settings, clock, ticks, sleeper, jobLog, messageLog,
                      [this] { called += "closed "; }, [](const joblog::Failure&) {}},
                     steps);
    Request request{{}, {41487}, {41507}};  // 2013-08-01 to 2013-08-21
    for (const auto box : boxes) request.ticked.at(box) = true;
    verdict = driver.run(request, window);
    return verdict.passed();
  }
  std::function<void(extract::Workspace&)> writing(const std::string& line) {
    return [this, line](extract::Workspace& work) {
      called += line + " ";
      work.write(line);
    };
  }

  support::TemporaryFolder folder;
  support::FakeClock clock;
  support::FakeTicks ticks;
  support::FakeMemory memory;
  support::ShownMessages messages;
  NoDatabases databases;
  lib_Setting::ProfileReader settings;
  settings::StartValues start;
  joblog::JobLog jobLog{folder.path().string(), clock};
  lib_Message2::MessageLog messageLog{folder.path().string(), clock, memory, messages};
  support::AdvancingSleeper sleeper{clock};
  FakeWindow window;
  JobVerdict verdict;
  std::string called;
  std::vector<Step> steps = {
      {0, "Selling Start ", "Selling End ", writing("Delete 1;"), "매출"},
      {6, "Employee_item  Start ", "Employee_Item End ", writing("Insert 2;"), "출퇴근"},
      {5, "DailyData Start..From : ", "DailyData End ", writing("Insert 3;"), "결산",
       StepKind::kSettlement},
  };
  const std::string final = "AutoLoadData/20130821_153045_" + kEscapedName + ".txt";
};

TEST_F(JobDriverTest, ARunIsLoggedStepByStep) {
  EXPECT_TRUE(run({0, 1, 2, 3, 4, 5, 6}));
  const std::string stamp = "20130821 153045\r\n";
  const std::string tail =
      "자료생성 종료.......\r\n자료 전송 Start.....\r\n자료 전송 종료.....\r\n" +
      std::string(88, '-') + "\r\n";
  EXPECT_EQ(text("H20130821D.log"),
            "File Create..\r\nSelling Start " + stamp + "Selling End " + stamp +
                "Employee_item  Start " + stamp + "Employee_Item End " + stamp +
                "DailyData Start..From : 2013-08-01..To : 2013-08-21.." + stamp + "DailyData End " +
                stamp +
                "마감분석을 위한 최종 작업 일자 저장 ... Start\r\nFile Length Check..33\r\n" +
                stamp + "구문 Check Start " + stamp + "구문 Check End " + stamp + tail);
  EXPECT_EQ(called, "Delete 1; Insert 2; Insert 3; closed ");
  EXPECT_EQ(text(final), "Delete 1;\r\nInsert 2;\r\nInsert 3;\r\n");
  EXPECT_EQ(text("config.ini"), "[DailyData]\r\nLastDate=2013/08/21\r\n");
  EXPECT_EQ(window.pointer, "11 0 ");
  EXPECT_EQ(window.yields, 1);
}

TEST_F(JobDriverTest, AnEmptyRunDeletesItsFileAndEndsInTheTrap) {
  for (const auto& boxes : {std::vector<std::size_t>{}, std::vector<std::size_t>{3}}) {
    window.captions.clear();
    EXPECT_FALSE(boxes.empty() ? run({}) : run({3}));
    EXPECT_TRUE(fs::is_empty(path("AutoLoadData")));
    EXPECT_EQ(std::ranges::count(window.captions, kTrap), 1);
    EXPECT_EQ(window.captions.back(), std::string(88, '-'));
  }
  EXPECT_TRUE(text("130821_XPDll.log").starts_with("E)frmAuto->TMR_Timer[0](53)"));
  EXPECT_EQ(text("config.ini"), "");
}

TEST_F(JobDriverTest, AJobWhoseNameIsTakenTakesTheNextFreeSecond) {
  const std::string stem = "AutoLoadData/20130821_15304";
  const std::string name = "_" + kEscapedName;
  for (const auto& taken : {"5" + name + ".tx", "6" + name + ".txt", "7" + name + ".txt.gz"}) {
    platform::appendToFile(path(stem + taken), "another's");
  }
  EXPECT_TRUE(run({0}));
  EXPECT_EQ(fs::path(verdict.statementFile), path(stem + "8" + name + ".txt"));
  EXPECT_EQ(text(stem + "5" + name + ".tx"), "another's");
}

TEST_F(JobDriverTest, AJobWaitsForTheOneThatHoldsTheFolder) {
  auto other = platform::FolderLock::tryTake(path("AutoLoadData"), kJobLock);
  window.whileYielding = [&] {
    if (window.yields == 3) other.reset();
  };
  EXPECT_TRUE(run({0}));
  EXPECT_EQ(window.captions.front(), kWaitingText);
  EXPECT_EQ(std::ranges::count(window.captions, kWaitingText), 1);
  EXPECT_FALSE(fs::exists(path("AutoLoadData/.job.lock")));
}

TEST_F(JobDriverTest, OnlyAFirstLineWithAStatementIsKept) {
  const struct {
    const char* line;
    bool kept;
  } rows[] = {
      {"insert into X;", false}, {"update X;", false}, {"REPLACE", false}, {"x Insert", true}};
  for (const auto& row : rows) {
    fs::remove(path(final));
    steps = {{0, "", "", writing(row.line), ""}};
    EXPECT_EQ(run({0}), row.kept) << row.line;
    EXPECT_EQ(fs::exists(path(final)), row.kept) << row.line;
  }
}

TEST_F(JobDriverTest, AFailingStepIsLoggedAndTheNextOneRuns) {
  steps[1].collect = [](extract::Workspace&) { throw RuntimeError(94, "Null"); };
  steps[2].collect = [](extract::Workspace& work) {
    work.write("Insert 3;");
    work.addRecords(21);
    work.addFailure({"결산 2013-08-02", 6, "18단계: Overflow", "0"});
  };
  EXPECT_FALSE(run({0, 5, 6}));
  ASSERT_EQ(verdict.failures.size(), 2U);
  EXPECT_TRUE(
      joblog::failureLine(verdict.failures[0]).starts_with("출퇴근: (94) Null - 실패한 뒤"));
  EXPECT_EQ(verdict.failures[1].step, "결산 2013-08-02");
  EXPECT_EQ(verdict.counts.back().records, 21);
  EXPECT_EQ(fs::path(verdict.statementFile), path(final));
  EXPECT_EQ(text(final), "Delete 1;\r\nInsert 3;\r\n");
  EXPECT_EQ(text("130821_XPDll.log"), "E)frmAuto->TMR_Timer[0](94)Null\r\n");
  EXPECT_NE(text("H20130821D.log").find(kTrap + "\r\nEmployee_Item End "), std::string::npos);
  EXPECT_NE(text("config.ini"), "");
}

// Fault: a file that could not be measured was taken for an empty one, and its rows were marked.
TEST_F(JobDriverTest, AFileThatCannotBeMeasuredIsKept) {
  if (support::kOnWindows) GTEST_SKIP();
  steps = {{0, "", "",
            [](extract::Workspace& work) {
              fs::remove(work.statementPath());
              fs::create_symlink(work.statementPath(), work.statementPath());  // leads to itself
            },
            ""}};
  EXPECT_FALSE(run({0}));
  EXPECT_FALSE(fs::is_empty(path("AutoLoadData")));
}

TEST_F(JobDriverTest, WithoutTheFolderEveryStepThatNeedsTheFileFails) {
  fs::remove(path("AutoLoadData"));
  EXPECT_FALSE(run({0}));
  EXPECT_TRUE(text("H20130821D.log").starts_with(kTrap + "\r\nFile Create..\r\n"));
  // Creation, the sales, the length, the deletion, the rename.
  EXPECT_EQ(std::ranges::count(window.captions, kTrap), 5);
}

}  // namespace
}  // namespace job
