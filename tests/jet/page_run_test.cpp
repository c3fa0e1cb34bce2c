// Pages that were read ahead: what is given of them is as good as of pages read one by one.
#include <cstring>
#include <fstream>
#include <limits>

#include "jet/pages/page_file.h"
#include "support/child_process.h"
#include "support/fake_platform.h"
#include "values/runtime_error.h"

#include <gtest/gtest.h>

namespace jet {
namespace {

class PageRunTest : public testing::Test {
 protected:
  static constexpr std::uint32_t kPages = 100;

  PageRunTest() {
    std::string bytes(kPages * format_.pageSize + 100, '\0');  // and a page that is cut off
    for (std::uint32_t page = 0; page < kPages; ++page) {
      bytes.at(page * format_.pageSize) = static_cast<char>(page);
    }
    std::ofstream(path_, std::ios::binary) << bytes;
  }

  [[nodiscard]] PageFile open(std::size_t cachedPages = 1024, std::uint32_t key = 0) const {
    return {RandomAccessFile::open(path_, RandomAccessFile::Mode::kReadWrite), format_, key, false,
            cachedPages * format_.pageSize};
  }
  static int first(PageFile& file, std::uint32_t page) {
    return std::to_integer<int>(file.page(page)->bytes.front());
  }

  support::TemporaryFolder folder_;
  std::string path_ = (folder_.path() / "data.mdb").string();
  const Format& format_ = formatOf(Version::kJet4);
  support::FakeTicks ticks_;
};

// Faults: a page of a run under its neighbour's number; a page lost between two runs; one that the
// file does not have, or has in part; a run that does not fit the cache.
TEST_F(PageRunTest, EveryPageIsItself) {
  for (const std::size_t cachedPages : {1U, 3U, 16U, 1024U}) {
    for (const std::uint32_t step : {1U, 3U, 7U, 20U}) {
      PageFile file = open(cachedPages);
      for (std::uint32_t page = 0; page < kPages; page += step) {
        EXPECT_EQ(first(file, page), page) << cachedPages << ' ' << step;
        EXPECT_EQ(first(file, kPages - 1 - page), kPages - 1 - page);
      }
      EXPECT_THROW((void)file.page(kPages), RuntimeError);
    }
  }
}

// Fault: a run brings back a page that is cached as we have just written it, or decoded twice.
TEST_F(PageRunTest, OurWritesStay) {
  constexpr std::uint32_t kKey = 0x1234;
  PageFile file = open(1024, kKey);
  for (std::uint32_t page = 1; page < kPages; ++page) {
    const std::byte number{static_cast<unsigned char>(page + 100)};
    file.write(page, 0, Bytes(&number, 1));
    const std::uint32_t ahead = page + 5;
    if (ahead < kPages && page % 10 == 0) file.write(ahead, 1, Bytes(&number, 1));
    EXPECT_EQ(first(file, page), page + 100);
    if (page % 10 == 5 && page > 5) {
      EXPECT_EQ(std::to_integer<int>(file.page(page)->bytes[1]), page + 95);
    }
  }
}

// Fault: a page that was read ahead is believed for longer than a cached one.
TEST_F(PageRunTest, OthersChangesAreSeen) {
  PageFile ours = open();
  PageFile theirs = open();
  ours.share(1, ticks_);
  theirs.share(2, ticks_);
  for (std::uint32_t page = 1; page <= 10; ++page) EXPECT_EQ(first(ours, page), page);
  const std::byte number{200};
  theirs.write(15, 0, Bytes(&number, 1));
  theirs.countCommit();
  ticks_.milliseconds += 500;
  EXPECT_EQ(first(ours, 15), 200);
}

}  // namespace
}  // namespace jet
