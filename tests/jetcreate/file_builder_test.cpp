#include "jetcreate/file_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/database.h"
#include "jetcheck/file_check.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace jetcreate;

values::Variant big(std::int32_t value) { return value; }

auto refused(int number) {
  return testing::Throws<RuntimeError>(testing::Property(&RuntimeError::number, number));
}

// A new file in a folder of its own, read back by our reader and by mdbtools.
class FileBuilderTest : public testing::TestWithParam<FileFormat> {
 protected:
  static const Format& format() { return formatOf(creationFormat(GetParam()).version); }
  [[nodiscard]] std::string path() const { return (folder_.path() / "new.mdb").string(); }

  FileBuilder& builder(FileBuilder::Options options = {}) {
    builder_.reset();
    database_.reset();
    std::filesystem::remove(path());
    options.format = GetParam();
    options.codePage = 949;
    builder_ = std::make_unique<FileBuilder>(path(), options);
    return *builder_;
  }

  void finish() {
    builder_->finish();
    (void)jetcheck::checkFile(path(), [](const std::string& line) { ADD_FAILURE() << line; });
  }

  Table& open(const std::string& table, const std::string& password = {}) {
    database_ = Database::open(path(), {.password = password});
    return database_->openTable(table);
  }

  [[nodiscard]] Database& database() { return *database_; }

  std::string tool(const std::string& program, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"env", "MDB_JET3_CHARSET=CP949", program, path()});
    std::string output;
    EXPECT_EQ(support::run(arguments, &output), 0) << program << ": " << output;
    return output;
  }

  static std::vector<std::string> texts(const Row& row, std::size_t columns) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < columns; ++i) {
      texts.push_back(row.isNull(i) ? "Null" : toText(row.value(i)));
    }
    return texts;
  }

  // The first column's whole numbers in the order of an index.
  static std::vector<std::int64_t> walk(Table& table, std::size_t index) {
    std::vector<std::int64_t> numbers;
    IndexCursor cursor = table.seek(index, {});
    while (cursor.next()) numbers.push_back(table.read(cursor.rowId()).wholeNumber(0));
    return numbers;
  }

 private:
  support::TemporaryFolder folder_;
  std::unique_ptr<FileBuilder> builder_;
  std::unique_ptr<Database> database_;
};

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

