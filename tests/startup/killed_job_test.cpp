// The whole program over a sample shop, killed again and again while the statement file grows: no
// sale may be marked whose statements are not all in the file, and the next run sends everything.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "jet/database.h"
#include "support/child_process.h"
#include "support/sale_statements.h"

namespace {

namespace fs = std::filesystem;

const fs::path kProgramName = fs::path(QUENBROOK_PROGRAM).filename();

class KilledJobTest : public testing::Test {
 protected:
  // A fresh shop, made once.
  void restore() {
    if (!fs::exists(path("fresh"))) {
      ASSERT_EQ(support::run({QUENBROOK_MAKESHOP, path("fresh"), "--days", "20", "--from",
                              "2013-08-01", "--sales-per-day", "100"}),
                0);
      fs::copy_file(QUENBROOK_PROGRAM, path("fresh") / kProgramName);
    }
    fs::remove_all(path("shop"));
    fs::copy(path("fresh"), path("shop"), fs::copy_options::recursive);
  }
  [[nodiscard]] support::Path path(const std::string& name) const { return folder_.path() / name; }
  [[nodiscard]] std::vector<std::string> command() const {
    return {path("shop") / kProgramName, "T2013/08/01-2013/08/20"};
  }

  // The working file of a killed run, or the finished one.
  [[nodiscard]] fs::path statementFile() const {
    for (const auto& entry : fs::directory_iterator(path("shop/AutoLoadData"))) return entry.path();
    return {};
  }
  [[nodiscard]] std::uintmax_t statementBytes() const {
    std::error_code missing;
    const auto size = fs::file_size(statementFile(), missing);
    return missing ? 0 : size;
  }

  [[nodiscard]] std::set<int> markedSales() const {
    const auto database = jet::Database::open(path("shop/data.mdb"));
    jet::Table& table = database->openTable("Selling");
    const auto id = table.definition().findColumn("S_ID").value();
    const auto mark = table.definition().findColumn("c_upload").value();
    std::set<int> marked;
    for (auto scan = table.scan(); scan.next();) {
      if (scan.row().wholeNumber(mark) != 0) {
        marked.insert(static_cast<int>(scan.row().wholeNumber(id)));
      }
    }
    return marked;
  }

 private:
  support::TemporaryFolder folder_;
};

TEST_F(KilledJobTest, HasMarkedOnlyWhatIsInTheFile) {
  restore();
  ASSERT_EQ(support::run(command()), 0);
  const auto whole = support::statementsOfSales(support::readFile(statementFile()));
  const auto wholeBytes = statementBytes();
  ASSERT_EQ(markedSales().size(), whole.size());

  restore();
  const std::set<int> before = markedSales();
  std::mt19937 random(20130821);
  std::uniform_int_distribution<std::uintmax_t> moment(1, wholeBytes * 3 / 4);
  // The job's two threads take turns, and the one that builds statements gets far ahead of the one
  // that writes them.
  const support::OneProcessor processor;
  const int kills = support::kOnWindows ? 4 : 12;
  int killed = 0;
  std::size_t marks = 0;
  for (int runs = 0; runs < 100 && (killed < kills || marks == 0); ++runs) {
    restore();
    support::ChildProcess job(command(), path("log"));
    const auto enough = moment(random);
    while (job.running() && statementBytes() < enough) continue;
    job.kill();
    if (job.wait() != support::ChildProcess::kKilled) continue;
    ++killed;
    const auto sent = support::statementsOfSales(support::readFile(statementFile()));
    for (const int sale : markedSales()) {
      if (before.contains(sale)) continue;
      ++marks;
      ASSERT_TRUE(sent.contains(sale)) << "sale " << sale;
      EXPECT_EQ(sent.at(sale).size(), whole.at(sale).size()) << "sale " << sale;
    }
  }
  EXPECT_GE(killed, kills);
  EXPECT_GT(marks, 0U);

  fs::remove(statementFile());
  ASSERT_EQ(support::run(command()), 0);
  EXPECT_EQ(support::statementsOfSales(support::readFile(statementFile())), whole);
}

}  // namespace
