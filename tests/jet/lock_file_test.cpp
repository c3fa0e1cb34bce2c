#include "jet/pages/lock_file.h"

#include <array>
#include <fstream>
#include <functional>

#include "jet/sales_file.h"
#include "platform/file_lock.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace std::string_literals;

// Does something instead of waiting, once.
class Meanwhile : public platform::Sleeper {
 public:
  explicit Meanwhile(std::function<void()> act = {}) : act_(std::move(act)) {}
  void sleep(std::chrono::milliseconds time) override {
    slept_ += time;
    if (act_) std::exchange(act_, {})();
  }
  [[nodiscard]] std::chrono::milliseconds slept() const { return slept_; }

 private:
  std::function<void()> act_;
  std::chrono::milliseconds slept_{0};
};

int errorOf(const std::function<void()>& act) {
  try {
    act();
    return 0;
  } catch (const RuntimeError& failure) {
    return failure.number();
  }
}

class LockFileTest : public testing::Test {
 protected:
  std::unique_ptr<LockFile> join(Sharing sharing = Sharing::kShared,
                                 OpenFor purpose = OpenFor::kWriting) {
    return LockFile::join(path_, purpose, sharing, noWait_);
  }
  [[nodiscard]] bool lockFileExists() const { return std::filesystem::exists(lockPath_); }

  support::TemporaryFolder folder_;
  std::string path_ = (folder_.path() / "data.mdb").string();
  std::string lockPath_ = (folder_.path() / "data.ldb").string();
  Meanwhile noWait_;
};

TEST_F(LockFileTest, EachUserHasASlotAndAnEntryAndTheLastOneTakesTheFileAway) {
  auto first = join();
  auto second = join();
  EXPECT_EQ(first->slot(), 1);
  EXPECT_EQ(second->slot(), 2);
  EXPECT_TRUE(first->isSlotTaken(2));
  EXPECT_FALSE(first->isSlotTaken(3));
  const std::string entries = support::readFile(lockPath_);
  ASSERT_EQ(entries.size(), 128U);
  EXPECT_EQ(entries.substr(0, 64), entries.substr(64));
  EXPECT_EQ(std::string(entries.c_str()), platform::machineName().substr(0, 31));
  EXPECT_EQ(std::string(entries.c_str() + 32), "Admin");
  first.reset();
  EXPECT_TRUE(lockFileExists());
  EXPECT_EQ(join()->slot(), 1);
  second.reset();
  EXPECT_FALSE(lockFileExists());
}

// The bytes are part of the protocol: another program looks at them.
TEST_F(LockFileTest, LocksLieWhereTheEngineExpectsThem) {
  const auto user = join();
  platform::LockableFile other(lockPath_);
  const auto page = user->lockPage(0x53);
  const auto table = user->lockTableForReading(0x18);
  const auto locked = [&](std::uint64_t byte) {
    return other.lockedByOther({byte, 1}).has_value();
  };
  EXPECT_TRUE(locked(0x10000001));
  EXPECT_FALSE(locked(0x10000002));
  EXPECT_TRUE(locked(0x2000a601) && locked(0x2000a701));
  EXPECT_FALSE(locked(0x2000a600) || locked(0x2000a702));
  EXPECT_TRUE(locked(0x40003001));
  EXPECT_FALSE(locked(0x40003000) || locked(0x40003002));
}

TEST_F(LockFileTest, AStaleFileIsTakenOverAndAnotherSpellingIsFound) {
  const std::string shouted = (folder_.path() / "DATA.LDB").string();
  std::ofstream(shouted) << std::string(128, 'x');
  auto user = join();
  EXPECT_EQ(user->slot(), 1);
  EXPECT_EQ(lockFileExists(), support::kOnWindows);  // by any spelling there
  EXPECT_EQ(support::readFile(shouted).substr(64), std::string(64, 'x'));
  user.reset();
  EXPECT_FALSE(std::filesystem::exists(shouted));
  EXPECT_EQ(lockFilePath((folder_.path() / "shop.ACCDB").string()),
            (folder_.path() / "shop.laccdb").string());
  if (support::kOnWindows) return;
  // Who comes through a link must meet the others.
  std::filesystem::create_directory(folder_.path() / "elsewhere");
  std::ofstream(path_) << "";
  const auto link = folder_.path() / "elsewhere" / "link.mdb";
  std::filesystem::create_symlink(path_, link);
  EXPECT_EQ(lockFilePath(link.string()), lockFilePath(path_));
}

TEST_F(LockFileTest, AloneMeansAlone) {
  auto one = join();
  EXPECT_EQ(errorOf([&] { (void)join(Sharing::kExclusive); }), error::kFileInUse);
  one.reset();
  const auto alone = join(Sharing::kExclusive);
  EXPECT_EQ(alone->slot(), 0);
  EXPECT_EQ(errorOf([&] { (void)join(); }), error::kHeldAlone);
  EXPECT_EQ(errorOf([&] { (void)join(Sharing::kShared, OpenFor::kReading); }), error::kHeldAlone);
}

