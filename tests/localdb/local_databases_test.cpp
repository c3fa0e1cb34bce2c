#include "localdb/local_databases.h"

#include <gtest/gtest.h>

#include <fstream>

#include "jetcreate/file_builder.h"
#include "support/child_process.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

namespace localdb {
namespace {

class LocalDatabasesTest : public testing::Test {
 protected:
  LocalDatabasesTest() {
    jetcreate::FileBuilder::Options options;
    options.password = "비밀";
    for (const bool locked : {false, true}) {
      jetcreate::FileBuilder builder(path(locked ? "locked.mdb" : "data.mdb"),
                                     locked ? options : jetcreate::FileBuilder::Options());
      auto& sales = builder.addTable(
          "Selling", {{.name = "s_id"}, {.name = "c_upload", .type = jet::ColumnType::kYesNo}});
      for (std::int32_t id = 1; id <= 3; ++id) sales.add({id, false});
      builder.finish();
    }
    std::ofstream(path("text.mdb")) << std::string(5000, 'x');
  }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_.path() / name; }

  bool open(const std::string& name, const std::string& connect = "",
            const std::string& caller = "자료수집") {
    return databases_.JetOpenDB(database_, path(name), false, false, connect, caller);
  }

  bool openRows(const std::string& source, int type = 2, int options = 0, int lock = 0,
                bool trace = false) {
    return databases_.JetOpenRST(database_, rows_, source, type, options, lock, trace);
  }

  void mark() {
    const FieldValue marks[] = {{"c_upload", true}};
    rows_->updateRows(0, 1, marks, {});
  }

  [[nodiscard]] int markError() {
    try {
      mark();
    } catch (const RuntimeError& problem) {
      return problem.number();
    }
    return 0;
  }

  // The one message since the last call; its description is cut off after the number.
  std::string message() {
    EXPECT_EQ(messages_.size(), 1U);
    std::string text = messages_.empty() ? "" : messages_.front();
    messages_.clear();
    const std::size_t end = text.find(") ", text.find(": ("));
    return text.find(": (") == std::string::npos ? text : text.substr(0, end + 1);
  }

