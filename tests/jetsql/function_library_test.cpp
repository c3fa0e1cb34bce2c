// The rest of the functions that Jet evaluates by itself. Expected values: the maker's
// documentation where it has examples (Partition, the financial functions, Rnd), else computed by
// hand.
#include <array>

#include "jetsql/function_cases.h"

namespace jetsql {
namespace {

using values::Currency;
using values::DateTime;
using values::Numeric;
using values::Variant;

const Variant kNull;
const DateTime kAfternoon = values::toDateTime({2013, 8, 21, 15, 30, 0});

TEST(FunctionLibraryTest, CharactersAndTheirCodes) {
  expectCases({
      {"Asc", {"A"}, "i 65"},
      {"Asc", {"가나"}, "i -20319"},  // B0A1h
      {"Asc", {"é"}, "i 63"},         // not in code page 949
      {"AscW", {"가"}, "i -21504"},
      {"AscW", {"😀"}, "i -10179"},  // D83Dh
      {"Chr", {-20319}, "x 가"},
      {"Chr", {45217}, "x 가"},
      {"Chr", {10}, "x \n"},
      {"Chr", {200}, "x ?"},  // the first half of a character
      {"Chr", {65536}, "error 5"},
      {"Chr", {-32769}, "error 5"},
      {"ChrW", {44032}, "x 가"},
      {"ChrW", {200}, "x È"},
      {"String", {2, 321}, "x AA"},  // its lowest 8 bits
      {"String", {2, ""}, "error 5"},
      {"StrConv", {"ab ", 4}, "x ａｂ　"},
      {"StrConv", {"ａＢ", 8}, "x aB"},
      {"StrConv", {"ab", 5}, "x ＡＢ"},
      {"StrConv", {"ab", 64}, "error 5"},
      {"InStrRev", {"abcabc", "bc", 4}, "l 2"},
      {"LenB", {"a가"}, "l 4"},
      {"LeftB", {"a가", 3}, "x a"},
      {"RightB", {"a가", 2}, "x 가"},
      {"MidB", {"a가나", 3, 2}, "x 가"},
      {"MidB", {"a가", 9}, "x "},
      {"InStrB", {"a가나", "나"}, "l 5"},
      {"InStrB", {3, "aA", "A"}, "l 3"},
      {"AscB", {"가"}, "b 0"},  // AC00h
      {"LeftB", {"a", -1}, "error 5"},
  });
}

// An unbounded result would end the program instead of the query.
TEST(FunctionLibraryTest, LongTextsAreRefused) {
  const std::string text(std::size_t{1} << 16U, 'x');
  const std::string most(std::size_t{1} << 26U, 'x');
  expectCases({
      {"Space", {INT32_MAX}, "error 14"},
      {"String", {1 << 25, "가"}, "error 14"},
      {"Replace", {text, "x", std::string(1025, 'y')}, "error 14"},
  });
  const support::FakeClock clock;
  const Case joined{"op concat", {most, "x"}, ""};
  EXPECT_EQ(evaluate(joined, {clock}), "error 14");
}

TEST(FunctionLibraryTest, Dates) {
  expectCases({
      {"TimeValue", {kAfternoon}, "t 1899-12-30 15:30:00"},
      {"op sub", {DateTime{55800.0 / 86400}, DateTime{55800.0 / 86400}}, "d 0"},
      {"TimeValue", {"오후 3:30"}, "t 1899-12-30 15:30:00"},
      {"DateValue", {"8-21"}, "t 2013-08-21"},  // of the clock's year
      {"DateValue", {DateTime{41506.9999999}}, "t 2013-08-21"},
      {"CDate", {"2013-08-21 오후 3:30:00"}, "t 2013-08-21 15:30:00"},
      {"CDate", {"2013년 8월 21일"}, "t 2013-08-21"},
      {"CDate", {"20130821"}, "error 13"},
      {"IsDate", {"8-21"}, "y True"},
      {"IsDate", {"21"}, "y False"},
      {"IsDate", {41507}, "y False"},
      {"DateSerial", {9999, 12, 31}, "t 9999-12-31"},
      {"MonthName", {8}, "x 8월"},
      {"WeekdayName", {1}, "x 일요일"},
      {"WeekdayName", {4, true}, "x 수"},
      {"Timer", {}, "s 55845"},
  });
  // Equal to the bit, as comparisons of times need.
  const support::FakeClock clock;
  const Variant time =
      call(*findFunction("TimeValue"), std::array<Variant, 1>{kAfternoon}, {clock});
  EXPECT_EQ(time.as<DateTime>()->serial, 55800.0 / 86400);
}

TEST(FunctionLibraryTest, Conversions) {
  expectCases({
      {"CLng", {"1,234"}, "l 1234"},
      {"CLng", {"&HFFFF"}, "l 65535"},
      {"CDbl", {"1e400"}, "error 6"},
      {"CDbl", {"1d2"}, "error 13"},
      {"IsNumeric", {"₩1,234"}, "y True"},
      {"IsNumeric", {"１２"}, "y False"},
      {"IsNumeric", {""}, "y False"},
      {"Val", {"1d2"}, "d 100"},
      {"Val", {"&HFFFF"}, "d -1"},
      {"Val", {"&HFFFF&"}, "d 65535"},
      {"Val", {"&H10000"}, "d 65536"},
      {"Val", {"&o17"}, "d 15"},
      {"Val", {"12e"}, "d 12"},
      {"Val", {kNull}, "error 94"},
      {"Replace", {kNull, "a", "b"}, "error 94"},
      {"Str", {1.1F}, "x  1.1"},
      {"Hex", {255}, "x FF"},
      {"Hex", {std::int16_t{-1}}, "x FFFF"},
      {"Hex", {-1}, "x FFFFFFFF"},
      {"Oct", {8}, "x 10"},
      {"CVar", {Currency{5000}}, "c 0.5"},
      {"CVar", {kNull}, "-"},
      {"VarType", {kNull}, "i 1"},
      {"VarType", {kAfternoon}, "i 7"},
      {"VarType", {true}, "i 11"},
      {"VarType", {Numeric{}}, "i 14"},
      {"TypeName", {"a"}, "x String"},
      {"TypeName", {std::uint8_t{1}}, "x Byte"},
      {"IsError", {1}, "y False"},
      {"IsEmpty", {kNull}, "y False"},
  });
}

TEST(FunctionLibraryTest, FormattedByOptions) {
  expectCases({
      {"FormatNumber", {1234.5}, "x 1,234.50"},
      {"FormatNumber", {0.5, 1, 0}, "x .5"},
      {"FormatNumber", {-1234.5, 0, -2, -1, 0}, "x (1235)"},
      {"FormatNumber", {-0.001}, "x 0.00"},
      {"FormatNumber", {"1,234"}, "x 1,234.00"},
      {"FormatNumber", {"abc"}, "error 13"},
      {"FormatNumber", {1, 0, 1}, "error 5"},
      {"FormatCurrency", {-1500}, "x -₩1,500"},
      {"FormatPercent", {0.1234, 1}, "x 12.3%"},
      {"FormatDateTime", {kAfternoon}, "x 2013-08-21 15:30:00"},
      {"FormatDateTime", {kAfternoon, 1}, "x 2013년 8월 21일 수요일"},
      {"FormatDateTime", {kAfternoon, 4}, "x 15:30"},
      {"FormatDateTime", {kAfternoon, 5}, "error 5"},
      {"Partition", {-5, 0, 99, 5}, "x    : -1"},
      {"Partition", {3, 0, 99, 5}, "x   0:  4"},
      {"Partition", {99, 0, 99, 5}, "x  95: 99"},
      {"Partition", {150, 0, 99, 5}, "x 100:   "},
      {"Partition", {195, 20, 199, 10}, "x 190:199"},
      {"Partition", {1005, 100, 1010, 20}, "x 1000:1010"},
      {"Partition", {1, 5, 5, 1}, "error 5"},
      {"Partition", {kNull, 0, 99, 5}, "-"},
  });
}

TEST(FunctionLibraryTest, RandomNumbersAndColours) {
  expectCases({
      {"Rnd", {}, "s 0.7055475"},
      {"Rnd", {1}, "s 0.533424"},
      {"Rnd", {0}, "s 0.533424"},
      {"Rnd", {}, "s 0.5795186"},
      {"Rnd", {-1}, "s 0.224007"},
      {"Rnd", {-1}, "s 0.224007"},
      {"RGB", {255, 128, 1}, "l 98559"},  // 255 + 128 * 256 + 65536
      {"RGB", {300, 0, 0}, "l 255"},
      {"RGB", {-1, 0, 0}, "error 5"},
      {"QBColor", {12}, "l 255"},
      {"QBColor", {16}, "error 5"},
  });
}

TEST(FunctionLibraryTest, Finance) {
  const struct {
    const char* function;
    std::vector<Variant> arguments;
    double expected;
    double precision;
  } cases[] = {
      {"Pmt", {0.08 / 12, 10, 10000}, -1037.03, 0.005},
      {"Pmt", {0.06 / 12, 216, 0, 50000}, -129.08, 0.005},
      {"Pmt", {0, 10, 1000}, -100, 1e-9},
      {"FV", {0.06 / 12, 10, -200, -500, 1}, 2581.40, 0.005},
      {"PV", {0.08 / 12, 240, 500}, -59777.15, 0.005},
      {"NPer", {0.12 / 12, -100, -1000, 10000, 1}, 59.6738657, 1e-6},
      {"NPer", {0, -100, 1000}, 10, 1e-9},
      {"IPmt", {0.1 / 12, 1, 36, 8000}, -66.67, 0.005},
      {"IPmt", {0.1, 3, 3, 8000}, -292.45, 0.005},
      {"PPmt", {0.1 / 12, 1, 24, 2000}, -75.62, 0.005},
      {"Rate", {48, -200, 8000}, 0.0077014725, 1e-9},
      {"SLN", {30000, 7500, 10}, 2250, 1e-9},
      {"SYD", {30000, 7500, 10, 1}, 4090.91, 0.005},
      {"SYD", {30000, 7500, 10, 10}, 409.09, 0.005},
      {"DDB", {2400, 300, 3650, 1}, 1.32, 0.005},
      {"DDB", {2400, 300, 10, 1}, 480, 1e-9},
      {"DDB", {2400, 300, 10, 2, 1.5}, 306, 1e-9},
      {"DDB", {2400, 300, 10, 10}, 22.12, 0.005},
  };
  const support::FakeClock clock;
  for (const auto& c : cases) {
    const Variant result = call(*findFunction(c.function), c.arguments, {clock});
    EXPECT_NEAR(toDouble(result), c.expected, c.precision) << c.function;
  }
  expectCases({
      {"Pmt", {0.1, 0, 1000}, "error 5"},
      {"IPmt", {0.1, 4, 3, 8000}, "error 5"},
      {"SYD", {30000, 7500, 10, 11}, "error 5"},
      {"NPer", {0.1, -10, 1000}, "error 5"},  // never paid back
      {"SLN", {1, 0, 0}, "error 5"},
      {"FV", {0.1, kNull, 1}, "-"},
  });
}

}  // namespace
}  // namespace jetsql
