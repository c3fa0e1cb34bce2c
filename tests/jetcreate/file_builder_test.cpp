#include "jetcreate/file_builder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "jetcreate/new_file_test.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace jetcreate;

class FileBuilderTest : public NewFileTest {};

auto refused(int number) {
  return testing::Throws<RuntimeError>(testing::Property(&RuntimeError::number, number));
}

// Two tables written by turns over some thousand pages: usage maps by reference, owners apart.
TEST_P(FileBuilderTest, LargeFilesKeepTheirTablesApart) {
  if (support::kOnWindows) GTEST_SKIP();
  constexpr int kRows = 8000;
  const std::vector<NewColumn> columns = {{.name = "id"}, {.name = "b", .type = ColumnType::kText}};
  FileBuilder& file = builder();
  TableBuilder* tables[] = {&file.addTable("A", columns), &file.addTable("B", columns)};
  for (int i = 0; i < kRows; ++i) {
    tables[i % 2]->add({asLong(i), std::string(250, static_cast<char>('a' + i % 26))});
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
    file.addTable("T", {{.name = "id"}}).add({asLong(7)});
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
  for (int i = 0; i < 3; ++i) table.add({asLong(i % 2)});
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
      {"text too long", 3163, add({asLong(1), "여섯글자다요"})},
      {"no number", 13, add({"x"})},
      {"number too large", 6, add({3e9})},
      {"digits too many", 6, add({asLong(1), values::Variant(), asLong(1000)})},
      {"text without a sort key", 3001, add({asLong(1), "가"})}};
  for (const Case& c : cases) EXPECT_THAT(c.act, refused(c.number)) << c.name;
}
INSTANTIATE_TEST_SUITE_P(Formats, FileBuilderTest,
                         testing::Values(FileFormat::kJet3, FileFormat::kJet4), FormatName());

}  // namespace
}  // namespace jet
