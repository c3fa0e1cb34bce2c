// The commit counts of the header page: what a write of ours tells the file's other users, and what
// theirs tell us.
#include <array>
#include <fstream>
#include <limits>

#include "jet/format/commit_bytes.h"
#include "jet/pages/page_edits.h"
#include "jet/sales_file.h"
#include "support/fake_platform.h"

namespace jet {
namespace {

using namespace std::string_literals;

struct CountCase {
  const char* name;
  Version version;
  int others;  // who have the file open already; -1: we have it alone
  std::size_t pairAt;
  std::string before;
  std::string after;
};

class CommitCountTest : public testing::TestWithParam<CountCase> {
 protected:
  CommitCountTest() {
    bytes_.assign(3 * format_.pageSize, '\x55');
    for (int slot = 0; slot < kCommitPairs; ++slot) {
      bytes_.replace(commitPairOffset(format_.version, slot), kCommitPairSize, "\0\1"s);
    }
    bytes_.replace(GetParam().pairAt, kCommitPairSize, GetParam().before);
    std::ofstream(path_, std::ios::binary) << bytes_;
  }

  std::unique_ptr<LockFile> join(Sharing sharing) {
    return LockFile::join(path_, OpenFor::kWriting, sharing, sleeper_);
  }

  support::TemporaryFolder folder_;
  std::string path_ = (folder_.path() / "data.mdb").string();
  const Format& format_ = formatOf(GetParam().version);
  std::string bytes_;
  platform::SystemSleeper sleeper_;
  support::FakeTicks ticks_;
};

// Faults: the pair of another version, slot or of nobody; a carry into the second byte; one count
// for two pages, so that a kill between them leaves the first untold; a count without a write.
TEST_P(CommitCountTest, GoesUpByOneWithEachPageWritten) {
  std::vector<std::unique_ptr<LockFile>> others;
  while (std::ssize(others) < GetParam().others) others.push_back(join(Sharing::kShared));
  const auto us = join(GetParam().others < 0 ? Sharing::kExclusive : Sharing::kShared);
  PageFile file(RandomAccessFile::open(path_, RandomAccessFile::Mode::kReadWrite), format_, 0,
                false);
  file.share(us->slot(), ticks_);
  PageEdits edits(file, *us);
  Page& one = edits.edit(1);
  Page& two = edits.edit(2);
  edits.schedule(1);
  edits.writeAll();
  EXPECT_TRUE(support::readFile(path_) == bytes_) << "nothing has changed yet";

  one.bytes[10] = two.bytes[7] = std::byte{0xAB};
  edits.schedule(1);
  edits.schedule(2);
  edits.writeAll();
  bytes_[format_.pageSize + 10] = bytes_[2 * format_.pageSize + 7] = '\xAB';
  bytes_.replace(GetParam().pairAt, kCommitPairSize, GetParam().after);
  EXPECT_TRUE(support::readFile(path_) == bytes_);
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, CommitCountTest,
    testing::Values(CountCase{"Jet4Slot1NeverUsed", Version::kJet4, 0, 0xE02, "\0\1"s, "\2\1"s},
                    CountCase{"Jet4Slot2", Version::kJet4, 1, 0xE04, "\x73\1"s, "\x75\1"s},
                    CountCase{"Jet4GoesRound", Version::kJet4, 0, 0xE02, "\xFF\1"s, "\1\1"s},
                    CountCase{"Jet4Alone", Version::kJet4, -1, 0xE00, "\x0A\1"s, "\x0C\1"s},
                    CountCase{"Jet3Slot1", Version::kJet3, 0, 0x602, "\xB7\1"s, "\xB9\1"s},
                    CountCase{"Jet3Slot3GoesRound", Version::kJet3, 2, 0x606, "\xFF\1"s, "\1\1"s},
                    CountCase{"Jet3Alone", Version::kJet3, -1, 0x600, "\0\1"s, "\2\1"s}),
    [](const auto& tried) { return tried.param.name; });

class ChangesByOthersTest : public testing::Test {
 protected:
  ChangesByOthersTest() {
    for (auto scan = table_.scan(); scan.next();) ids_.push_back(scan.row().id());
  }

  static void set(Database& database, RowId id, const FieldValue& field) {
    database.updateRows(database.openTable("Selling"), std::array{id}, std::array{field});
  }
  // As a record set reads it, which keeps the row's page from field to field and row to row.
  [[nodiscard]] std::int64_t number() {
    EXPECT_TRUE(table_.tryReadNext(ids_.front(), row_));
    return row_.wholeNumber(4);
  }

  SalesFile file_{{.rows = 100}};
  support::FakeTicks ticks_;
  std::unique_ptr<Database> ours_ =
      Database::open(file_.path(), {.readOnly = false, .ticks = &ticks_});
  std::unique_ptr<Database> theirs_ = file_.open();
  Table& table_ = ours_->openTable("Selling");
  std::vector<RowId> ids_;
  Row row_;
};

// Fault: what the till has changed since is sent as it was.
TEST_F(ChangesByOthersTest, AreSeenAfterHalfASecond) {
  ticks_.milliseconds = std::numeric_limits<std::int32_t>::max() - 100;  // it wraps meanwhile
  EXPECT_EQ(number(), 0);
  set(*theirs_, ids_.front(), {"no", 77});
  ticks_.milliseconds += 499;
  EXPECT_EQ(number(), 0);  // the header is not read for every row
  ++ticks_.milliseconds;
  EXPECT_EQ(number(), 77);
  EXPECT_EQ(table_.read(ids_.front()).wholeNumber(4), 77);
}

// Fault: an update that is worked out from pages older than its lock.
TEST_F(ChangesByOthersTest, AreSeenOnceALockWasGot) {
  ASSERT_NE(ids_.front().page, ids_.back().page);
  EXPECT_EQ(number(), 0);
  set(*theirs_, ids_.front(), {"no", 78});
  set(*ours_, ids_.back(), {"c_upload", true});
  EXPECT_EQ(number(), 78);
}

// Fault: a job that marks row after row reads every page again and again.
TEST_F(ChangesByOthersTest, OurOwnAreNone) {
  const PagePtr kept = table_.dataPage(ids_.back().page);
  for (int i = 0; i < 3; ++i) {
    set(*ours_, ids_.front(), {"c_upload", i % 2 == 0});
    ticks_.milliseconds += 500;
    EXPECT_EQ(table_.dataPage(ids_.back().page), kept);
  }
  set(*theirs_, ids_.front(), {"no", 79});
  ticks_.milliseconds += 500;
  EXPECT_NE(table_.dataPage(ids_.back().page), kept);
}

}  // namespace
}  // namespace jet
