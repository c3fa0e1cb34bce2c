#include "jet/rows/row_update.h"

#include <gmock/gmock.h>

#include <array>
#include <fstream>
#include <functional>
#include <set>

#include "jet/sales_file.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace jetcreate;

const auto kEvery = [](std::int64_t) { return true; };
const auto kYes = [](std::int64_t) { return values::Variant(true); };

std::size_t forwardedRows(const SalesFile& file) {
  const auto database = Database::open(file.path());
  std::size_t count = 0;
  for (auto scan = database->openTable("Selling").scan(); scan.next();) {
    if (scan.row().page()->number != scan.row().id().page) ++count;
  }
  return count;
}

struct MarkCase {
  const char* name;
  SalesOptions options;
  std::vector<NewIndex> indexes = {};
  std::size_t forwardsAtLeast = 0;
};

class MarkTest : public testing::TestWithParam<MarkCase> {};

// The faults looked for: a neighbour's bytes moved or overwritten, a row lost or doubled on its way
// to another page, an index entry lost, left over or out of order, a page split that drops some.
TEST_P(MarkTest, OnlyTheMarksChange) {
  SalesFile file(GetParam().options, GetParam().indexes);
  file.mark("c_upload", kEvery, kYes);
  file.expectWhole();
  file.mark("cc_upload", kEvery, [](std::int64_t id) { return values::Variant(id % 4 == 1); });
  file.mark(
      "amount", [](std::int64_t id) { return id % 3 != 0; },
      [](std::int64_t id) { return values::Variant(values::Currency{-id}); });
  file.expectWhole();
  file.mark(
      "c_upload", [](std::int64_t id) { return id % 5 != 0; },
      [](std::int64_t) { return values::Variant(false); });
  file.expectWhole();
  file.expectNoEntryTooMany();
  file.expectExportUnchanged();
  EXPECT_GE(forwardedRows(file), GetParam().forwardsAtLeast);
}

const NewIndex kByMark = {.name = "byMark", .columns = {"c_upload"}};
const NewIndex kByDayAndMark = {.name = "byDayAndMark", .columns = {"rdate", "-c_upload"}};
const NewIndex kByNameAndMark = {.name = "byNameAndMark", .columns = {"name", "c_upload"}};
const NewIndex kByMarkAndName = {.name = "byMarkAndName", .columns = {"c_upload", "name"}};
const NewIndex kByAmount = {.name = "byAmount", .columns = {"-amount"}, .ignoreNulls = true};

INSTANTIATE_TEST_SUITE_P(
    Files, MarkTest,
    testing::Values(
        MarkCase{"InPlace", {}},
        MarkCase{"Encoded", {.rows = 200, .shortRows = 60, .file = {.encodingKey = 0x1234abcd}}},
        MarkCase{"ShortRowsWithRoom", {.rows = 20, .shortRows = 10}},
        MarkCase{"ShortRowsOnFullPages", {.rows = 1000, .shortRows = 500}, {}, 10},
        MarkCase{"ForwardedBefore", {.rows = 400, .shortRows = 200, .forwarded = true}, {}, 80},
        MarkCase{"IndexOnTheMark", {.rows = 1400, .longNotes = false}, {kByMark}},
        MarkCase{"IndexWithTails",
                 {.rows = 1400, .longNotes = false, .file = {.indexTails = true}},
                 {kByMark, kByAmount}},
        MarkCase{"CompoundIndexes",
                 {.rows = 1500, .shortRows = 300, .longNotes = false},
                 {kByDayAndMark, kByMark, kByAmount}},
        MarkCase{"IndexesWithTexts", {.rows = 250}, {kByNameAndMark, kByMarkAndName}},
        MarkCase{"Jet3",
                 {.rows = 700,
                  .shortRows = 300,
                  .forwarded = true,
                  .file = {.format = FileFormat::kJet3, .codePage = 949}},
                 {kByDayAndMark, kByMark, kByNameAndMark},
                 150}),
    [](const auto& tried) { return tried.param.name; });

struct RefusalCase {
  const char* name;
  const char* column;
  values::Variant value;
  int error;
};

class RefusalTest : public testing::TestWithParam<RefusalCase> {};

TEST_P(RefusalTest, LeavesTheFileAsItWas) {
  const SalesFile file({.rows = 50}, {{.name = "unique", .columns = {"price"}, .unique = true}});
  const std::string before = support::readFile(file.path());
  {
    const auto database = file.open();
    Table& table = database->openTable("Selling");
    auto scan = table.scan();
    ASSERT_TRUE(scan.next());
    const std::vector<FieldValue> fields = {{"c_upload", true},
                                            {GetParam().column, GetParam().value}};
    try {
      database->updateRows(table, std::array{scan.row().id()}, fields);
      ADD_FAILURE() << "was not refused";
    } catch (const RuntimeError& refusal) {
      EXPECT_EQ(refusal.number(), GetParam().error) << refusal.what();
    }
  }
  EXPECT_TRUE(support::readFile(file.path()) == before) << "the file was changed";
}

INSTANTIATE_TEST_SUITE_P(
    Fields, RefusalTest,
    testing::Values(
        RefusalCase{"NoSuchField", "c_uplaod", values::Variant(true), error::kItemNotFound},
        RefusalCase{"Text", "name", values::Variant("x"), error::kNotUpdatable},
        RefusalCase{"Memo", "memo", values::Variant("x"), error::kNotUpdatable},
        RefusalCase{"DuplicateKey", "price", values::Variant(values::Currency{12345}),
                    error::kDuplicateKey},
        RefusalCase{"TooLarge", "no", values::Variant(std::int32_t{40000}), error::kOverflow},
        RefusalCase{"NoNumber", "amount", values::Variant("zwei"), error::kTypeMismatch}),
    [](const auto& tried) { return tried.param.name; });