  support::TemporaryFolder folder_;
  support::FakeClock clock_;
  DBEngine engine_{clock_, nullptr};
  std::vector<std::string> messages_;
  support::FakeTicks ticks_;
  LocalDatabases databases_{engine_, [this](const std::string& text) { messages_.push_back(text); },
                            &ticks_};
  std::shared_ptr<Database> database_;
  std::unique_ptr<RecordSet> rows_;
};

TEST_F(LocalDatabasesTest, OpensAndReportsFailures) {
  EXPECT_TRUE(open("data.mdb"));
  EXPECT_TRUE(messages_.empty());

  EXPECT_FALSE(open("none.mdb"));
  EXPECT_EQ(database_, nullptr);
  EXPECT_EQ(message(), "E))JetOpenDB[0/자료수집]데이터베이스 '" + path("none.mdb") +
                           "'에 접근할 수 없습니다.파일이 없거나, 네트웍이 끊긴 상태입니다. 파일을 "
                           "열 수 없어 Open Function 종료......");
  EXPECT_FALSE(open("none.mdb", "", ""));
  EXPECT_TRUE(message().starts_with("E))JetOpenDB[0/]데이터베이스 '"));
  EXPECT_FALSE(open("text.mdb"));
  EXPECT_EQ(message(), "E))JetOpenDB[0/자료수집]: (3343)");
  EXPECT_FALSE(open("text.mdb", "", ""));
  EXPECT_EQ(message(), "E)JetOpenDB[0]: (3343)");
  EXPECT_FALSE(open("locked.mdb"));
  EXPECT_EQ(message(), "E)JetOpenDB[0]: (3031)");
  EXPECT_TRUE(open("locked.mdb", ";pwd=비밀"));
}

// Faults: a shop whose file is called DATA.MDB has none; the older of two is taken; a failure whose
// reason nobody is told.
TEST_F(LocalDatabasesTest, NamesMatchWithoutRegardToCase) {
  if (support::kOnWindows) GTEST_SKIP();
  std::filesystem::rename(path("data.mdb"), path("DATA.Mdb"));
  EXPECT_TRUE(open("data.mdb"));
  std::filesystem::copy_file(path("text.mdb"), path("data.mdb"));
  ticks_.milliseconds += 500;
  EXPECT_FALSE(open("data.mdb"));
  EXPECT_NE(databases_.lastFailure().find("data.mdb"), std::string::npos);
  EXPECT_FALSE(openRows("Selling"));
  EXPECT_NE(databases_.lastFailure().find("data.mdb"), std::string::npos);
  EXPECT_TRUE(open("DATA.Mdb"));
  EXPECT_EQ(databases_.lastFailure(), "");
}

TEST_F(LocalDatabasesTest, RecordSetsArriveOnTheirFirstRow) {
  ASSERT_TRUE(open("data.mdb"));
  ASSERT_TRUE(openRows("SELECT * FROM Selling ORDER BY s_id"));
  EXPECT_EQ(rows_->recordCount(), 3);
  EXPECT_EQ(toLong(rows_->field("S_ID")), 1);
  ASSERT_TRUE(openRows("SELECT * FROM Selling WHERE s_id = 9"));
  EXPECT_EQ(rows_->recordCount(), 0);
  EXPECT_TRUE(messages_.empty());

  EXPECT_FALSE(openRows("SELECT * FROM Nowhere"));
  EXPECT_EQ(rows_, nullptr);
  EXPECT_EQ(message(), "E)JetOpenRST[0]: (3078)");
  EXPECT_FALSE(openRows("Selling", 3));
  EXPECT_EQ(message(), "E)JetOpenRST[0]: (3001)");
  database_.reset();
  EXPECT_FALSE(openRows("Selling"));
  EXPECT_EQ(message(), "E)JetOpenRST[0]: (91)");
}

TEST_F(LocalDatabasesTest, ArgumentsBehindAZeroAreNotGiven) {
  ASSERT_TRUE(open("data.mdb"));
  struct Case {
    int type;
    int options;
    int lock;
    int expected;
  };
  // Options 4 and lock 4 are read-only, type 4 is a snapshot.
  const Case cases[] = {{0, 0, 0, 0},    {2, 0, 0, 0},    {0, 4, 4, 0},   {2, 0, 4, 0},
                        {4, 0, 0, 3027}, {2, 4, 0, 3027}, {2, 8, 4, 3027}};
  for (const Case& c : cases) {
    ASSERT_TRUE(openRows("Selling", c.type, c.options, c.lock));
    EXPECT_EQ(markError(), c.expected) << c.type << " " << c.options << " " << c.lock;
  }
}

TEST_F(LocalDatabasesTest, TracingCountsOpenings) {
  ASSERT_TRUE(open("data.mdb"));
  ASSERT_TRUE(openRows("Selling"));
  ASSERT_TRUE(openRows("Selling", 2, 0, 0, true));
  EXPECT_EQ(messages_,
            (std::vector<std::string>{"JetOpenRST(0) 1", "JetOpenRST(1) 1", "JetOpenRST(2) 1"}));
  messages_.clear();
  ASSERT_TRUE(openRows("SELECT * FROM Selling WHERE s_id = 9", 2, 0, 0, true));
  EXPECT_EQ(messages_,
            (std::vector<std::string>{"JetOpenRST(0) 2", "JetOpenRST(1) 2", "JetOpenRST(3) 2",
                                      "JetOpenRST(4) 2", "JetOpenRST(5) 2"}));
}

TEST_F(LocalDatabasesTest, AFileIsSharedUntilItIsIdle) {
  ASSERT_TRUE(open("data.mdb"));
  ASSERT_TRUE(openRows("SELECT * FROM Selling ORDER BY s_id"));
  mark();
  std::shared_ptr<Database> again;
  std::unique_ptr<RecordSet> seen;
  ASSERT_TRUE(databases_.JetOpenDB(again, folder_.path() / "." / "data.mdb", false, false, "", ""));
  ASSERT_TRUE(
      databases_.JetOpenRST(again, seen, "SELECT * FROM Selling WHERE c_upload", 2, 0, 0, false));
  EXPECT_EQ(seen->recordCount(), 1);
  again.reset();
  seen.reset();
  database_.reset();
  databases_.closeIdle();  // the record set is still open: the file stays
  EXPECT_EQ(toLong(rows_->field("s_id")), 1);
  rows_->close();
  databases_.closeIdle();
  std::filesystem::remove(path("data.mdb"));
  EXPECT_FALSE(open("data.mdb"));
}

TEST_F(LocalDatabasesTest, AFileThatVanishesIsMissedAfterHalfASecond) {
  if (support::kOnWindows) GTEST_SKIP();
  for (const bool waited : {false, true}) {
    if (waited) ticks_.milliseconds += 500;
    ASSERT_TRUE(open("data.mdb"));
  }
  std::filesystem::remove(path("data.mdb"));
  ticks_.milliseconds += 499;
  EXPECT_TRUE(open("data.mdb"));
  ticks_.milliseconds += 1;
  EXPECT_FALSE(open("data.mdb"));
}

}  // namespace
}  // namespace localdb
