#include "job/orphan.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "job/job_turn.h"
#include "platform/files.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace job {
namespace {

const std::string kDelete =
    "Delete FROM SellingTB  Where SL_GROUP = 'A01'   And SL_SANGHO = 'K'   And SL_RDATE >= "
    "'2013-08-01'   And SL_RDATE <= '2013-08-21';\r\n";
const std::string kInsert = "Insert Into EmployeeItemTB (EI_ID ) Values (1);\r\n";
const std::string kLines = "Insert Into CustomerTB (CT_MEMO ) Values ('one\r\ntwo');\r\n";

TEST(OrphanTest, OnlyATornLastStatementIsCut) {
  const struct {
    const char* name;
    std::string whole, torn;
  } rows[] = {
      {"nothing torn", kDelete + kInsert, ""},
      {"no line end", kDelete, "Insert Into CardItemTB (CI_ID ) Values (1, 'it"},
      {"half a line end", kDelete + kInsert, "Insert Into CardItemTB (CI_ID ) Values (1);\r"},
      {"a text of two lines", kDelete + kLines, ""},
      {"torn in its second line", kDelete + kLines, kLines.substr(0, kLines.size() - 3)},
      {"torn at its line break", kDelete, "Insert Into CustomerTB (CT_MEMO ) Values ('one\r\n"},
      {"a line of its text begins like one", kDelete,
       "Insert Into CustomerTB (CT_MEMO ) Values ('one\r\nInsert Into"},
      {"nothing whole", "", "Delete FROM SellingTB  Wh"},
      {"empty", "", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(wholeStatements(row.whole + row.torn), row.whole.size()) << row.name;
    const support::TemporaryFolder folder;
    const std::string name = "20130821_153045_K.tx";
    platform::appendToFile(platform::joinPath(folder.path().string(), name), row.whole + row.torn);
    const FinishedOrphan finished = finishOrphan(folder.path().string(), name);
    EXPECT_EQ(finished.cutOff, row.torn.size()) << row.name;
    EXPECT_EQ(finished.path.empty(), row.whole.empty()) << row.name;
    EXPECT_EQ(std::filesystem::is_empty(folder.path()), row.whole.empty()) << row.name;
    if (row.whole.empty()) continue;
    EXPECT_EQ(platform::readFile(finished.path), row.whole) << row.name;
  }
}

TEST(OrphanTest, IsNamedWithItsRangeUnlessAJobRuns) {
  const support::TemporaryFolder folder;
  const std::string path = folder.path().string();
  platform::appendToFile(path + "/20130821_153045_K.tx", kDelete + kInsert);
  platform::appendToFile(path + "/20130821_153046_K.txt", kDelete);
  ASSERT_EQ(orphans(path).size(), 1U);
  EXPECT_EQ(orphans(path)[0].firstDay, "2013-08-01");
  EXPECT_EQ(orphans(path)[0].lastDay, "2013-08-21");
  EXPECT_TRUE(orphans(path)[0].holdsAttendance);

  const auto job = platform::FolderLock::tryTake(path, kJobLock);
  EXPECT_TRUE(orphans(path).empty());
  EXPECT_THROW((void)finishOrphan(path, "20130821_153045_K.tx"), RuntimeError);
  EXPECT_THROW((void)finishOrphan(path, "20130821_153046_K.txt"), RuntimeError);
}

}  // namespace
}  // namespace job