TEST_F(LockFileTest, WhoComesWhileTheLastOneLeavesGetsAFileOfItsOwn) {
  // The leaver has all user locks and is about to delete the file.
  auto leaver = std::make_unique<platform::LockableFile>(lockPath_);
  ASSERT_TRUE(leaver->tryLock({0x10000001, 255}));
  Meanwhile leaves([&] {
    leaver->removeName();
    leaver.reset();
  });
  const auto user = LockFile::join(path_, OpenFor::kWriting, Sharing::kShared, leaves);
  EXPECT_EQ(user->slot(), 1);
  EXPECT_EQ(join()->slot(), 2);  // meets the same file
  EXPECT_TRUE(lockFileExists());
}

TEST_F(LockFileTest, WhereItCannotBeMadeReadingGoesOnAndWritingDoesNot) {
  std::filesystem::create_directory(lockPath_);
  EXPECT_EQ(join(Sharing::kShared, OpenFor::kReading), nullptr);
  try {
    (void)join();
    ADD_FAILURE();
  } catch (const RuntimeError& refusal) {
    EXPECT_TRUE(refusal.number() == error::kCannotLock || refusal.number() == error::kNoPermission);
    EXPECT_NE(refusal.description().find("'" + lockPath_ + "'"), std::string::npos);
    EXPECT_TRUE(refusal.description().ends_with("Nothing was marked."));
  }
}

TEST(SharedFileTest, AWriterWaitsForAnothersPageAndGivesUpInTheEnd) {
  SalesFile file({.rows = 20});
  Meanwhile noWait;
  const auto other = LockFile::join(file.path(), OpenFor::kWriting, Sharing::kShared, noWait);
  std::optional<PageLock> held;
  Meanwhile letsGo([&] { held.reset(); });
  const auto database = file.open(&letsGo);
  Table& table = database->openTable("Selling");
  auto scan = table.scan();
  ASSERT_TRUE(scan.next());
  const RowId id = scan.row().id();
  const auto mark = [&](bool value) {
    database->updateRows(table, std::array{id}, std::array{FieldValue{"c_upload", value}});
  };
  const std::string before = support::readFile(file.path());
  held = other->lockPage(id.page);
  mark(true);
  EXPECT_GT(letsGo.slept().count(), 0);
  EXPECT_FALSE(support::readFile(file.path()) == before);

  const auto changed = support::readFile(file.path());
  held = other->lockPage(id.page);
  EXPECT_EQ(errorOf([&] { mark(false); }), error::kLockedByUser);
  EXPECT_LE(letsGo.slept().count(), 5000);
  EXPECT_TRUE(support::readFile(file.path()) == changed);
}

// What another program wrote between our reading and our marking must neither be undone nor, where
// what was read is given, marked as sent.
TEST(SharedFileTest, ARowIsReadAgainBeforeItIsChanged) {
  SalesFile file({.rows = 5});
  const auto ours = file.open();
  Table& table = ours->openTable("Selling");
  auto scan = table.scan();
  ASSERT_TRUE(scan.next());
  const std::array ids{scan.row().id()};
  const Row asRead = scan.row();
  ASSERT_TRUE(scan.next());
  const Row next = scan.row();
  const auto theirs = file.open();
  theirs->updateRows(theirs->openTable("Selling"), ids,
                     std::array{FieldValue{"no", 77}, FieldValue{"void", false}});
  const std::array mark{FieldValue{"c_upload", true}};
  const std::array rows{RowToUpdate{ids[0], &asRead}, RowToUpdate{next.id(), &next}};
  for (const std::size_t count : {1U, 2U}) {
    ours->updateRows(table, std::span(rows).first(count), mark);
    EXPECT_EQ(table.read(ids[0]).wholeNumber(7), 0);
  }
  EXPECT_EQ(table.read(next.id()).wholeNumber(7), -1);
  ours->updateRows(table, ids, mark);
  const Row row = table.read(ids[0], Table::Freshness::kFresh);
  EXPECT_EQ(row.wholeNumber(4), 77);
  EXPECT_EQ(row.wholeNumber(3), 0);
  EXPECT_EQ(row.wholeNumber(7), -1);
}

struct CommitCase {
  const char* name;
  int pair;
  std::string bytes;
  bool ownerIsIn;
  int error;
};

class CommitBytesTest : public testing::TestWithParam<CommitCase> {};

TEST_P(CommitBytesTest, AWriteLeftInTheMiddleIsNoticed) {
  const SalesFile file({.rows = 3});
  Meanwhile noWait;
  std::vector<std::unique_ptr<LockFile>> users;
  while (GetParam().ownerIsIn && users.size() < 2) {
    users.push_back(LockFile::join(file.path(), OpenFor::kWriting, Sharing::kShared, noWait));
  }
  {
    std::fstream header(file.path(), std::ios::in | std::ios::out | std::ios::binary);
    header.seekp(0xE00 + 2 * GetParam().pair);
    header << GetParam().bytes;
  }
  EXPECT_EQ(errorOf([&] { (void)Database::open(file.path()); }), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, CommitBytesTest,
    testing::Values(CommitCase{"OfAUserWhoIsGone", 2, "\x41\0"s, false, error::kDamaged},
                    CommitCase{"OfAUserWhoIsIn", 2, "\x41\0"s, true, 0},
                    CommitCase{"OfOneWhoHadItAlone", 0, "\x41\0"s, false, error::kDamaged},
                    CommitCase{"ACountOfWrites", 5, "\xB7\1"s, false, 0}),
    [](const auto& tried) { return tried.param.name; });

}  // namespace
}  // namespace jet
