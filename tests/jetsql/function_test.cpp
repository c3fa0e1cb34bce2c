// Functions and operators, called as the bridge calls them: values in, a value of the static result
// type out.
#include "jetsql/function_cases.h"

namespace jetsql {
namespace {

using values::Currency;
using values::DateTime;
using values::Numeric;
using values::Variant;

const Variant kNull;

DateTime day(int year, int month, int dayOfMonth, int hour = 0, int minute = 0, int second = 0) {
  return values::toDateTime({year, month, dayOfMonth, hour, minute, second});
}

TEST(FunctionTest, Text) {
  expectCases({
      {"Left", {"홀서빙", 1}, "x 홀"},
      {"left$", {"abc", 9}, "x abc"},
      {"Left", {"abc", -1}, "error 5"},
      {"Left", {Variant(130802), 2}, "x 13"},
      {"Left", {kNull, 2}, "-"},
      {"Right", {"홀서빙", 2}, "x 서빙"},
      {"Right", {"abc", 0}, "x "},
      {"Mid", {"130802194210", 7, 2}, "x 19"},
      {"Mid", {"가나다", 2}, "x 나다"},
      {"Mid", {"abc", 9, 1}, "x "},
      {"Mid", {"abc", 0}, "error 5"},
      {"Len", {"김밥a"}, "l 3"},
      {"Trim", {"  a b "}, "x a b"},
      {"LTrim", {"  a "}, "x a "},
      {"RTrim", {" a  "}, "x  a"},
      {"UCase", {"straße éя"}, "x STRAßE ÉЯ"},
      {"LCase", {"ÀΣＡ"}, "x àσａ"},
      {"InStr", {"abcABC", "C"}, "l 3"},
      {"InStr", {4, "abcabc", "c"}, "l 6"},
      {"InStr", {1, "abcABC", "C", 0}, "l 6"},
      {"InStr", {"김치찌개", "찌"}, "l 3"},
      {"InStr", {"", "a"}, "l 0"},
      {"InStr", {0, "abc", "a"}, "error 5"},
      {"InStrRev", {"a,b,c", ","}, "l 4"},
      {"InStrRev", {"a,b,c", ",", 3}, "l 2"},
      {"Replace", {"aAa", "A", "x"}, "x axa"},
      {"Replace", {"가나가나", "나", "다", 1, 1}, "x 가다가나"},
      {"StrReverse", {"abc가"}, "x 가cba"},
      {"Space", {3}, "x    "},
      {"String", {3, "가나"}, "x 가가가"},
      {"Chr", {65}, "x A"},
      {"ChrW", {-21504}, "x 가"},
      {"Asc", {""}, "error 5"},
      {"StrComp", {"a", "B"}, "i -1"},
      {"StrComp", {"a", "A", 0}, "i 1"},
      {"StrConv", {"hello wOrld", 3}, "x Hello World"},
  });
}

TEST(FunctionTest, Number) {
  expectCases({
      {"Int", {-2.5}, "d -3"},
      {"Fix", {-2.5}, "d -2"},
      {"Int", {Currency{-25000}}, "c -3"},
      {"Int", {Numeric{true, 1, 25}}, "m -3"},
      {"Int", {"7.9"}, "d 7"},
      {"Abs", {-7}, "l 7"},
      {"Abs", {INT32_MIN}, "error 6"},
      {"Round", {2.5}, "d 2"},
      {"Round", {3.5}, "d 4"},
      {"Round", {-2.5}, "d -2"},
      {"Round", {0.125, 2}, "d 0.12"},
      {"Round", {Currency{12345}, 1}, "c 1.2"},
      {"Round", {Currency{12500}, 1}, "c 1.2"},
      {"Round", {Currency{13500}, 1}, "c 1.4"},
      {"Round", {1.5, -1}, "error 5"},
      {"Sgn", {-0.5}, "i -1"},
      {"Sqr", {9}, "d 3"},
      {"Sqr", {-1}, "error 5"},
      {"Log", {0}, "error 5"},
      {"Exp", {710}, "error 6"},
      {"op add", {"a", "b"}, "x ab"},
      {"op add", {"2", 3}, "d 5"},
      {"op add", {"zwei", 3}, "error 13"},
      {"op add", {kNull, 3}, "-"},
      {"op add", {day(2013, 8, 2), 1}, "t 2013-08-03"},
      {"op sub", {day(2013, 8, 2), day(2013, 8, 1)}, "d 1"},
      {"op sub", {Currency{10000}, Currency{1}}, "c 0.9999"},
      {"op mul", {Currency{5}, Currency{5000}}, "c 0.0002"},  // 0.00025: half to even
      {"op mul", {Currency{INT64_MAX}, 2}, "error 6"},
      {"op mul", {Numeric{false, 2, 150}, Numeric{true, 1, 15}}, "m -2.25"},
      {"op div", {1, 8}, "d 0.125"},
      {"op div", {1, 0}, "error 11"},
      {"op intdiv", {-7, 2}, "l -3"},
      {"op intdiv", {INT32_MIN, -1}, "error 6"},
      {"op mod", {-7, 3}, "l -1"},
      {"op mod", {7, 0}, "error 11"},
      {"op pow", {2, 10}, "d 1024"},
      {"op pow", {-8, 0.5}, "error 5"},
      {"op neg", {Currency{5000}}, "c -0.5"},
      {"op neg", {true}, "i 1"},
      {"op concat", {"a", kNull}, "x a"},
      {"op concat", {kNull, kNull}, "-"},
      {"op concat", {"20", true}, "x 20-1"},
      {"op concat", {1.5, day(2013, 8, 2)}, "x 1.52013-08-02"},
      {"op and", {false, kNull}, "y False"},
      {"op and", {true, kNull}, "-"},
      {"op and", {12, 10}, "l 8"},
      {"op or", {true, kNull}, "y True"},
      {"op xor", {true, true}, "y False"},
      {"op eqv", {false, false}, "y True"},
      {"op imp", {false, kNull}, "y True"},
      {"op imp", {true, false}, "y False"},
      {"op not", {0}, "l -1"},
  });
}

TEST(FunctionTest, Date) {
  expectCases({
      {"Now", {}, "t 2013-08-21 15:30:45"},
      {"Date", {}, "t 2013-08-21"},
      {"Time", {}, "t 1899-12-30 15:30:45"},
      {"Year", {"2013-08-02"}, "i 2013"},
      {"Month", {day(1899, 12, 29, 6)}, "i 12"},
      {"Day", {day(1899, 12, 29, 6)}, "i 29"},
      {"Hour", {day(1899, 12, 29, 6)}, "i 6"},
      {"Minute", {"kein Tag"}, "error 13"},
      {"Weekday", {day(2013, 8, 2)}, "i 6"},
      {"Weekday", {day(2013, 8, 2), 2}, "i 5"},
      {"Weekday", {day(2013, 8, 2), 9}, "error 5"},
      {"DateSerial", {2013, 14, 0}, "t 2014-01-31"},
      {"DateSerial", {13, 8, 2}, "t 2013-08-02"},
      {"DateSerial", {99, 1, 1}, "t 1999-01-01"},
      {"DateSerial", {9999, 13, 1}, "error 5"},
      {"TimeSerial", {12, -15, 0}, "t 1899-12-30 11:45:00"},
      {"DateValue", {"2013-08-02 19:42:10"}, "t 2013-08-02"},
      {"TimeValue", {"2013-08-02 19:42:10"}, "t 1899-12-30 19:42:10"},
      {"DateAdd", {"m", 1, day(2012, 1, 31)}, "t 2012-02-29"},
      {"DateAdd", {"yyyy", -1, day(2012, 2, 29)}, "t 2011-02-28"},
      {"DateAdd", {"h", 25, day(1899, 12, 29, 23)}, "t 1899-12-31"},
      {"DateAdd", {"ww", 2, day(2013, 8, 2)}, "t 2013-08-16"},
      {"DateAdd", {"zz", 1, day(2013, 8, 2)}, "error 5"},
      {"DateDiff", {"d", day(2013, 8, 1, 23), day(2013, 8, 2)}, "l 1"},
      {"DateDiff", {"h", day(2013, 8, 1, 10, 59), day(2013, 8, 1, 11, 1)}, "l 1"},
      {"DateDiff", {"m", day(2012, 12, 31), day(2013, 1, 1)}, "l 1"},
      {"DateDiff", {"ww", day(2013, 8, 2), day(2013, 8, 4)}, "l 1"},
      {"DateDiff", {"w", day(2013, 8, 2), day(2013, 8, 15)}, "l 1"},
      {"DateDiff", {"s", day(1900, 1, 1), day(2013, 1, 1)}, "error 6"},
      {"DatePart", {"q", day(2013, 8, 2)}, "i 3"},
      {"DatePart", {"y", day(2013, 12, 31)}, "i 365"},
      {"DatePart", {"ww", day(2013, 1, 6)}, "i 2"},
      {"DatePart", {"ww", day(2012, 1, 1), 2, 2}, "i 52"},   // ISO week of the year before
      {"DatePart", {"ww", day(2013, 12, 31), 2, 2}, "i 1"},  // and of the year after
      {"WeekdayName", {1, false, 2}, "x 월요일"},
  });
}

TEST(FunctionTest, Conversion) {
  expectCases({
      {"CLng", {"2.5"}, "l 2"},
      {"CLng", {Currency{35000}}, "l 4"},
      {"CLng", {3e9}, "error 6"},
      {"CLng", {kNull}, "error 94"},
      {"CInt", {-1.5}, "i -2"},
      {"CByte", {256}, "error 6"},
      {"CByte", {true}, "error 6"},
      {"CBool", {"true"}, "y True"},
      {"CSng", {1e39}, "error 6"},
      {"CCur", {1.23456}, "c 1.2346"},
      {"CDec", {"0.1000000000000000000000000001"}, "m 0.1000000000000000000000000001"},
      {"CDate", {41488.5}, "t 2013-08-02 12:00:00"},
      {"CVDate", {kNull}, "-"},
      {"CStr", {kNull}, "error 94"},
      {"Val", {" 12 34.5abc"}, "d 1234.5"},
      {"Val", {"-"}, "d 0"},
      {"Val", {"&H1F"}, "d 31"},
      {"Str", {5}, "x  5"},
      {"Str", {-5}, "x -5"},
      {"IsNumeric", {"1e5"}, "y True"},
      {"IsNumeric", {"1,5x"}, "y False"},
      {"IsNumeric", {kNull}, "y False"},
      {"IsDate", {"2013/08/02"}, "y True"},
      {"IIf", {kNull, "a", 1}, "x 1"},
      {"IIf", {true, 1, Currency{5}}, "c 1"},
      {"Nz", {kNull}, "x "},
      {"Nz", {kNull, 0}, "l 0"},
      {"IsNull", {kNull}, "y True"},
      {"Switch", {false, 1, true, 2}, "l 2"},
      {"Switch", {false, 1}, "-"},
      {"Switch", {true, 1, false}, "error 5"},
      {"Choose", {2.9, "a", "b"}, "x b"},
      {"Choose", {3, "a", "b"}, "-"},
  });
}

}  // namespace
}  // namespace jetsql
