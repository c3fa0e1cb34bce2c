// What is written row by row: values of every type and length, forms of rows, keys in trees.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "jetcreate/new_file_test.h"

namespace jet {
namespace {

using namespace jetcreate;

class NewRowsTest : public NewFileTest {};

struct TypeCase {
  NewColumn column;
  values::Variant value;
  std::string text;
};

// Numeric comes last: Jet 3 does not have it.
std::vector<TypeCase> everyType(const Format& format) {
  const values::Binary bytes{{std::byte{1}, std::byte{0}, std::byte{255}}};
  const values::Numeric numeric{
      .negative = true, .scale = 3, .magnitude = values::Uint128{1234567890123456789} * 10};
  const std::string guid = "{01234567-89AB-CDEF-0123-456789ABCDEF}";
  using enum ColumnType;
  std::vector<TypeCase> types = {
      {{.name = "id", .autonumber = true}, {}, "1"},
      {{.name = "yes", .type = kYesNo}, true, "True"},
      {{.name = "byte", .type = kByte}, std::uint8_t{255}, "255"},
      {{.name = "short", .type = kInteger}, std::int16_t{-32768}, "-32768"},
      {{.name = "money", .type = kCurrency}, values::Currency{-12345}, "-1.2345"},
      {{.name = "single", .type = kSingle}, 1.5F, "1.5"},
      {{.name = "double", .type = kDouble}, -0.125, "-0.125"},
      {{.name = "day", .type = kDateTime}, values::DateTime{41487.25}, "2013-08-01 06:00:00"},
      {{.name = "text", .type = kText, .size = 20}, "한글 it's", "한글 it's"},
      {{.name = "packed", .type = kText, .size = 20, .compressed = true},
       "abc 가 def",
       "abc 가 def"},
      {{.name = "memo", .type = kMemo, .compressed = true}, "짧다", "짧다"},
      {{.name = "ole", .type = kOle}, bytes, toText(values::Variant(bytes))},
      {{.name = "guid", .type = kGuid}, guid, guid},
      {{.name = "binary", .type = kBinary, .size = 10}, bytes, toText(values::Variant(bytes))},
      {{.name = "numeric", .type = kNumeric, .precision = 28, .scale = 3},
       numeric,
       "-12345678901234567.89"}};
  if (format.version == Version::kJet3) types.pop_back();
  return types;
}

TEST_P(NewRowsTest, EveryTypeComesBack) {
  if (support::kOnWindows) GTEST_SKIP();
  std::vector<NewColumn> columns;
  std::vector<values::Variant> values;
  std::vector<std::string> full;
  for (const TypeCase& c : everyType(format())) {
    columns.push_back(c.column);
    values.push_back(c.value);
    full.push_back(c.text);
  }
  std::vector<std::string> empty(columns.size(), "Null");
  empty[0] = "2";
  empty[1] = "False";
  TableBuilder& table = builder().addTable("Every Type", columns);
  table.add(values);
  table.add(std::vector<values::Variant>(columns.size()));
  table.add({asLong(40), false});
  table.add({values::Variant(), false});
  finish();

  TableCursor rows = open("every type").scan();
  for (const auto& row : {full, empty, {"40", "False", "Null"}, {"41", "False", "Null"}}) {
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(texts(rows.row(), row.size()), row);
  }
  EXPECT_FALSE(rows.next());
  EXPECT_THAT(tool("mdb-export", {"Every Type"}),
              testing::HasSubstr("1,1,255,-32768,-1.2345,1.5,-0.125,\"08/01/13 06:00:00\","
                                 "\"한글 it's\",\"abc 가 def\",\"짧다\","));
}

// Lengths on both sides of what a row keeps itself, a page takes and two pages take.
TEST_P(NewRowsTest, LongValuesOfEveryLengthComeBack) {
  const int page = static_cast<int>(format().maxPageLong);
  const std::vector<int> lengths = {
      1, 63, 64, 65, page - 1, page, page + 1, 2 * (page - 4), 2 * (page - 4) + 1, 100000};
  TableBuilder& table = builder().addTable("Long", {{.name = "n"},
                                                    {.name = "o", .type = ColumnType::kOle},
                                                    {.name = "m", .type = ColumnType::kMemo}});
  const auto value = [](int length) {
    values::Binary binary;
    for (int i = 0; i < length; ++i) binary.bytes.push_back(static_cast<std::byte>(i * 7 / 3));
    return binary;
  };
  const auto text = [](int length) { return std::string(static_cast<std::size_t>(length), 'm'); };
  for (int length : lengths) {
    table.add({asLong(length), value(length), text(length)}, RowForm::kDeleted);
    table.add({asLong(length), value(length), text(length)});
  }
  finish();
  TableCursor rows = open("Long").scan();
  std::vector<std::byte> bytes;
  std::string scratch;
  for (int length : lengths) {
    ASSERT_TRUE(rows.next());
    EXPECT_TRUE(std::ranges::equal(rows.row().binary(1, bytes), value(length).bytes)) << length;
    EXPECT_EQ(rows.row().text(2, scratch), text(length));
  }
}

TEST_P(NewRowsTest, RowsMayBeShortForwardedOrDeletedAndColumnsDeleted) {
  if (support::kOnWindows) GTEST_SKIP();
  TableBuilder& table =
      builder().addTable("Forms",
                         {{.name = "id"},
                          {.name = "gone", .type = ColumnType::kText, .deleted = true},
                          {.name = "name", .type = ColumnType::kText},
                          {.name = "late", .type = ColumnType::kText},
                          {.name = "mark", .type = ColumnType::kYesNo}},
                         {{.name = "PrimaryKey", .columns = {"id"}, .primary = true}});
  table.add({asLong(1), "x", "plain", "late"});
  table.add({asLong(2), "x", "short"});
  const RowId forwarded =
      table.add({asLong(3), "x", "forwarded", values::Variant()}, RowForm::kForwarded);
  table.add({asLong(4), "x", "deleted", values::Variant()}, RowForm::kDeleted);
  table.add({asLong(5), "x", "last", values::Variant()});
  finish();

  Table& read = open("Forms");
  EXPECT_FALSE(read.definition().findColumn("gone"));
  std::string fields;
  TableCursor rows = read.scan();
  while (rows.next()) fields += testing::PrintToString(texts(rows.row(), 4));
  EXPECT_EQ(fields, R"({ "1", "plain", "late", "False" }{ "2", "short", "Null", "False" })"
                    R"({ "3", "forwarded", "Null", "False" }{ "5", "last", "Null", "False" })");
  EXPECT_EQ(read.definition().rowCount, 4U);
  EXPECT_EQ(walk(read, 0), (std::vector<std::int64_t>{1, 2, 3, 5}));
  const Row row = read.read(forwarded);
  EXPECT_EQ(row.id(), forwarded);
  EXPECT_NE(row.page()->number, forwarded.page);
  EXPECT_EQ(tool("mdb-export", {"Forms"}),
            "id,name,late,mark\n1,\"plain\",\"late\",0\n2,\"short\",,0\n5,\"last\",,0\n"
            "3,\"forwarded\",,0\n");
}

// Rows, and whether nodes have tails: one row, one leaf, two and three levels.
constexpr std::pair<int, bool> kTrees[] = {{1, false},  {20, true},    {997, false},
                                           {997, true}, {9973, false}, {9973, true}};

// Keys in no order, shared beginnings, keys that are no one's alone; long keys for more levels.
TEST_P(NewRowsTest, EveryRowOfATreeIsFoundInOrder) {
  for (const auto& [rows, tails] : kTrees) {
    SCOPED_TRACE(std::to_string(rows) + (tails ? " with tails" : ""));
    FileBuilder& file = builder({.indexTails = tails});
    TableBuilder& table =
        file.addTable("T",
                      {{.name = "id"},
                       {.name = "day", .type = ColumnType::kDateTime},
                       {.name = "key", .type = ColumnType::kText}},
                      {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                       {.name = "days", .columns = {"-day", "id"}},
                       {.name = "keys", .columns = {"key"}, .ignoreNulls = true}});
    for (int i = 0; i < rows; ++i) {
      const int id = static_cast<int>(std::int64_t{i} * 7919 % rows);
      std::string digits = std::to_string(id);
      digits.insert(0, 6 - digits.size(), '0');
      table.add(
          {asLong(id), values::DateTime{40000.0 + id / 10},
           id % 4 == 0 ? values::Variant() : values::Variant(std::string(180, 'k') + digits)});
    }
    finish();

    Table& read = open("T");
    std::vector<std::int64_t> all;
    std::vector<std::int64_t> keyed;
    for (int i = 0; i < rows; ++i) {
      all.push_back(i);
      if (i % 4 != 0) keyed.push_back(i);
    }
    EXPECT_EQ(walk(read, 0), all);
    EXPECT_EQ(walk(read, 2), keyed);
    std::vector<std::int64_t> byDay = all;
    std::ranges::stable_sort(byDay, std::greater(), [](std::int64_t id) { return id / 10; });
    EXPECT_EQ(walk(read, 1), byDay);
    for (int id : {0, rows / 2, rows - 1}) {
      IndexCursor found = read.seek(0, {.equal = {asLong(id)}, .lower = {}, .upper = {}});
      ASSERT_TRUE(found.next()) << id;
      EXPECT_EQ(read.read(found.rowId()).wholeNumber(0), id);
      EXPECT_FALSE(found.next());
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Formats, NewRowsTest,
                         testing::Values(FileFormat::kJet3, FileFormat::kJet4), FormatName());

}  // namespace
}  // namespace jet