TEST_P(FileBuilderTest, EveryTypeComesBack) {
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
  table.add({big(40), false});
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
TEST_P(FileBuilderTest, LongValuesOfEveryLengthComeBack) {
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
    table.add({big(length), value(length), text(length)}, RowForm::kDeleted);
    table.add({big(length), value(length), text(length)});
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

TEST_P(FileBuilderTest, RowsMayBeShortForwardedOrDeletedAndColumnsDeleted) {
  if (support::kOnWindows) GTEST_SKIP();
  TableBuilder& table =
      builder().addTable("Forms",
                         {{.name = "id"},
                          {.name = "gone", .type = ColumnType::kText, .deleted = true},
                          {.name = "name", .type = ColumnType::kText},
                          {.name = "late", .type = ColumnType::kText},
                          {.name = "mark", .type = ColumnType::kYesNo}},
                         {{.name = "PrimaryKey", .columns = {"id"}, .primary = true}});
  table.add({big(1), "x", "plain", "late"});
  table.add({big(2), "x", "short"});
  const RowId forwarded =
      table.add({big(3), "x", "forwarded", values::Variant()}, RowForm::kForwarded);
  table.add({big(4), "x", "deleted", values::Variant()}, RowForm::kDeleted);
  table.add({big(5), "x", "last", values::Variant()});
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
TEST_P(FileBuilderTest, EveryRowOfATreeIsFoundInOrder) {
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
          {big(id), values::DateTime{40000.0 + id / 10},
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
      IndexCursor found = read.seek(0, {.equal = {big(id)}, .lower = {}, .upper = {}});
      ASSERT_TRUE(found.next()) << id;
      EXPECT_EQ(read.read(found.rowId()).wholeNumber(0), id);
      EXPECT_FALSE(found.next());
    }
  }
}

// Two tables written by turns over some thousand pages: usage maps by reference, owners apart.
TEST_P(FileBuilderTest, LargeFilesKeepTheirTablesApart) {
  if (support::kOnWindows) GTEST_SKIP();
  constexpr int kRows = 8000;
  const std::vector<NewColumn> columns = {{.name = "id"}, {.name = "b", .type = ColumnType::kText}};
  FileBuilder& file = builder();
  TableBuilder* tables[] = {&file.addTable("A", columns), &file.addTable("B", columns)};
  for (int i = 0; i < kRows; ++i) {
    tables[i % 2]->add({big(i), std::string(250, static_cast<char>('a' + i % 26))});
  }
  finish();
  for (int t = 0; t < 2; ++t) {
    TableCursor rows = open(t == 0 ? "A" : "B").scan();
    for (int i = t; i < kRows; i += 2) {
      ASSERT_TRUE(rows.next());
      ASSERT_EQ(rows.row().wholeNumber(0), i);
    }
    EXPECT_FALSE(rows.next());
  }
  const std::string exported = tool("mdb-export", {"B"});
  EXPECT_EQ(std::count(exported.begin(), exported.end(), '\n'), kRows / 2 + 1);
}

TEST_P(FileBuilderTest, EncodedFilesAndPasswords) {
  if (support::kOnWindows) GTEST_SKIP();
  const std::pair<const char*, std::uint32_t> cases[] = {
      {"", 0x1234abcd}, {"비밀Pw1", 0}, {"비밀 geheim", 7}};
  for (const auto& [password, key] : cases) {
    FileBuilder& file = builder({.password = password, .encodingKey = key});
    file.addTable("T", {{.name = "id"}}).add({big(7)});
    finish();
    TableCursor rows = open("T", password).scan();
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(rows.row().wholeNumber(0), 7);
    EXPECT_EQ(tool("mdb-export", {"T"}), "id\n7\n");
    if (*password == '\0') continue;
    EXPECT_THAT([&] { (void)open("T", ""); }, refused(3031));
    const std::string wrong = std::string(password) + "!";
    EXPECT_THAT([&] { (void)open("T", wrong); }, refused(3031));
  }
}

TEST_P(FileBuilderTest, MdbtoolsSeesIndexesAndQueries) {
  if (support::kOnWindows) GTEST_SKIP();
  FileBuilder& file = builder();
  file.addTable("Selling", {{.name = "id"}, {.name = "day", .type = ColumnType::kDateTime}},
                {{.name = "PrimaryKey", .columns = {"id"}, .primary = true},
                 {.name = "both", .columns = {"-day", "id"}, .unique = true}});
  QueryDefinition query;
  query.options = kQueryDistinct | kQueryTop;
  query.top = "5";
  query.parameters = {{"From", static_cast<std::int16_t>(ColumnType::kDateTime)}};
  query.tables = {{"Selling"}, {"qryOther", "o"}};
  query.columns = {{"Selling.day"}, {"Count(*)", "n"}};
  query.joins = {{"Selling", "o", "Selling.id = o.id", JoinKind::kLeft}};
  query.where = "(Selling.id>0)";
  query.groupBy = {{"Selling.day"}};
  query.having = "(Count(*)>1)";
  query.orderBy = {{"Selling.day", true}};
  file.addQuery("qryOne", query);
  file.addQuery("qryOther", {.kind = QueryKind::kUnion,
                             .unionSelects = {"SELECT id FROM Selling", "SELECT 1 FROM Selling"}});
  file.addLink({.name = "other", .foreignName = "Their", .database = "C:\\pos\\other.mdb"});
  file.addLink({.name = "remote", .foreignName = "dbo.t", .connect = "ODBC;DSN=pos;"});
  finish();

  const std::string schema = tool("mdb-schema", {"postgres", "--indexes", "--no-relations"});
  EXPECT_THAT(schema, testing::HasSubstr("PRIMARY KEY (\"id\")"));
  EXPECT_THAT(schema,
              testing::HasSubstr(
                  "UNIQUE INDEX \"selling_both_idx\" ON \"selling\" (\"day\" DESC, \"id\")"));
  EXPECT_THAT(
      tool("mdb-queries", {"qryOne"}),
      testing::HasSubstr("Selling.day,Count(*) FROM [Selling],[qryOther] WHERE (Selling.id>0)"));

  for (const char* name : {"qryOne", "other", "missing"}) {
    EXPECT_THROW((void)open(name), RuntimeError) << name;
  }
  (void)open("Selling");
  const auto other = [&](const char* name) { return *database().find(name); };
  EXPECT_TRUE(other("msysobjects").system);
  EXPECT_FALSE(other("SELLING").system);
  EXPECT_EQ(other("OTHER").type, ObjectType::kLinkedTable);
  EXPECT_EQ(other("other").database + "|" + other("other").foreignName, "C:\\pos\\other.mdb|Their");
  EXPECT_EQ(other("remote").type, ObjectType::kLinkedOdbcTable);
  EXPECT_EQ(other("remote").connect, "ODBC;DSN=pos;");
  std::string clauses;
  for (const QueryRow& row : database().queryRows(other("qryOne"))) {
    clauses += std::to_string(static_cast<int>(row.attribute)) + ":" + std::to_string(row.flag);
    for (const values::Variant* text : {&row.name1, &row.name2, &row.expression}) {
      clauses += "|" + (text->isNull() ? "" : toText(*text));
    }
    clauses += "\n";
  }
  EXPECT_EQ(clauses,
            "0:0|||\n1:1|||\n2:8|From||\n3:18|5||\n5:0|Selling||\n5:0|qryOther|o|\n"
            "6:0|||Selling.day\n6:0|n||Count(*)\n7:2|Selling|o|Selling.id = o.id\n"
            "8:0|||(Selling.id>0)\n9:0|||Selling.day\n10:0|||(Count(*)>1)\n11:0|D||Selling.day\n"
            "255:0|||\n");
}

TEST_P(FileBuilderTest, DuplicateKeysAreRefusedAtTheEnd) {
  TableBuilder& table =
      builder().addTable("T", {{.name = "id"}}, {{.name = "i", .columns = {"id"}, .unique = true}});
  for (int i = 0; i < 3; ++i) table.add({big(i % 2)});
  EXPECT_THAT([&] { finish(); }, refused(3022));
}

TEST_P(FileBuilderTest, RefusesByNumber) {
  const bool jet3 = GetParam() == FileFormat::kJet3;
  const ColumnType later = jet3 ? ColumnType::kNumeric : ColumnType::kBigInt;
  const std::vector<NewColumn> columns = {
      {.name = "id"},
      {.name = "t", .type = ColumnType::kText, .size = 5},
      {.name = "n", .type = jet3 ? ColumnType::kByte : ColumnType::kNumeric, .precision = 3}};
  const std::vector<NewIndex> indexes = {{.name = "key", .columns = {"id"}, .primary = true},
                                         {.name = "t", .columns = {"t"}}};
  FileBuilder& file = builder();
  TableBuilder& table = file.addTable("T", columns, indexes);
  const auto add = [&](const std::vector<values::Variant>& row) {
    return [&table, row] { table.add(row); };
  };
  struct Case {
    const char* name;
    int number;
    std::function<void()> act;
  };
  const std::vector<Case> cases = {
      {"file exists", 58, [&] { FileBuilder again(path()); }},
      {"name taken", 3012, [&] { file.addTable("t", columns); }},
      {"name of the engine's", 3012, [&] { file.addQuery("msysobjects", {}); }},
      {"name without a sort key", 3001, [&] { file.addTable("표", columns); }},
      {"no columns", 3001, [&] { file.addTable("U", {}); }},
      {"index on nothing", 3001,
       [&] {
         file.addTable("V", columns, {{"i", {"x"}}});
       }},
      {"autonumber of text", 3001,
       [&] { file.addTable("W", {{.name = "a", .type = ColumnType::kText, .autonumber = true}}); }},
      {"type of later versions", 3001, [&] { file.addTable("X", {{.name = "a", .type = later}}); }},
      {"too many values", 3001, add(std::vector<values::Variant>(4))},
      {"null in the key", 3314, add({values::Variant()})},
      {"text too long", 3163, add({big(1), "여섯글자다요"})},
      {"no number", 13, add({"x"})},
      {"number too large", 6, add({3e9})},
      {"digits too many", 6, add({big(1), values::Variant(), big(1000)})},
      {"text without a sort key", 3001, add({big(1), "가"})}};
  for (const Case& c : cases) EXPECT_THAT(c.act, refused(c.number)) << c.name;
}

INSTANTIATE_TEST_SUITE_P(Formats, FileBuilderTest,
                         testing::Values(FileFormat::kJet3, FileFormat::kJet4),
                         [](const auto& tried) {
                           return tried.param == FileFormat::kJet3 ? "Jet3" : "Jet4";
                         });

}  // namespace
}  // namespace jet
