// Exact bytes of keys, as they stand in indexes of files of the engine's own.
#include "jet/index/key_codec.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "jet/format/field_codec.h"
#include "jet/index/key_range.h"
#include "jet/rows/row_patch.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using values::Currency;
using values::DateTime;
using values::Variant;

std::string hex(Bytes bytes) {
  std::string text;
  for (std::byte byte : bytes) {
    text += "0123456789abcdef"[std::to_integer<int>(byte >> 4)];
    text += "0123456789abcdef"[std::to_integer<int>(byte & std::byte{15})];
  }
  return text;
}

Column columnOf(ColumnType type) {
  Column column;
  column.name = "c";
  column.type = type;
  column.fixed = true;
  return column;
}

// The key of a value by the two ways: as it is stored, and as it is looked up, from one to another.
std::vector<std::string> keysOf(ColumnType type, bool ascending, const Variant& value) {
  TableDefinition table;
  table.columns = {columnOf(type)};
  RealIndex index;
  index.columns = {{.column = 0, .ascending = ascending}};
  const auto field = encodeMark(table.columns[0], value);
  std::vector<std::byte> key;
  appendKey(table.columns[0], ascending, field ? std::optional<Bytes>(*field) : std::nullopt, key);
  const KeyInterval found = encodeRange(table, index, {.equal = {value}});
  return {hex(key), hex(found.first), hex(found.last)};
}

constexpr bool kUp = true;
constexpr bool kDown = false;

