// One fault of each kind, made in a copy of a whole file by changing a few bytes, and the line that
// says so.
#include "jetcheck/file_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <random>
#include <regex>

#include "jet/format/commit_bytes.h"
#include "jetcheck/sales_copy.h"

namespace jetcheck {
namespace {

using testing::Contains;
using testing::IsEmpty;

// GoogleTest's own expressions know little where the system has none.
MATCHER_P(ContainsPattern, pattern, "") { return std::regex_search(arg, std::regex(pattern)); }

std::vector<std::string> check(const std::string& path) {
  std::vector<std::string> lines;
  const Summary found = checkFile(path, [&](const std::string& line) { lines.push_back(line); });
  EXPECT_EQ(found.faults, lines.size());
  return lines;
}

struct Damage {
  const char* kind;
  std::function<void(SalesCopy&)> make;
  const char* line;  // a regular expression
};

void PrintTo(const Damage& damage, std::ostream* out) { *out << damage.kind; }

constexpr RowId kFreeMap{jet::kUsedPagesMapPage, 0};

const std::vector<Damage> kDamages = {
    {"CutWithinAPage", [](auto& f) { f.bytes.resize(f.bytes.size() - 100); },
     "^page [0-9]+: the file ends within it$"},
    {"WriteNotEnded",
     [](auto& f) { f.bytes[jet::commitPairOffset(jet::Version::kJet4, 7) + 1] = 0; },
     "^page 0: user 7 did not end a write$"},
    {"DefinitionCleared", [](auto& f) { f.bytes[f.definition.page * kPage] = 0; },
     "^table 'Selling': page [0-9]+: definition of table 'Selling': page [0-9]+ is not part"},
    {"DefinitionLength",
     [](auto& f) { f.template add<std::uint32_t>(f.definition.page * kPage + 8, 1); },
     "^table 'Selling': page [0-9]+: .*it is not as long as it says$"},
    {"ColumnsInOnePlace",
     [](auto& f) {
       const std::size_t second = f.definition.page * kPage + kFormat.definitionEnd +
                                  3 * kFormat.realIndexCountSize + kFormat.columnSize;
       f.template add<std::uint16_t>(second + kFormat.columnFixedOffset, -1);
     },
     "^page [0-9]+, table 'Selling': column 'day' has the place of column 'id'$"},
    {"CatalogueCleared", [](auto& f) { f.bytes[2 * kPage] = 0; }, "^the catalogue: page 2: "},

    {"OwnedAndFree", [](auto& f) { f.setBit(kFreeMap, f.pages[1], true); },
     "^page [0-9]+: it belongs to the rows of table 'Selling' and to the free pages$"},
    {"OwnedTwice",
     [](auto& f) { f.setBit(f.definition.realIndexes[1].usageMap, f.pages[1], true); },
     "^page [0-9]+: it belongs to the rows of table 'Selling' and to index 'day' of table"},
    {"OwnedByNobody", [](auto& f) { f.setBit(f.definition.ownedPages, f.pages[0], false); },
     "^page [0-9]+: it belongs to nobody and is not free$"},
    {"IndexPageNotOwned",
     [](auto& f) { f.setBit(f.definition.realIndexes[0].usageMap, f.firstLeaf, false); },
     "^page [0-9]+, index 'PrimaryKey' of table 'Selling': it belongs to nobody$"},
    {"ValuePageNotOwned",
     [](auto& f) { f.setBit(f.notes, f.template get<std::uint32_t>(f.onePage + 4) >> 8, false); },
     "^row .*column 'note': page [0-9]+: it belongs to nobody and not to the long values"},
    {"RoomOnAnothersPage", [](auto& f) { f.setBit(f.definition.freePages, f.firstLeaf, true); },
     "^page [0-9]+: it should have room for the rows of table 'Selling' and belongs to index"},
    {"MapOfTwo",
     [](auto& f) {
       f.template set<std::uint32_t>(
           f.definition.page * kPage + kFormat.definitionFreePages,
           f.template get<std::uint32_t>(f.definition.page * kPage + kFormat.definitionOwnedPages));
     },
     "^page [0-9]+, row [0-9]+: the usage map of the rows of table 'Selling' is another's too$"},

    {"RowOutsideItsPage", [](auto& f) { f.template set<std::uint16_t>(f.slotOf(f.ids[9]), 8); },
     "^table 'Selling': page [0-9]+: row [0-9]+ lies outside the page$"},
    {"FieldOutsideItsRow", [](auto& f) { f.template set<std::uint16_t>(f.ends[9] - 5, 0x0fff); },
     "^page [0-9]+: row [0-9]+ of table 'Selling': column '[a-z]+' lies outside the row$"},
    {"FreeBytesOfRows", [](auto& f) { f.template add<std::uint16_t>(f.pages[0] * kPage + 2, 1); },
     "^page [0-9]+, table 'Selling': it should have [0-9]+ free bytes, it says [0-9]+$"},
    {"ForwardToARow",
     [](auto& f) {
       f.template set<std::uint32_t>(f.forwardAt(0), f.ids[0].page << 8 | f.ids[0].row);
     },
     "^page [0-9]+, row [0-9]+, table 'Selling': its forward .* which is a row of its own$"},
    {"ForwardOfAnother",
     [](auto& f) {
       f.template set<std::uint32_t>(f.forwardAt(0), f.template get<std::uint32_t>(f.forwardAt(1)));
     },
     "^page [0-9]+, row [0-9]+, table 'Selling': its forward pointer .*, as another one does$"},
    {"ForwardToNowhere",
     [](auto& f) { f.template set<std::uint32_t>(f.forwardAt(0), f.firstLeaf << 8); },
     "^table 'Selling': page [0-9]+: it should hold rows$"},
    {"ValueTooShort", [](auto& f) { f.template add<std::uint32_t>(f.onePage, 1); },
     "column 'note': page [0-9]+: a long value is not as long as its row says$"},
    {"PiecesTooShort", [](auto& f) { f.template add<std::uint32_t>(f.chained, 1); },
     "column 'note': page [0-9]+: the pieces of a long value are 9000 bytes, not 9001$|"
     "column 'note': page [0-9]+: the pieces of a long value are 18000 bytes, not 18001$"},
    {"PiecesInACircle",
     [](auto& f) {
       const auto first = f.template get<std::uint32_t>(f.chained + 4);
       f.template set<std::uint32_t>(f.rowAt({first >> 8, static_cast<std::uint16_t>(first & 255)}),
                                     first);
     },
     "column 'note': page [0-9]+: row [0-9]+ is part of two long values$"},
    {"PieceOfNoRow",
     [](auto& f) { f.template set<std::uint32_t>(f.onePage, jet::kLongValueInline); },
     "^page [0-9]+, row [0-9]+, table 'Selling': a piece of a long value that no row has$"},
    {"CountOfRows",
     [](auto& f) {
       f.template add<std::uint32_t>(f.definition.page * kPage + kFormat.definitionRowCount, -1);
     },
     "^page [0-9]+, table 'Selling': its definition counts [0-9]+ rows, there are [0-9]+$"},
    {"LastAutonumber",
     [](auto& f) {
       f.template set<std::uint32_t>(f.definition.page * kPage + kFormat.definitionAutonumber, 99);
     },
     "^page [0-9]+, table 'Selling': its last AutoNumber is 99, a row has 1200$"},

    {"EntriesOutOfOrder", [](auto& f) { f.bytes[f.entryEnd(f.firstLeaf, 5) - 5] ^= 0x70; },
     "^index 'PrimaryKey' of table 'Selling': page [0-9]+: its index entries are out of order$"},
    {"PrefixTooLong",
     [](auto& f) {
       f.template set<std::uint16_t>(f.firstLeaf * kPage + kFormat.indexPrefixLength, 300);
     },
     "^index 'PrimaryKey' of .*: the prefix of its entries does not fit$"},
    {"PrefixTooShort",
     [](auto& f) {
       f.template add<std::uint16_t>(f.firstLeaf * kPage + kFormat.indexPrefixLength, -1);
     },
     "^index 'PrimaryKey' of|^page [0-9]+, index 'PrimaryKey' of"},
    {"LeavesOutOfOrder",
     [](auto& f) {
       const std::size_t at = f.leaf(1) * kPage + kFormat.indexEntries;
       std::memset(&f.bytes[at + 1], 0, 4);
     },
     "^page [0-9]+, index 'PrimaryKey' of .*: its first entry is not above the last one of the "},
    {"NodeBelowItsChild", [](auto& f) { f.bytes[f.root * kPage + kFormat.indexEntries + 4] = 0; },
     "^page [0-9]+, index 'PrimaryKey' of .*: its last entry is above that of its node$"},
    {"ChildTwice",
     [](auto& f) {
       f.template set<std::uint32_t>(f.root * kPage + kFormat.indexTail, f.firstLeaf);
     },
     "^page [0-9]+, index 'PrimaryKey' of table 'Selling': its tree has it twice$"},
    {"ChainForwards",
     [](auto& f) { f.template set<std::uint32_t>(f.firstLeaf * kPage + kFormat.indexNext, 3); },
     "^page [0-9]+, index 'PrimaryKey' of .*: the page after it is [0-9]+, it says 3$"},
    {"ChainBackwards",
     [](auto& f) { f.template set<std::uint32_t>(f.leaf(1) * kPage + kFormat.indexPrevious, 3); },
     "^page [0-9]+, index 'PrimaryKey' of .*: the page before it is [0-9]+, it says 3$"},
    {"LevelOfALeaf", [](auto& f) { f.bytes[f.firstLeaf * kPage + kFormat.indexLevel] = 2; },
     "^page [0-9]+, index 'PrimaryKey' of table 'Selling': a leaf of level 2$"},
    {"LevelOfANode", [](auto& f) { f.bytes[f.root * kPage + kFormat.indexLevel] = 2; },
     "^page [0-9]+, index 'PrimaryKey' of .*: a node of level 2 where level 1 stands$"},
    {"FreeBytesOfAnIndex",
     [](auto& f) { f.template add<std::uint16_t>(f.firstLeaf * kPage + 2, 1); },
     "^page [0-9]+, index 'PrimaryKey' of .*: it should have [0-9]+ free bytes, it says [0-9]+$"},
    {"PageOutsideItsTree",
     [](auto& f) { f.template set<std::uint32_t>(f.root * kPage + kFormat.indexTail, 0); },
     "^page [0-9]+, index 'PrimaryKey' of table 'Selling': its tree does not have it$"},

    {"EntryOfNoRow", [](auto& f) { f.bytes[f.entryEnd(f.firstLeaf, 5) - 1] = '\xfe'; },
     "^page [0-9]+, index 'PrimaryKey' of .*: an entry names row 254 of page [0-9]+, which is not"},
    {"EntryOfAnotherRow",
     [](auto& f) {
       f.bytes[f.entryEnd(f.firstLeaf, 5) - 1] = f.bytes[f.entryEnd(f.firstLeaf, 4) - 1];
     },
     "^page [0-9]+, index 'PrimaryKey' of table 'Selling': two entries name row [0-9]+ of page"},
    {"KeyOfAnotherValue", [](auto& f) { f.template add<double>(f.starts[20] + 2 + 4, 1); },
     "^page [0-9]+, index 'day' of .*: the entry of row [0-9]+ of page [0-9]+ is not its key$"},
    {"RowWithoutEntry",
     [](auto& f) {
       const std::size_t n = f.indexPage(f.firstLeaf).size() - 1;
       const std::size_t size = f.entryEnd(f.firstLeaf, n) - f.entryEnd(f.firstLeaf, n - 1);
       f.clearMask(f.firstLeaf, n);
       f.template add<std::uint16_t>(f.firstLeaf * kPage + 2, static_cast<int>(size));
     },
     "^page [0-9]+, row [0-9]+, index 'PrimaryKey' of table 'Selling': the row has no entry$"},
    {"KeyTwice",
     [](auto& f) {
       f.template set<std::int32_t>(f.starts[1] + 2, f.template get<std::int32_t>(f.starts[0] + 2));
       f.bytes[f.entryEnd(f.firstLeaf, 1) - 5] = f.bytes[f.entryEnd(f.firstLeaf, 0) - 5];
     },
     "^page [0-9]+, index 'PrimaryKey' of .*: row [0-9]+ of page [0-9]+ has the key of row"},
};

class FileCheckTest : public testing::Test {
 protected:
  FileCheckTest() { makeSales(path_); }

