#include "extract/insert_statement.h"

#include <gtest/gtest.h>

#include <limits>

#include "extract/conversions.h"
#include "jetcreate/file_builder.h"
#include "localdb/database.h"
#include "support/child_process.h"
#include "support/fake_platform.h"

namespace extract {
namespace {

using jet::ColumnType;
using values::Variant;

std::string times(int count, const std::string& text) {
  std::string whole;
  for (int i = 0; i < count; ++i) whole += text;
  return whole;
}

// Columns of every type that a row gives without a Variant, and of some that it does not; and the
// values of each that a shortcut may get wrong.
const struct {
  jetcreate::NewColumn column;
  std::vector<Variant> values;
} kFields[] = {
    {{.name = "yes", .type = ColumnType::kYesNo}, {true, false}},
    {{.name = "byte", .type = ColumnType::kByte}, {std::uint8_t{255}, std::uint8_t{0}}},
    {{.name = "integer", .type = ColumnType::kInteger}, {std::int16_t{-1}, std::int16_t{-32768}}},
    {{.name = "whole", .type = ColumnType::kLong},
     {std::int32_t{-1}, std::numeric_limits<std::int32_t>::min(), std::int32_t{1234567890}}},
    {{.name = "amount", .type = ColumnType::kCurrency},
     {values::Currency{25000}, values::Currency{-35000}, values::Currency{-10000},
      values::Currency{50000000000000}, values::Currency{1}, values::Currency{-10}}},
    {{.name = "single", .type = ColumnType::kSingle}, {1.5F, 9999999.0F, 1e7F, -0.0F}},
    {{.name = "real", .type = ColumnType::kDouble},
     {999999999999999.0, 1e15, 0.1 + 0.2, -2.5, -0.0, 1e300}},
    {{.name = "moment", .type = ColumnType::kDateTime},
     {values::toDateTime({2013, 8, 2, 19, 5, 9}), values::toDateTime({2013, 8, 2, 0, 0, 0}),
      values::DateTime{1e9}, values::DateTime{0.5}}},
    {{.name = "text", .type = ColumnType::kText, .size = 255},
     {"", "된장찌개 '특' O'Neil", "é☃똠", "😀", "plain", "1,234", times(127, "홀")}},
    {{.name = "memo", .type = ColumnType::kMemo},
     {"it's", times(40000, "a"), times(20000, "홀") + "'", times(40000, "a") + "'",
      times(16384, "😀") + "'"}},
    {{.name = "guid", .type = ColumnType::kGuid}, {"{00112233-4455-6677-8899-AABBCCDDEEFF}"}},
};

std::string expected(ValueFormat format, const Variant& value) {
  switch (format) {
    case ValueFormat::kText:
      return "'" + SqlText(value) + "'";
    case ValueFormat::kUnescapedText:
      return "'" + NzText(value) + "'";
    case ValueFormat::kNumber:
      return std::to_string(NzLong(value));
    case ValueFormat::kFlag:
      return NzLong(value) == -1 ? "'1'" : "'0'";
    default:
      return "'" + std::to_string(std::abs(std::int64_t{NzLong(value)})) + "'";
  }
}

// A row for each value, Null in its other columns, and a table without rows to be the empty side of
// a join. Gives the count of rows.
std::int32_t makeFile(const std::string& path, jet::FileFormat format) {
  jetcreate::FileBuilder builder(path, {.format = format, .codePage = 949});
  std::vector<jetcreate::NewColumn> columns{{.name = "id"}};
  for (const auto& field : kFields) columns.push_back(field.column);
  auto& table = builder.addTable("every", columns);
  builder.addTable("empty", {{.name = "other"}, {.name = "lacking"}});
  std::int32_t id = 0;
  for (std::size_t at = 0; at < std::size(kFields); ++at) {
    for (const Variant& value : kFields[at].values) {
      std::vector<Variant> row(columns.size());
      row[0] = ++id;
      row[at + 1] = value;
      table.add(row);
    }
  }
  builder.finish();
  return id;
}

class InsertStatementTest : public testing::TestWithParam<jet::FileFormat> {};

// What is read from the rows' bytes is what the conversions make of the fields.
TEST_P(InsertStatementTest, ColumnsAreWrittenAsTheirValuesAre) {
  support::TemporaryFolder folder;
  const std::int32_t count = makeFile(folder.path() / "data.mdb", GetParam());
  const support::FakeClock clock;
  localdb::DBEngine engine(clock, nullptr);
  const auto database = engine.openDatabase(folder.path() / "data.mdb", false, true);
  const auto rows = database->openRecordset(
      "SELECT every.*, every.id & '' AS computed, lacking FROM every LEFT JOIN empty ON every.id = "
      "empty.other");
  std::vector<std::string> names{"computed", "lacking"};
  for (const auto& field : kFields) names.push_back(field.column.name);
  CodePage korean(kKoreanCodePage);
  for (const ValueFormat format :
       {ValueFormat::kText, ValueFormat::kUnescapedText, ValueFormat::kNumber, ValueFormat::kFlag,
        ValueFormat::kAbsoluteFlag}) {
    std::vector<Column> columns;
    for (const std::string& name : names) columns.push_back({"C", format, name});
    InsertStatement insert({"T", columns, ") V ("}, {}, korean);
    for (rows->moveFirst(); !rows->atEnd(); rows->moveNext()) {
      std::string statement =
          "Insert Into T (C" + times(static_cast<int>(names.size()) - 1, ", C") + ") V (";
      for (const std::string& name : names) statement += expected(format, rows->field(name)) + ", ";
      statement.replace(statement.size() - 2, 2, ");");
      EXPECT_TRUE(insert.build(*rows) == korean.fromUtf8(statement))
          << "row " << rows->field("id").as<std::int32_t>()[0] << " in format "
          << static_cast<int>(format);
    }
  }
  EXPECT_EQ(rows->recordCount(), count);
}

INSTANTIATE_TEST_SUITE_P(Formats, InsertStatementTest,
                         testing::Values(jet::FileFormat::kJet3, jet::FileFormat::kJet4));

}  // namespace
}  // namespace extract