// The faults looked for: a sign bit or an order of bytes other than the engine's, and a lookup that
// looks for other bytes than those which are stored.
TEST(KeyCodecTest, NumbersAreStoredAndLookedUpByTheEnginesBytes) {
  const struct {
    ColumnType type;
    bool ascending;
    Variant value;
    const char* key;
  } cases[] = {
      {ColumnType::kYesNo, kUp, true, "7f00"},
      {ColumnType::kYesNo, kUp, false, "7fff"},
      {ColumnType::kYesNo, kDown, true, "80ff"},
      {ColumnType::kByte, kUp, std::uint8_t{5}, "7f05"},
      {ColumnType::kByte, kDown, std::uint8_t{200}, "8037"},
      {ColumnType::kInteger, kUp, std::int16_t{-2}, "7f7ffe"},
      {ColumnType::kInteger, kDown, std::int16_t{300}, "807ed3"},
      {ColumnType::kLong, kUp, std::int32_t{0x0f000001}, "7f8f000001"},
      {ColumnType::kLong, kUp, std::int32_t{INT32_MIN}, "7f00000000"},
      {ColumnType::kLong, kDown, std::int32_t{1}, "807ffffffe"},
      {ColumnType::kCurrency, kUp, Currency{-1}, "7f7fffffffffffffff"},
      {ColumnType::kCurrency, kUp, Currency{125000}, "7f800000000001e848"},
      {ColumnType::kCurrency, kDown, Currency{125000}, "807ffffffffffe17b7"},
      {ColumnType::kSingle, kUp, 1.0F, "7fbf800000"},
      {ColumnType::kSingle, kUp, -1.0F, "7f407fffff"},
      {ColumnType::kSingle, kDown, -1.0F, "80bf800000"},
      {ColumnType::kDouble, kUp, 1.0, "7fbff0000000000000"},
      {ColumnType::kDouble, kUp, -1.0, "7f400fffffffffffff"},
      {ColumnType::kDouble, kDown, -1.0, "80bff0000000000000"},
      {ColumnType::kDateTime, kUp, DateTime{2}, "7fc000000000000000"},
      {ColumnType::kDateTime, kUp, DateTime{34654}, "7fc0e0ebc000000000"},
      {ColumnType::kDateTime, kDown, DateTime{34654}, "803f1f143fffffffff"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(keysOf(c.type, c.ascending, c.value), std::vector<std::string>(3, c.key));
  }
}

// Both zeros are stored as one key; a lookup finds that of another program's -0.0, too.
TEST(KeyCodecTest, ZerosOfBothSigns) {
  const struct {
    ColumnType type;
    const char* key;
    const char* signedKey;
  } cases[] = {{ColumnType::kSingle, "7f80000000", "7f7fffffff"},
               {ColumnType::kDouble, "7f8000000000000000", "7f7fffffffffffffff"},
               {ColumnType::kDateTime, "7f8000000000000000", "7f7fffffffffffffff"}};
  for (const auto& c : cases) {
    for (const double zero : {0.0, -0.0}) {
      EXPECT_EQ(keysOf(c.type, kUp, zero), (std::vector<std::string>{c.key, c.signedKey, c.key}));
    }
  }
}

TEST(KeyCodecTest, NullsTextsAndBytes) {
  const auto ofBytes = [](ColumnType type, bool ascending, std::optional<Bytes> field) {
    std::vector<std::byte> key;
    appendKey(columnOf(type), ascending, field, key);
    return hex(key);
  };
  const auto ofText = [](bool ascending, std::optional<std::u16string_view> text,
                         Version version = Version::kJet4) {
    std::vector<std::byte> key;
    return appendTextKey(formatOf(version).textWeights, ascending, text, key)
               ? hex(key)
               : "refused" + hex(key);
  };
  const std::vector<std::byte> ten(10, std::byte{1});
  EXPECT_EQ(ofBytes(ColumnType::kLong, kUp, {}), "00");
  EXPECT_EQ(ofBytes(ColumnType::kLong, kDown, {}), "ff");
  EXPECT_EQ(ofBytes(ColumnType::kYesNo, kUp, {}), "7fff");
  EXPECT_EQ(ofBytes(ColumnType::kBinary, kUp, ten),
            "7f0101010101010101090101000000000000"
            "02");
  EXPECT_EQ(ofBytes(ColumnType::kBinary, kDown, ten),
            "80fefefefefefefefe09fefeffffffffffff"
            "fd");
  const auto guid = guidBytes("{00112233-4455-6677-8899-AABBCCDDEEFF}");
  EXPECT_EQ(ofBytes(ColumnType::kGuid, kUp, guid), "7f0011223344556677098899aabbccddeeff08");
  EXPECT_EQ(ofBytes(ColumnType::kGuid, kDown, guid), "80ffeeddccbbaa9988097766554433221100f7");
  Column numeric = columnOf(ColumnType::kNumeric);
  numeric.precision = 18;
  numeric.scale = 2;
  const auto ofNumeric = [&](bool negative) {
    return ofBytes(ColumnType::kNumeric, kUp,
                   encodeFixed(numeric, values::Numeric{negative, 1, 125}));
  };
  EXPECT_EQ(ofNumeric(false), "7fff000000000000000000000000000004e2");
  EXPECT_EQ(ofNumeric(true), "7f00fffffffffffffffffffffffffffffb1d");
  EXPECT_THROW((void)ofBytes(ColumnType::kNumeric, kDown, ten), RuntimeError);
  EXPECT_EQ(ofText(kUp, u"Table1"), "7f6d4a4c5e51380100");
  EXPECT_EQ(ofText(kUp, u"t_like1 "), "7f6d2b035e595c51380100");
  EXPECT_EQ(ofText(kDown, u"a"), "80b5feff");
  EXPECT_EQ(ofText(kUp, u"J2S 7z ", Version::kJet3), "7f6b5876115d7e00");
  EXPECT_EQ(ofText(kDown, u"a", Version::kJet3), "809fff");
  EXPECT_EQ(ofText(kDown, std::nullopt), "ff");
  EXPECT_EQ(ofText(kUp, u"a가"), "refused");
  EXPECT_EQ(ofText(kUp, std::u16string(300, u'9')).size(), 2U * (1 + 255 + 2));
}

}  // namespace
}  // namespace jet
