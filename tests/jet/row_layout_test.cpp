// Rows byte by byte: some as Access 97 and Access 2000 wrote them, some at the limits of a jump
// table. The writer must make the same bytes of what the reader found.
#include "jet/rows/row_layout.h"

#include <gtest/gtest.h>

#include <string>

namespace jet {
namespace {

using namespace std::string_literals;

Bytes bytesOf(const std::string& text) { return std::as_bytes(std::span(text)); }

struct RowCase {
  const char* name;
  Version version;
  std::string row;
  std::size_t columns;
  std::string nullMask;  // a digit for each column: 1 is set
  std::string fixed;
  std::vector<std::string> variable;
};

const std::string kA(200, 'a');
const std::string kB(100, 'b');
const std::string kC(250, 'c');

const RowCase kCases[] = {
    {"Access97",
     Version::kJet3,
     "\x09\x02\xDE\0\x55\x43\xDE\x13\x7B\x14\xAE\x47\xE1\xC8\x7B\x40\0\0\0\0\x40\xA7\xDA\x40"
     "\xB8\x88\0\0\0\0\0\0"
     "abcdefghijklmnop"
     "\x30\x27\x20\x02"
     "\xFF\x01"s,
     9,
     "111111111",
     "\x02\xDE\0\x55\x43\xDE\x13\x7B\x14\xAE\x47\xE1\xC8\x7B\x40\0\0\0\0\x40\xA7\xDA\x40"
     "\xB8\x88\0\0\0\0\0\0"s,
     {"abcdefg", "hijklmnop"}},
    {"Access97WithNulls",
     Version::kJet3,
     "\x09row4col1row4col2\x11\x11\x11\x11\x11\x11\x11\x11\x09\x01\x09\x03\0"s,
     9,
     "110000000",
     "",
     {"row4col1", "row4col2", "", "", "", "", "", "", ""}},
    {"Access2000",
     Version::kJet4,
     "\x03\0\xFF\xFErow1col1\xFF\xFErow1col2\x16\0\x16\0\x0C\0\x02\0\x03\0\x03"s,
     3,
     "110",
     "",
     {"\xFF\xFErow1col1", "\xFF\xFErow1col2", ""}},
    {"FixedColumnsOnly", Version::kJet4, "\x01\0\x05\0\0\0\x01"s, 1, "1", "\x05\0\0\0"s, {}},
    // Offsets 1, 201, 301 (2Dh and a jump), end 551 (27h and two jumps); 559 bytes: two jumps.
    {"Jumps",
     Version::kJet3,
     "\x03" + kA + kB + kC +
         "\x27\x2D\xC9\x01"
         "\x03\x02\x03"
         "\x07"s,
     3,
     "111",
     "",
     {kA, kB, kC}},
    // 258 bytes and so one jump, but the last offset is 251: the jump is not used.
    {"UnusedJump",
     Version::kJet3,
     "\x03" + kB + kB + std::string(50, 'y') +
         "\xFB\xC9\x65\x01"
         "\xFF\x03"
         "\x07"s,
     3,
     "111",
     "",
     {kB, kB, std::string(50, 'y')}},
};

class RowLayoutTest : public testing::TestWithParam<RowCase> {};

TEST_P(RowLayoutTest, IsReadAndWritten) {
  const RowCase& c = GetParam();
  const auto layout = RowLayout::of(formatOf(c.version), bytesOf(c.row));
  ASSERT_TRUE(layout);
  ASSERT_EQ(layout->columns(), c.columns);
  std::string mask;
  for (std::uint16_t n = 0; n < c.columns; ++n) mask += layout->isSet(n) ? '1' : '0';
  EXPECT_EQ(mask, c.nullMask);
  EXPECT_FALSE(layout->isSet(static_cast<std::uint16_t>(c.columns)));
  const Column all{.name = "", .fixed = true, .length = static_cast<std::uint16_t>(c.fixed.size())};
  EXPECT_EQ(asText(layout->fixedField(all).value()), c.fixed);

  RowParts parts{.columns = c.columns, .fixed = bytesOf(c.fixed)};
  parts.mask = bytesOf(c.row).subspan(layout->maskStart());
  std::string variable;
  for (std::size_t n = 0; n < c.variable.size(); ++n) {
    const auto field = layout->variableField(n);
    ASSERT_TRUE(field) << n;
    EXPECT_EQ(asText(*field), c.variable[n]);
    variable += c.variable[n];
    parts.offsets.push_back(layout->variableOffset(layout->variablePart().value(), n));
  }
  if (!c.variable.empty()) {
    EXPECT_FALSE(layout->variableField(c.variable.size()));
    parts.offsets.push_back(parts.offsets.back() + c.variable.back().size());
  }
  parts.variable = bytesOf(variable);
  EXPECT_EQ(asText(assembleRow(formatOf(c.version), parts)), c.row);
}

INSTANTIATE_TEST_SUITE_P(Rows, RowLayoutTest, testing::ValuesIn(kCases),
                         [](const auto& tried) { return tried.param.name; });

// A field that would reach into another row or page must not come back.
TEST(RowLayoutDamageTest, GivesNoField) {
  const auto field = [](Version version, const std::string& row, std::size_t n) {
    const auto layout = RowLayout::of(formatOf(version), bytesOf(row));
    return layout ? layout->variableField(n) : std::nullopt;
  };
  EXPECT_TRUE(field(Version::kJet3,
                    "\x02"
                    "ab"
                    "\x03\x02\x01\x02"
                    "\x03"s,
                    1));
  const struct {
    const char* name;
    Version version;
    std::string row;
  } cases[] = {
      {"starts after its end", Version::kJet3,
       "\x02"
       "ab"
       "\x03\x04\x01\x02"
       "\x03"s},
      {"ends in the offsets", Version::kJet3,
       "\x02"
       "ab"
       "\x04\x02\x01\x02"
       "\x03"s},
      {"starts in the column count", Version::kJet4,
       "\x02\0"
       "ab"
       "\x04\0\x01\0\x02\0\x02\0"
       "\x03"s},
      {"more fields than bytes", Version::kJet3,
       "\x02"
       "ab"
       "\x03\x02\x01\x09"
       "\x03"s},
      {"fewer fields", Version::kJet3,
       "\x02"
       "ab"
       "\x03\x01\x01"
       "\x03"s},
      {"no room for the null mask", Version::kJet4, "\xFF\0\x03"s},
      {"no room for the column count", Version::kJet4, "\x02"s},
  };
  for (const auto& c : cases) EXPECT_FALSE(field(c.version, c.row, 1)) << c.name;
}

}  // namespace
}  // namespace jet
