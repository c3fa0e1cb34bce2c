// Files of the creator, read back: every type, many pages, files that are none.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>

#include "jet/database.h"
#include "jet/format/rc4.h"
#include "jet/pages/data_page.h"
#include "jetcreate/file_builder.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace jetcreate;

class ReadingTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name = "made.mdb") const {
    return (folder_.path() / name).string();
  }

  template <typename Build>
  std::unique_ptr<Database> made(Build build) {
    FileBuilder builder(path("new.mdb"), {});
    build(builder);
    builder.finish();
    return Database::open(path("new.mdb"));
  }

  // Number of the error that opening gives; 0 for none.
  static int openError(const std::string& path) {
    try {
      (void)Database::open(path);
    } catch (const RuntimeError& e) {
      return e.number();
    }
    return 0;
  }

  support::TemporaryFolder folder_;
};

void expectSame(const values::Variant& got, const values::Variant& want) {
  ASSERT_EQ(got.type(), want.type());
  if (!want.isNull()) {
    EXPECT_EQ(toText(got), toText(want));
  }
}

// The ways around a Variant give what the Variant holds.
void expectTypedSame(const Row& row, std::size_t column, const values::Variant& value) {
  std::string scratch;
  std::vector<std::byte> bytes;
  switch (value.type()) {
    case values::VariantType::kNull:
      EXPECT_TRUE(row.isNull(column));
      break;
    case values::VariantType::kText:
      EXPECT_EQ(row.text(column, scratch), *value.as<std::string>());
      break;
    case values::VariantType::kBinary:
      EXPECT_TRUE(std::ranges::equal(row.binary(column, bytes), value.as<values::Binary>()->bytes));
      break;
    case values::VariantType::kCurrency:
      EXPECT_EQ(row.wholeNumber(column), value.as<values::Currency>()->units);
      break;
    case values::VariantType::kSingle:
    case values::VariantType::kDouble:
    case values::VariantType::kDateTime:
      EXPECT_EQ(row.realNumber(column), toDouble(value));
      break;
    case values::VariantType::kNumeric:
      break;
    default:
      EXPECT_EQ(row.wholeNumber(column), toLong(value));
  }
}

values::Binary bytesOf(std::size_t size) {
  values::Binary binary;
  for (std::size_t i = 0; i < size; ++i) binary.bytes.push_back(static_cast<std::byte>(i * 7));
  return binary;
}

std::string repeated(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

values::Numeric numeric(std::uint64_t magnitude, std::uint8_t scale, bool negative = false) {
  return {.negative = negative, .scale = scale, .magnitude = magnitude};
}

TEST_F(ReadingTest, EveryTypeComesBack) {
  using T = ColumnType;
  const struct {
    const char* name;
    NewColumn column;
    std::vector<values::Variant> values;
  } cases[] = {
      {"Yes/No", {.type = T::kYesNo}, {true, false, true}},
      {"byte", {.type = T::kByte}, {std::uint8_t{0}, std::uint8_t{255}, values::Variant()}},
      {"16 bits",
       {.type = T::kInteger},
       {std::int16_t{-32768}, std::int16_t{32767}, values::Variant()}},
      {"32 bits", {.type = T::kLong}, {INT32_MIN, values::Variant(), INT32_MAX}},
      {"Currency",
       {.type = T::kCurrency},
       {values::Currency{INT64_MIN}, values::Currency{-1}, values::Currency{INT64_MAX}}},
      {"single", {.type = T::kSingle}, {-1.5F, 3.4e38F, values::Variant()}},
      {"double", {.type = T::kDouble}, {-0.1, 1.7e308, 5e-324}},
      {"date",
       {.type = T::kDateTime},
       {values::DateTime{-1.25}, values::DateTime{41507.64635}, values::Variant()}},
      {"text", {.type = T::kText}, {"", "홀 1번 'ä' 😀", repeated("가", 255)}},
      {"compressed",
       {.type = T::kText, .compressed = true},
       {"Latin ÿ", "Latin 한글 Latin", "각", ""}},
      {"binary", {.type = T::kBinary}, {bytesOf(0), bytesOf(1), bytesOf(255)}},
      {"GUID", {.type = T::kGuid}, {"{00112233-4455-6677-8899-AABBCCDDEEFF}", values::Variant()}},
      {"Numeric",
       {.type = T::kNumeric, .precision = 20, .scale = 4},
       {numeric(123456789012345, 4), numeric(5, 4, true), values::Variant()}},
  };
  auto database = made([&](FileBuilder& builder) {
    for (const auto& c : cases) {
      NewColumn column = c.column;
      column.name = "field";
      auto& table = builder.addTable(repeated("T", static_cast<int>(&c - cases) + 1), {column});
      for (const values::Variant& value : c.values) table.add({value});
    }
  });
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Table& table = database->openTable(repeated("t", static_cast<int>(&c - cases) + 1));
    auto scan = table.scan();
    for (const values::Variant& value : c.values) {
      ASSERT_TRUE(scan.next());
      expectSame(scan.row().value(0), value);
      expectTypedSame(scan.row(), 0, value);
    }
    EXPECT_FALSE(scan.next());
  }
}