TEST(RowUpdateTest, UniqueKeysCanBeChangedToFreeOnes) {
  SalesFile file({.rows = 900, .longNotes = false},
                 {{.name = "unique", .columns = {"price"}, .unique = true}});
  file.mark("price", kEvery,
            [](std::int64_t id) { return values::Variant(values::Currency{-1000 * id - 7}); });
  file.expectWhole();
  file.expectNoEntryTooMany();
}

// The creator and the marker must agree on the key of -0.0: the old entry stayed when they did not.
TEST(RowUpdateTest, BothZerosHaveOneKey) {
  const support::TemporaryFolder folder;
  const std::string path = (folder.path() / "zeros.mdb").string();
  {
    FileBuilder builder(path);
    auto& table = builder.addTable(
        "T",
        {{.name = "d", .type = ColumnType::kDouble},
         {.name = "s", .type = ColumnType::kSingle},
         {.name = "t", .type = ColumnType::kDateTime}},
        {{.name = "byD", .columns = {"d"}}, {.name = "all", .columns = {"-s", "t", "d"}}});
    table.add({-0.0, -0.0F, values::DateTime{-0.0}});
    table.add({1.0, 2.0F, values::DateTime{3}});
    builder.finish();
  }
  for (const double now : {5.0, -0.0, 0.0, -0.0, 7.5}) {
    const auto database = Database::open(path, {.readOnly = false});
    Table& table = database->openTable("T");
    std::vector<RowId> rows;
    for (auto scan = table.scan(); scan.next();) rows.push_back(scan.row().id());
    database->updateRows(table, std::array{rows[0]}, std::array{FieldValue{"d", now}});
    for (const std::size_t index : {0U, 1U}) {
      std::multiset<RowId> entries;
      for (auto walk = table.seek(index, {}); walk.next();) entries.insert(walk.rowId());
      EXPECT_EQ(entries, std::multiset<RowId>(rows.begin(), rows.end())) << now << ", " << index;
    }
    auto found = table.seek(0, {.equal = {values::Variant(now)}});
    ASSERT_TRUE(found.next()) << now;
    EXPECT_EQ(found.rowId(), rows[0]);
  }
}

// A row that its index does not know: nothing may be written, whichever way the entry is looked
// for.
TEST(RowUpdateTest, AnEntryThatIsNotThereIsDamage) {
  for (const char* second : {"s_id", "name"}) {
    const SalesFile file({.rows = 50}, {{.name = "byPrice", .columns = {"price", second}}});
    std::string bytes = support::readFile(file.path());
    const std::string stored("\x1d\xf1\0\0\0\0\0\0", 8);  // the price of row 5, 6.1725
    const std::size_t at = bytes.find(stored);
    ASSERT_NE(at, std::string::npos);
    ++bytes[at];
    std::ofstream(file.path(), std::ios::binary) << bytes;
    const auto database = file.open();
    Table& table = database->openTable("Selling");
    auto row = table.seek(0, {.equal = {values::Variant(std::int32_t{5})}});
    ASSERT_TRUE(row.next());
    const std::vector<FieldValue> fields = {{"price", values::Currency{7}}, {"c_upload", true}};
    try {
      database->updateRows(table, std::array{row.rowId()}, fields);
      ADD_FAILURE() << "was not refused";
    } catch (const RuntimeError& refusal) {
      EXPECT_EQ(refusal.number(), error::kDamaged);
      EXPECT_THAT(refusal.what(), testing::AllOf(testing::HasSubstr(file.path()),
                                                 testing::HasSubstr("'byPrice' of table 'Selling'"),
                                                 testing::HasSubstr("row 5 of page")));
    }
    EXPECT_TRUE(support::readFile(file.path()) == bytes) << "the file was changed";
  }
}

// The engine's inline maps reach 512 pages; the file must be able to grow past them.
TEST(RowUpdateTest, RowsMoveToPagesThatTheInlineMapsDoNotReach) {
  SalesFile file({.rows = 13000, .shortRows = 6000});
  ASSERT_GT(std::filesystem::file_size(file.path()), 400U * 4096);
  file.mark(
      "note", [](std::int64_t) { return false; }, kYes);
  file.mark(
      "amount", [](std::int64_t id) { return id % 2 == 0; },
      [](std::int64_t id) { return values::Variant(values::Currency{id}); });
  file.expectWhole();
  file.expectExportUnchanged();
  EXPECT_GT(std::filesystem::file_size(file.path()), 520U * 4096);
}

TEST(RowUpdateTest, ADeletedRowIsNotFound) {
  const SalesFile file({.rows = 3});
  const auto database = file.open();
  Table& table = database->openTable("Selling");
  auto scan = table.scan();
  ASSERT_TRUE(scan.next());
  const std::array gone{RowId{scan.row().id().page, 77}};
  const std::vector<FieldValue> fields = {{"c_upload", true}};
  try {
    database->updateRows(table, gone, fields);
    ADD_FAILURE();
  } catch (const RuntimeError& refusal) {
    EXPECT_EQ(refusal.number(), error::kRowDeleted);
  }
}

}  // namespace
}  // namespace jet
