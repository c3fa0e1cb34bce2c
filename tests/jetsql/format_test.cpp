#include "jetsql/functions/format.h"

#include <gtest/gtest.h>

namespace jetsql {
namespace {

using values::Currency;
using values::Variant;

const Variant kEvening = values::toDateTime({2013, 8, 2, 19, 42, 5});
const Variant kMorning = values::toDateTime({2013, 8, 12, 0, 5, 9});

TEST(FormatTest, Gives) {
  struct Case {
    Variant value;
    const char* pattern;
    const char* expected;
  };
  const Case cases[] = {
      {1204, "#,##0", "1,204"},
      {0, "#,##0", "0"},
      {-1234567, "#,##0", "-1,234,567"},
      {12, "#,##0", "12"},
      {22.65, "0.0", "22.7"},
      {22.25, "0.0", "22.3"},  // away from zero, unlike Round
      {0.05, "0.0", "0.1"},
      {99.96, "0.0", "100.0"},
      {-0.04, "0.0", "0.0"},
      {0.5, "#.##", ".5"},
      {7, "000", "007"},
      {1234.5, "000", "1235"},
      {12345678, "#,##0,", "12,346"},
      {0.126, "0.0%", "12.6%"},
      {-3.5, "0.0;(0.0);zero", "(3.5)"},
      {0, "0.0;(0.0);\"zero;\"", "zero;"},
      {Variant(), "0;-0;0;없음", "없음"},
      {Variant(), "0", ""},
      {9.99, "0.0E+00", "1.0E+01"},
      {0.00123, "0.00E-0", "1.23E-3"},
      {Currency{922337203685477}, "#,##0.0000", "92,233,720,368.5477"},
      {5, "0\\원", "5원"},
      {5, "\"약 \"0 개", "약 5 개"},
      {1234567.891, "Standard", "1,234,567.89"},
      {2.345, "Fixed", "2.35"},
      {0.5, "Percent", "50.00%"},
      {-1500, "Currency", "-₩1,500"},
      {1e20, "0", "100000000000000000000"},
      {"12.34", "0.0", "12.3"},
      {"abc", "0.0", "abc"},
      {true, "Yes/No", "Yes"},
      {12.5, "", "12.5"},
      {kEvening, "yyyy-mm-dd", "2013-08-02"},
      {kEvening, "yy.MM.dd", "13.08.02"},
      {kEvening, "yyyy/mm/dd hh:nn:ss", "2013/08/02 19:42:05"},
      {kMorning, "h:m:s", "0:5:9"},  // m after h is the minute
      {kMorning, "m/d/yy", "8/12/13"},
      {kEvening, "hh:nn AM/PM", "07:42 PM"},
      {kMorning, "AMPM h:nn", "오전 12:05"},
      {kEvening, "ddd dddd w", "금 금요일 6"},
      {kEvening, "mmm mmmm q y", "8 8월 3 214"},
      {kEvening, "yyyy\"년\" m\\월", "2013년 8월"},
      {kEvening, "Short Date", "2013-08-02"},
      {kEvening, "Long Date", "2013년 8월 2일 금요일"},
      {kEvening, "Short Time", "19:42"},
      {kEvening, "General Date", "2013-08-02 19:42:05"},
      {kEvening, "0", "41489"},
      {"2013-08-02", "yyyymmdd", "20130802"},
      {41488, "yyyy", "2013"},
      {"abc", "@@@@@", "  abc"},
      {"가나", "!@@@", "가나 "},
      {"0212345678", "@@-@@@@-@@@@", "02-1234-5678"},
      {"aBc", ">", "ABC"},
      {"ab", "\"<\"@@@\\>", "< ab>"},
      {"", "@@;\"empty\"", "empty"},
      {Variant(), "@@;\"empty\"", "empty"},
      {"a", "@@;\"empty\"", " a"},
      {Variant(), "@@", ""},
      {kEvening, "aaa aaaa", "금 금요일"},
      {kEvening, "oooo", "8월"},
      {values::DateTime{0.8125}, "General Date", "19:30:00"},
      {values::DateTime{0}, "General Date", "00:00:00"},
      {1, "On/Off", "On"},
      {0, "On/Off", "Off"},
      {Currency{INT64_MAX}, "#,##0.0000", "922,337,203,685,477.5807"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(format(c.value, c.pattern), c.expected)
        << (c.value.isNull() ? "Null" : toText(c.value)) << " as " << c.pattern;
  }
}

}  // namespace
}  // namespace jetsql