// More pages than an inline usage map counts, with rows deleted and rows that outgrew their pages.
TEST_F(ReadingTest, ScansManyPagesOnceEach) {
  constexpr int kRows = 6000;
  std::map<RowId, int> present;
  std::vector<RowId> deleted;
  auto database = made([&](FileBuilder& builder) {
    auto& table =
        builder.addTable("Big", {{.name = "id"}, {.name = "text", .type = ColumnType::kText}});
    for (int i = 0; i < kRows; ++i) {
      const RowForm form = i % 7 == 3   ? RowForm::kDeleted
                           : i % 5 == 2 ? RowForm::kForwarded
                                        : RowForm::kPlain;
      const RowId id = table.add({std::int32_t{i}, repeated("가", 200)}, form);
      if (form == RowForm::kDeleted) {
        deleted.push_back(id);
      } else {
        present[id] = i;
      }
    }
  });
  Table& table = database->openTable("Big");
  std::map<RowId, int> found;
  for (auto scan = table.scan(); scan.next();) {
    found[scan.row().id()] = static_cast<int>(scan.row().wholeNumber(0));
  }
  EXPECT_EQ(found, present);
  for (const auto& [id, number] : present) {
    EXPECT_EQ(table.read(RowId::fromNumber(id.number())).wholeNumber(0), number);
  }
  for (const RowId id : deleted) {
    Row row;
    EXPECT_FALSE(table.tryRead(id, row));
  }
  try {
    (void)table.read(deleted.front());
    FAIL() << "a deleted row was read";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.number(), error::kRowDeleted);
  }
}

TEST_F(ReadingTest, DefinitionsOverSeveralPages) {
  std::vector<NewColumn> columns;
  std::vector<values::Variant> values;
  for (int i = 0; i < 255; ++i) {
    const auto type = i % 3 == 0   ? ColumnType::kText
                      : i % 3 == 1 ? ColumnType::kLong
                                   : ColumnType::kYesNo;
    columns.push_back(
        {.name = "a column of a rather long name " + std::to_string(i), .type = type});
    values.emplace_back(i % 3 == 0   ? values::Variant("t" + std::to_string(i))
                        : i % 3 == 1 ? values::Variant(std::int32_t{i})
                                     : values::Variant(i % 2 == 0));
  }
  auto database = made([&](FileBuilder& builder) {
    builder.addTable("Wide", columns, {{.name = "first", .columns = {columns[1].name}}})
        .add(values);
  });
  Table& table = database->openTable("wide");
  auto scan = table.scan();
  ASSERT_TRUE(scan.next());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    EXPECT_EQ(table.definition().columns[i].name, columns[i].name);
    expectSame(scan.row().value(i), values[i]);
  }
  EXPECT_EQ(table.definition().indexes.at(0).name, "first");
  EXPECT_EQ(table.definition().realIndexes.at(0).columns.at(0).column, 1U);
}

TEST_F(ReadingTest, TellsWhatIsNoJetFile) {
  made([](FileBuilder& builder) { builder.addTable("T", {{.name = "id"}}); });
  const std::string whole = support::readFile(path("new.mdb"));
  const auto accdb = [&](char version, std::uint32_t key) {
    std::string text = whole;
    text.replace(kHeaderMagic, 15, "Standard ACE DB");
    text[kHeaderVersion] = version;
    const MutableBytes bytes = std::as_writable_bytes(std::span(text));
    const MutableBytes masked =
        bytes.subspan(kHeaderMaskStart, formatOf(Version::kJet4).headerMaskSize);
    applyRc4(kHeaderMaskKey, 0, masked);
    storeLittle(bytes, kHeaderKey, key);
    applyRc4(kHeaderMaskKey, 0, masked);
    return text;
  };
  const struct {
    const char* name;
    std::string bytes;
    int number;
  } cases[] = {
      {"empty", "", error::kUnrecognized},
      {"a text", repeated("Standard Jet DB ", 1000), error::kUnrecognized},
      {"a header's half", whole.substr(0, 128), error::kUnrecognized},
      {"the header page alone", whole.substr(0, 4096), error::kDamaged},
      {"half a page at the end", whole.substr(0, whole.size() - 2048), 0},
      {"Access 2007", accdb(2, 0), 0},
      {"Access 2019", accdb(5, 0), 0},
      {"Access 2007, encrypted", accdb(2, 0x1234), error::kUnrecognized},
      {"a version to come", accdb(99, 0), error::kUnrecognized},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::ofstream(path(), std::ios::binary) << c.bytes;
    if (c.number != 0) {
      EXPECT_EQ(openError(path()), c.number);
    } else if (openError(path()) != 0) {
      // The last page may be one that opening needs; then the file must say so.
      EXPECT_EQ(openError(path()), error::kDamaged);
      EXPECT_LT(c.bytes.size(), whole.size());
    }
  }
  EXPECT_EQ(openError(path("nothing")), error::kFileNotFound);
  EXPECT_EQ(openError(folder_.path().string()), error::kPathAccess);
}

// What another program writes is seen by a fresh read, while a row already read stays as it was.
TEST_F(ReadingTest, FreshReadsPassTheCacheBy) {
  auto database = made(
      [](FileBuilder& builder) { builder.addTable("T", {{.name = "id"}}).add({std::int32_t{5}}); });
  Table& table = database->openTable("T");
  auto scan = table.scan();
  ASSERT_TRUE(scan.next());
  const Row before = scan.row();
  const auto offset = static_cast<std::size_t>(before.raw(0).data() - before.page()->bytes.data());
  auto other = RandomAccessFile::open(database->file().path(), RandomAccessFile::Mode::kReadWrite);
  const std::byte six{6};
  other.writeAt(std::uint64_t{before.page()->number} * 4096 + offset, {&six, 1});

  EXPECT_EQ(table.read(before.id()).wholeNumber(0), 5);
  EXPECT_EQ(table.read(before.id(), Table::Freshness::kFresh).wholeNumber(0), 6);
  EXPECT_EQ(table.read(before.id()).wholeNumber(0), 6);
  EXPECT_EQ(before.wholeNumber(0), 5);
}

}  // namespace
}  // namespace jet
