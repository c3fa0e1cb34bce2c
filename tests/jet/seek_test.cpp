// Rows found by an index against the same rows picked out of a scan.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <set>

#include "jet/database.h"
#include "jetcreate/file_builder.h"
#include "support/child_process.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using namespace jetcreate;

constexpr int kRows = 1500;  // an index of two levels and many leaves

struct SeekCase {
  const char* name;
  ColumnType type;
  values::Variant (*value)(int);  // of about -50 to 50
};

const SeekCase kCases[] = {
    {"YesNo", ColumnType::kYesNo, [](int n) { return values::Variant(n % 2 == 0); }},
    {"Byte", ColumnType::kByte,
     [](int n) { return values::Variant(static_cast<std::uint8_t>(n + 128)); }},
    {"Integer", ColumnType::kInteger,
     [](int n) { return values::Variant(static_cast<std::int16_t>(n * 600)); }},
    {"Long", ColumnType::kLong, [](int n) { return values::Variant(std::int32_t{n * 70000}); }},
    {"Currency", ColumnType::kCurrency,
     [](int n) { return values::Variant(values::Currency{n * 12'345}); }},
    {"Single", ColumnType::kSingle,
     [](int n) { return values::Variant(static_cast<float>(n) * 0.1F); }},
    {"Double", ColumnType::kDouble, [](int n) { return values::Variant(n * -0.1); }},
    {"DateTime", ColumnType::kDateTime,
     [](int n) { return values::Variant(values::DateTime{n / 7.0}); }},
};

class SeekTest : public testing::TestWithParam<SeekCase> {
 protected:
  // Indexes: 0 ascending, 1 descending, 2 by `group` and then descending by the key.
  void make(bool tails) {
    const std::string path = (folder_.path() / (tails ? "tails.mdb" : "plain.mdb")).string();
    FileBuilder builder(path, {.indexTails = tails});
    auto& table =
        builder.addTable("T", {{.name = "group"}, {.name = "key", .type = GetParam().type}},
                         {{.name = "up", .columns = {"key"}},
                          {.name = "down", .columns = {"-key"}},
                          {.name = "both", .columns = {"group", "-key"}}});
    for (int i = 0; i < kRows; ++i) {
      table.add({std::int32_t{pick(5)},
                 pick(9) == 0 ? values::Variant() : GetParam().value(pick(100) - 50)});
    }
    builder.finish();
    database_ = Database::open(path);
    table_ = &database_->openTable("T");
  }

  int pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  // As the column's own values, and in other types beside and between them.
  values::Variant bound() {
    values::Variant own = GetParam().value(pick(104) - 52);
    const double number = toDouble(own);
    switch (pick(4)) {
      case 0:
        return number + 0.5;
      case 1:
        return values::Variant(static_cast<std::int32_t>(number));
      case 2:
        return values::Variant(number);
      default:
        return own;
    }
  }

  std::optional<KeyBound> maybeBound() {
    if (pick(3) == 0) return std::nullopt;
    return KeyBound{bound(), pick(2) == 0};
  }

  static bool inside(const KeyRange& range, std::size_t keys, const values::Variant& value) {
    if (value.isNull()) return !range.lower && !range.upper && range.equal.size() < keys;
    const double key = toDouble(value);
    const auto beyond = [&](const KeyBound& b, double sign) {
      const double distance = (key - toDouble(b.value)) * sign;
      return distance > 0 || (distance == 0 && !b.inclusive);
    };
    if (range.equal.size() == keys) return key == toDouble(range.equal.back());
    return !(range.lower && beyond(*range.lower, -1)) && !(range.upper && beyond(*range.upper, 1));
  }

  void expectSameAsScan(std::size_t index, const KeyRange& range) {
    const bool grouped = index == 2;
    std::set<RowId> want;
    for (auto scan = table_->scan(); scan.next();) {
      if (grouped && scan.row().wholeNumber(0) != toLong(range.equal[0])) continue;
      if (inside(range, grouped ? 2 : 1, scan.row().value(1))) want.insert(scan.row().id());
    }
    std::vector<RowId> got;
    for (auto found = table_->seek(index, range); found.next();) got.push_back(found.rowId());
    EXPECT_EQ(std::set(got.begin(), got.end()), want);
    EXPECT_EQ(got.size(), want.size());
  }

  std::mt19937 random_{20130801};
  support::TemporaryFolder folder_;
  std::unique_ptr<Database> database_;
  Table* table_ = nullptr;
};

// In table T.
int rowsFound(Database& database, std::size_t index, const KeyRange& range) {
  int rows = 0;
  for (auto found = database.openTable("T").seek(index, range); found.next();) ++rows;
  return rows;
}

TEST_P(SeekTest, FindsWhatAScanFinds) {
  for (const bool tails : {false, true}) {
    make(tails);
    for (int i = 0; i < 60; ++i) {
      SCOPED_TRACE(i);
      for (std::size_t index = 0; index < 3; ++index) {
        KeyRange range;
        if (index == 2) range.equal.emplace_back(std::int32_t{pick(6)});
        if (i % 3 == 0) {
          range.equal.push_back(bound());
        } else {
          range.lower = maybeBound();
          range.upper = maybeBound();
        }
        expectSameAsScan(index, range);
      }
    }
  }
}

TEST_P(SeekTest, WalksInOrder) {
  make(true);
  for (const std::size_t index : {0U, 1U}) {
    double before = 0;
    std::size_t rows = 0;
    for (auto walk = table_->seek(index, {}); walk.next(); ++rows) {
      const values::Variant value = table_->read(walk.rowId()).value(1);
      if (value.isNull()) continue;
      const double key = index == 0 ? toDouble(value) : -toDouble(value);
      if (rows != 0 && before != 0) {
        EXPECT_GE(key, before);
      }
      before = key;
    }
    EXPECT_EQ(rows, std::size_t{kRows});
  }
}

TEST_P(SeekTest, NullFindsNothingAndTextIsRefused) {
  make(false);
  auto nothing = table_->seek(0, {.equal = {values::Variant()}});
  EXPECT_FALSE(nothing.next());
  EXPECT_THROW((void)table_->seek(0, {.equal = {values::Variant("5")}}), RuntimeError);
}

INSTANTIATE_TEST_SUITE_P(Types, SeekTest, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

// Fault: a text that is there and is not found. What has no known key is refused.
TEST(SeekEdgeTest, Texts) {
  support::TemporaryFolder folder;
  for (const FileFormat format : {FileFormat::kJet3, FileFormat::kJet4}) {
    const std::string path = (folder.path() / (format == FileFormat::kJet3 ? "3" : "4")).string();
    FileBuilder builder(path, {.format = format});
    auto& table = builder.addTable(
        "T", {{.name = "t", .type = ColumnType::kText, .size = 40}, {.name = "n"}},
        {{.name = "up", .columns = {"t", "n"}}, {.name = "down", .columns = {"-t"}}});
    for (int i = 0; i < 600; ++i) {
      const std::string text = std::string(i % 2 == 0 ? "Menu " : "MENU ") + std::to_string(i / 3);
      table.add({i % 50 == 0 ? values::Variant() : values::Variant(text), i});
    }
    table.add({"menu 7 ", 900});
    builder.finish();
    auto database = Database::open(path);
    const auto count = [&](std::size_t index, const KeyRange& range) {
      return rowsFound(*database, index, range);
    };
    for (const std::size_t index : {0, 1}) {
      EXPECT_EQ(count(index, {.equal = {values::Variant("mEnU 7")}}), 4);
      EXPECT_EQ(count(index, {.equal = {values::Variant("menu")}}), 0);
      EXPECT_EQ(count(index, {.equal = {values::Variant()}}), 0);
      EXPECT_THROW((void)count(index, {.equal = {values::Variant("메뉴")}}), RuntimeError);
      EXPECT_THROW((void)count(index, {.equal = {values::Variant(5)}}), RuntimeError);
      EXPECT_THROW((void)count(index, {.lower = KeyBound{values::Variant("menu 7")}}),
                   RuntimeError);
    }
    EXPECT_EQ(count(0, {.equal = {values::Variant("menu 7"), values::Variant(22)}}), 1);
    EXPECT_EQ(
        count(0, {.equal = {values::Variant("menu 7")}, .lower = KeyBound{values::Variant(22)}}),
        3);
  }
}

// Both zeros of a real number, and the least and greatest that a type holds.
TEST(SeekEdgeTest, ZerosAndExtremes) {
  support::TemporaryFolder folder;
  const std::string path = (folder.path() / "edges.mdb").string();
  FileBuilder builder(path);
  auto& table =
      builder.addTable("T", {{.name = "d", .type = ColumnType::kDouble}, {.name = "l"}},
                       {{.name = "d", .columns = {"d"}}, {.name = "l", .columns = {"-l"}}});
  table.add({-0.0, INT32_MIN});
  table.add({0.0, INT32_MAX});
  table.add({1.0, std::int32_t{0}});
  builder.finish();
  auto database = Database::open(path);
  const auto count = [&](std::size_t index, const KeyRange& range) {
    return rowsFound(*database, index, range);
  };
  EXPECT_EQ(count(0, {.equal = {values::Variant(0.0)}}), 2);
  EXPECT_EQ(count(0, {.upper = KeyBound{values::Variant(0.0), false}}), 0);
  EXPECT_EQ(count(1, {.equal = {values::Variant(INT32_MIN)}}), 1);
  EXPECT_EQ(count(1, {.lower = KeyBound{values::Variant(2147483647.0)}}), 1);
  EXPECT_EQ(count(1, {.lower = KeyBound{values::Variant(2147483647.5)}}), 0);
  EXPECT_EQ(count(1, {.upper = KeyBound{values::Variant(1e300)}}), 3);
}

}  // namespace
}  // namespace jet
