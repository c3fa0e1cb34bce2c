#include "extract/conversions.h"

#include <gtest/gtest.h>

#include "values/runtime_error.h"

namespace extract {
namespace {

using values::Currency;
using values::Variant;

const Variant kNull;
const Variant kEvening = values::toDateTime({2013, 8, 2, 19, 5, 9});
const Variant kNoDate = values::DateTime{1e9};  // behind the last year: has no text form

// So many characters before the text; a Hangul syllable is one, a character beyond the basic plane
// two.
std::string behind(std::size_t count, const std::string& character, const std::string& text) {
  std::string whole;
  for (std::size_t i = 0; i < count; ++i) whole += character;
  return whole + text;
}

TEST(ConversionsTest, SqlTextEscapesTheFirstApostropheOnly) {
  const struct {
    const char* name;
    Variant value;
    std::string sqlText;
  } rows[] = {
      {"null", kNull, ""},
      {"empty", "", ""},
      {"one apostrophe", "O'Neil", "O\\'Neil"},
      {"two apostrophes", "a'b'c", "a\\'b'c"},
      {"lone apostrophe", "'", "\\'"},
      {"backslash", "C:\\x", "C:\\x"},
      {"line break", "a\r\nb ", "a\r\nb "},
      {"number", 12, "12"},
      {"zero", 0, "0"},
      {"amount", Currency{15000}, "1.5"},
      {"yes", true, "True"},
      {"moment", kEvening, "2013-08-02 19:05:09"},
      {"no text form", kNoDate, "NULL"},
      {"last position", behind(32766, "a", "'"), behind(32766, "a", "\\'")},
      {"position too far", behind(32767, "a", "'"), "NULL"},
      {"far in bytes only", behind(20000, "홀", "'"), behind(20000, "홀", "\\'")},
      {"too far in pairs", behind(16384, "😀", "'"), "NULL"},
      {"long without one", behind(40000, "a", ""), behind(40000, "a", "")},
  };
  for (const auto& row : rows) EXPECT_EQ(SqlText(row.value), row.sqlText) << row.name;
}

TEST(ConversionsTest, NzTextNzLongAndNzBoolFallBack) {
  const struct {
    const char* name;
    Variant value;
    std::string nzText;
    std::int32_t nzLong;
    bool nzBool;
  } rows[] = {
      {"null", kNull, "", 0, false},
      {"empty", "", "", 0, false},
      {"apostrophe", "it's", "it's", 0, false},
      {"number as text", "42", "42", 42, false},
      {"grouped", "1,234", "1,234", 1234, false},
      {"in parentheses", "(1)", "(1)", -1, true},
      {"date as text", "20130802x", "20130802x", 0, false},
      {"single of eight digits", 12345678.0F, "1.234568E+07", 12345678, false},
      {"yes as text", " -1", " -1", -1, true},
      {"word for yes", "True", "True", 0, false},
      {"yes", true, "True", -1, true},
      {"no", false, "False", 0, false},
      {"one", std::int16_t{1}, "1", 1, false},
      {"minus one", std::int16_t{-1}, "-1", -1, true},
      {"near minus one", -1.2, "-1.2", -1, false},
      {"half", 2.5, "2.5", 2, false},
      {"odd half", 3.5, "3.5", 4, false},
      {"too large", 3e9, "3000000000", 0, false},
      {"amount", Currency{-25000}, "-2.5", -2, false},
      {"no text form", kNoDate, "", 1000000000, false},
      {"binary", values::Binary{{std::byte{'x'}}}, "x", 0, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(NzText(row.value), row.nzText) << row.name;
    EXPECT_EQ(NzLong(row.value), row.nzLong) << row.name;
    EXPECT_EQ(NzBool(row.value), row.nzBool) << row.name;
  }
}

TEST(ConversionsTest, FormatsKeepNullAndWhatIsNoDate) {
  EXPECT_EQ(SqlText(formatDay(kEvening)), "2013-08-02");
  EXPECT_EQ(SqlText(formatTime(kEvening)), "19:05:09");
  EXPECT_EQ(SqlText(formatHourMinute(kEvening)), "19:05");
  EXPECT_EQ(SqlText(formatHourMinute("7:05:30")), "07:05");
  EXPECT_EQ(SqlText(formatHourMinute("지각")), "지각");
  EXPECT_EQ(SqlText(formatTime("2013-08-02 오후 3:30:00")), "15:30:00");
  EXPECT_EQ(SqlText(formatDay("13-08-02")), "2013-08-02");
  EXPECT_TRUE(formatTime(kNull).isNull());
  EXPECT_EQ(weekdayLetter("2013-08-02"), "금");
  EXPECT_EQ(weekdayLetter(values::toDateTime({2013, 8, 4, 0, 0, 0})), "일");
  EXPECT_THROW((void)weekdayLetter(kNull), RuntimeError);
  EXPECT_EQ(dayLiteral(values::toDateTime({2013, 8, 2, 0, 0, 0})), "#2013-08-02#");
}

TEST(ConversionsTest, CaptionNumbersAreGroupedAndRounded) {
  EXPECT_EQ(groupedText(999), "999");
  EXPECT_EQ(groupedText(1204), "1,204");
  EXPECT_EQ(groupedText(-1234567), "-1,234,567");
  EXPECT_EQ(groupedText(-123), "-123");
  EXPECT_EQ(oneDecimalText(1204 / 5310.0 * 100), "22.7");
  EXPECT_EQ(oneDecimalText(100), "100.0");
}

}  // namespace
}  // namespace extract
