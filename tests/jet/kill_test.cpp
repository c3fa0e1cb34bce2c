// Marking is cut short at random moments, some hundreds of times; each time every row must be
// whole, found by every index, and readable by another program. The child is let run for a random
// count of looks at its file, so nothing waits for a clock; how many looks a whole run takes is
// counted first. The seed is fixed, the moments are the machine's.
#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <random>

#include "jet/sales_file.h"
#include "jetcheck/file_check.h"

namespace jet {
namespace {

using namespace jetcreate;

struct KillCase {
  const char* name;
  SalesOptions options;
  std::vector<NewIndex> indexes = {};
  std::string change;  // what a whole run does to each row
  std::string rounds;  // how often
  int kills;
};

class KillTest : public testing::TestWithParam<KillCase> {
 protected:
  // Gives how often the file was looked at before the child ended or was killed.
  int runMarker(const SalesFile& file, int looks) {
    const std::string log = (folder_.path() / "marker.log").string();
    support::ChildProcess child({QUENBROOK_MARKER, file.path(), "Selling", GetParam().rounds,
                                 GetParam().change, "cc_upload"},
                                log);
    while (support::readFile(log).empty() && child.running()) continue;
    int looked = 0;
    std::ifstream marked(file.path(), std::ios::binary);
    while (looked < looks && child.running()) {
      marked.seekg(0);
      (void)marked.get();
      ++looked;
    }
    child.kill();
    killed_ += child.wait() == support::ChildProcess::kKilled ? 1 : 0;
    return looked;
  }

  support::TemporaryFolder folder_;
  int killed_ = 0;
};

// Page 0 without the commit count of slot 1, which may or may not have gone up.
std::string header(const std::string& file) {
  std::string page = file.substr(0, 4096);
  return page.replace(0xE02, 1, 1, '\0');
}

TEST_P(KillTest, LeavesEveryRowWhole) {
  SalesFile file(GetParam().options, GetParam().indexes);
  file.forget(GetParam().change.substr(0, GetParam().change.find('=')));
  file.forget("cc_upload");
  const std::string whole = support::readFile(file.path());
  const auto restore = [&] {
    std::ofstream(file.path(), std::ios::binary | std::ios::trunc) << whole;
  };
  // The middle of several runs: now and then one is over before it was looked at, or held up.
  std::array<int, 9> looks{};
  for (int& look : looks) {
    restore();
    look = runMarker(file, 1 << 30);
  }
  ASSERT_EQ(killed_, 0);
  const std::string marked = support::readFile(file.path());
  EXPECT_FALSE(marked.substr(4096) == whole.substr(4096));
  EXPECT_FALSE(marked.substr(0, 4096) == whole.substr(0, 4096));
  std::nth_element(looks.begin(), looks.begin() + 4, looks.end());

  std::mt19937 random(20130821);
  std::uniform_int_distribution<int> moment(0, looks[4]);
  int runs = 0;
  const int kills = support::kOnWindows ? GetParam().kills / 10 : GetParam().kills;
  for (; killed_ < kills && runs < 20 * kills; ++runs) {
    restore();
    runMarker(file, moment(random));
    file.expectWhole();
    // A new key goes in before the row is written, the old one out after it: between the two an
    // index has an entry too many, and pages of a split name each other in one direction only.
    (void)jetcheck::checkFile(file.path(), [](const std::string& fault) {
      const bool ofIndex = fault.find(", index '") != std::string::npos;
      EXPECT_TRUE(ofIndex && !GetParam().indexes.empty()) << fault;
    });
    EXPECT_TRUE(header(support::readFile(file.path())) == header(whole));
    if (runs % 20 == 0) file.expectExportUnchanged();
    if (HasFatalFailure() || HasNonfatalFailure()) FAIL() << "run " << runs;
  }
  EXPECT_EQ(killed_, kills) << "of " << runs << " runs; most were over before their kill";
}

INSTANTIATE_TEST_SUITE_P(
    Markings, KillTest,
    testing::Values(KillCase{"InPlace", {.rows = 100}, {}, "c_upload", "41", 150},
                    KillCase{
                        "RowsThatMove", {.rows = 120, .shortRows = 60}, {}, "amount=5", "1", 120},
                    KillCase{"Indexes",
                             {.rows = 250, .longNotes = false},
                             {{.name = "byMark", .columns = {"c_upload"}},
                              {.name = "byPrice", .columns = {"-price", "cc_upload"}}},
                             "c_upload",
                             "1",
                             30}),
    [](const auto& tried) { return tried.param.name; });

}  // namespace
}  // namespace jet
