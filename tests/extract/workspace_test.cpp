#include "extract/workspace.h"

#include "support/job_fixture.h"

namespace extract {
namespace {

using support::errorOf;

using WorkspaceTest = support::JobFixture;

TEST_F(WorkspaceTest, AWalkThatFailsHasMarkedTheRowsThatAreInTheFile) {
  if (support::kOnWindows) GTEST_SKIP();
  // The file is a link, so that it can be there at one moment and out of reach at the next.
  const std::string file = folder.path() / "file";
  const std::string link = folder.path() / "link";
  std::filesystem::create_symlink(file, work.statementPath());
  std::filesystem::create_symlink(folder.path() / "no folder" / "file", link);
  constexpr std::size_t kWritten = 999;  // lines before the failure
  const struct {
    int error;
    std::size_t leastInFile;        // lines; a file out of reach may have missed any of them
    std::function<void()> failing;  // between the two statements of row 500
  } cases[] = {{94, kWritten, [] { throw RuntimeError(error::kInvalidUseOfNull, ""); }},
               {53, 0, [&] { std::filesystem::rename(link, work.statementPath()); }}};
  for (const auto& tried : cases) {
    std::filesystem::remove(file);
    auto& rows = databases.answers["FROM rows"].rows;
    rows.assign(1000, {});
    work.openDatabase(start.dataPath, "");
    EXPECT_EQ(tried.error, errorOf([&] {
                work.forEachRow(Rows::kSales, "SELECT * FROM rows", {{"sent", true}},
                                [&](localdb::RecordSet&, std::int32_t number) {
                                  work.write(std::to_string(2 * number - 1));
                                  if (number == 500) tried.failing();
                                  work.write(std::to_string(2 * number));
                                });
              }));
    const auto written = linesOf(file);
    EXPECT_GE(written.size(), tried.leastInFile);
    EXPECT_LE(written.size(), kWritten);
    for (std::size_t i = 0; i < written.size(); ++i) EXPECT_EQ(written[i], std::to_string(i + 1));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(rows[i].contains("sent"), i < written.size() / 2) << i << " of " << written.size();
    }
  }
}

// Fault: hundreds of statements of rows that will never be marked.
TEST_F(WorkspaceTest, AMarkThatNoRowCanHaveShowsAtTheFirstRow) {
  databases.answers["FROM rows"].rows.assign(1000, {});
  databases.answers["FROM rows"].missing = {"sent"};
  work.openDatabase(start.dataPath, "");
  EXPECT_EQ(3265, errorOf([&] {
              work.forEachRow(Rows::kSales, "SELECT * FROM rows", {{"sent", true}},
                              [&](localdb::RecordSet&, std::int32_t number) {
                                work.write(std::to_string(number));
                                work.write("item");
                              });
            }));
  EXPECT_EQ(linesOf(work.statementPath()), (std::vector<std::string>{"1", "item"}));
}

}  // namespace
}  // namespace extract