  support::TemporaryFolder folder_;
  const std::string path_ = (folder_.path() / "data.mdb").string();
};

class FaultTest : public FileCheckTest, public testing::WithParamInterface<Damage> {};

TEST_P(FaultTest, IsNamed) {
  ASSERT_THAT(check(path_), IsEmpty());
  SalesCopy copy(path_);
  GetParam().make(copy);
  std::ofstream(path_, std::ios::binary | std::ios::trunc) << copy.bytes;
  EXPECT_THAT(check(path_), Contains(ContainsPattern(GetParam().line)));
}

INSTANTIATE_TEST_SUITE_P(Damages, FaultTest, testing::ValuesIn(kDamages),
                         [](const auto& info) { return info.param.kind; });

// Rows moved, index entries changed, pages added: all in order afterwards.
TEST_F(FileCheckTest, MarkedFileIsWhole) {
  const auto database = jet::Database::open(path_, {.readOnly = false});
  jet::Table& table = database->openTable("Selling");
  std::vector<RowId> ids;
  for (auto scan = table.scan(); scan.next();) ids.push_back(scan.row().id());
  const std::vector<jet::FieldValue> fields = {{"mark", true},
                                               {"day", values::Variant(values::DateTime{42000})}};
  database->updateRows(table, std::span(ids).first(300), fields);
  EXPECT_THAT(check(path_), IsEmpty());
}

TEST_F(FileCheckTest, EncodedFileIsCheckedWithoutItsPassword) {
  const std::string encoded = (folder_.path() / "encoded.mdb").string();
  makeSales(encoded, {.password = "geheim", .encodingKey = 0x51eb851f});
  EXPECT_THAT(check(encoded), IsEmpty());
}

TEST_F(FileCheckTest, ProgramSaysSoAndExitsWithIt) {
  const std::string other = (folder_.path() / "other.mdb").string();
  std::ofstream(other, std::ios::binary) << support::readFile(path_).substr(0, 5 * kPage);
  const std::string text = (folder_.path() / "text.mdb").string();
  std::ofstream(text, std::ios::binary) << std::string(9000, 'x');

  std::string output;
  EXPECT_EQ(support::run({QUENBROOK_JETCHECK, path_}, &output), 0);
  EXPECT_THAT(output, ContainsPattern(
                          "^[^\n]+data.mdb: whole: 6 tables, [0-9]+ rows, [0-9]+ indexes, [0-9]+ "
                          "pages\n$"));
  EXPECT_EQ(support::run({QUENBROOK_JETCHECK, path_, other}, &output), 1);
  EXPECT_THAT(output, ContainsPattern("data.mdb: whole: .*\n.*other.mdb: the catalogue: page"));
  EXPECT_EQ(support::run({QUENBROOK_JETCHECK, text, path_}, &output), 2);
  EXPECT_THAT(output, ContainsPattern("data.mdb: whole: "));
  EXPECT_EQ(support::run({QUENBROOK_JETCHECK}), 2);
}

// A page without its end, a number that points elsewhere: each check ends, whatever it finds.
TEST_F(FileCheckTest, EndsOnAnyBytes) {
  const std::string whole = support::readFile(path_);
  std::mt19937 random(11);
  const auto pick = [&](std::size_t below) { return random() % below; };
  int found = 0;
  for (int copy = 0; copy < 60; ++copy) {
    std::string bytes = whole;
    const std::size_t page = (1 + pick(bytes.size() / kPage - 1)) * kPage;
    for (int i = 0; i < 4; ++i) bytes[page + pick(80)] = static_cast<char>(random());
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << bytes;
    found += check(path_).empty() ? 0 : 1;
  }
  EXPECT_GT(found, 48);
}

}  // namespace
}  // namespace jetcheck
