// The types and values of operators over every pair of types, and of conversions from number to
// text: tables measured with the platform's own arithmetic of variants.
#include "jetsql/function_cases.h"

namespace jetsql {
namespace {

using values::Currency;
using values::DateTime;
using values::Numeric;
using values::Variant;

// Yes/No, Byte, Integer, Long, Single, Double, Currency, Date, Numeric, Text; each is 2, Yes is -1.
const std::vector<Variant> kOperands = {true,
                                        std::uint8_t{2},
                                        std::int16_t{2},
                                        2,
                                        2.0F,
                                        2.0,
                                        Currency{20000},
                                        DateTime{2.0},
                                        Numeric{false, 0, 2},
                                        "2"};

struct TypeTable {
  const char* operation;
  std::vector<std::string> rows;  // letters of the result: left operand down, right one across
};

// Faults that it finds: a Currency that becomes a Double, a Byte that becomes a Long.
TEST(ArithmeticTest, TypesOfResults) {
  const std::vector<TypeTable> tables = {
      {"add",
       {"iiilsdctmd", "ibilsdctmd", "iiilsdctmd", "llllddctmd", "sssdsdctmd", "ddddddctmd",
        "ccccccctmc", "ttttttttmt", "mmmmmmmmmm", "ddddddctmx"}},
      {"sub",
       {"iiilsdctmd", "ibilsdctmd", "iiilsdctmd", "llllddctmd", "sssdsdctmd", "ddddddctmd",
        "ccccccctmc", "tttttttdmt", "mmmmmmmmmm", "ddddddctmd"}},
      {"mul",
       {"iiilsdcdmd", "ibilsdcdmd", "iiilsdcdmd", "llllddcdmd", "sssdsdddmd", "ddddddddmd",
        "ccccddcdmd", "ddddddddmd", "mmmmmmmmmm", "ddddddddmd"}},
      {"div",
       {"ddddsdddmd", "ddddsdddmd", "ddddsdddmd", "ddddddddmd", "sssdsdddmd", "ddddddddmd",
        "ddddddddmd", "ddddddddmd", "mmmmmmmmmm", "ddddddddmd"}},
      {"intdiv",
       {"iiilllllll", "ibilllllll", "iiilllllll", "llllllllll", "llllllllll", "llllllllll",
        "llllllllll", "llllllllll", "llllllllll", "llllllllll"}},
      {"pow",
       {"dddddddddd", "dddddddddd", "dddddddddd", "dddddddddd", "dddddddddd", "dddddddddd",
        "dddddddddd", "dddddddddd", "dddddddddd", "dddddddddd"}},
  };
  const support::FakeClock clock;
  for (const TypeTable& table : tables) {
    for (std::size_t left = 0; left < kOperands.size(); ++left) {
      for (std::size_t right = 0; right < kOperands.size(); ++right) {
        const Case c{std::string("op ") + table.operation, {kOperands[left], kOperands[right]}, ""};
        EXPECT_EQ(evaluate(c, {clock}).substr(0, 1), table.rows[left].substr(right, 1))
            << shownCall(c);
      }
    }
  }
}

TEST(ArithmeticTest, Values) {
  expectCases({
      {"op add", {Currency{15000}, 0.25}, "c 1.75"},
      {"op mul", {Currency{15000}, 0.25}, "d 0.375"},
      {"op mul", {Currency{15000}, 3}, "c 4.5"},
      {"op div", {Currency{10000}, 8}, "d 0.125"},
      {"op add", {0.1, 0.2}, "d 0.3"},
      {"op sub", {DateTime{41507.5}, DateTime{41507}}, "d 0.5"},
      // The next wider type.
      {"op add", {std::uint8_t{200}, std::uint8_t{100}}, "i 300"},
      {"op sub", {std::uint8_t{1}, std::uint8_t{2}}, "i -1"},
      {"op mul", {std::int16_t{300}, std::int16_t{300}}, "l 90000"},
      {"op add", {2147483647, 1}, "d 2147483648"},
      {"op mul", {-2147483647, 2147483647}, "d -4.61168601413242E+18"},
      {"op neg", {std::uint8_t{1}}, "i -1"},
      {"op neg", {INT32_MIN}, "d 2147483648"},
      {"op sub", {-2147483647, 1}, "l -2147483648"},
      // 28 digits: 1 / 3, and 2 / 3 rounded up.
      {"op div", {Numeric{false, 0, 1}, 3}, "m 0.3333333333333333333333333333"},
      {"op div", {2, Numeric{true, 0, 3}}, "m -0.6666666666666666666666666667"},
      {"op div", {Numeric{false, 2, 150}, Numeric{false, 4, 25}}, "m 600"},
      {"op div", {Numeric{false, 0, 1}, Numeric{}}, "error 11"},
      {"op intdiv", {7.5, 2}, "l 4"},  // 7.5 counts as 8
      {"op mod", {std::uint8_t{7}, std::uint8_t{4}}, "b 3"},
      {"op intdiv", {3e9, 1}, "error 6"},
  });
}

// Singles, and the rest of the measured table; values/variant_test.cpp has the other Doubles.
TEST(ArithmeticTest, NumberToText) {
  expectCases({
      {"CStr", {12345678.0F}, "x 1.234568E+07"},
      {"CStr", {1234567.0F}, "x 1234567"},
      {"CStr", {123456.7F}, "x 123456.7"},
      {"CStr", {1e10F}, "x 1E+10"},
      {"CStr", {0.0001F}, "x 0.0001"},
      {"CStr", {0.00001F}, "x 1E-05"},
      {"CStr", {9007199254740992.0}, "x 9.00719925474099E+15"},
      {"CStr", {1e15}, "x 1E+15"},
      {"CStr", {1234567890123456.0}, "x 1.23456789012346E+15"},
      {"CStr", {1.0 / 30}, "x 0.0333333333333333"},
  });
}

TEST(ArithmeticTest, NumberToCurrency) {
  expectCases({
      {"CCur", {1.63625}, "c 1.6362"},
      {"CCur", {3.94875}, "c 3.9488"},
      {"CCur", {9.21375}, "c 9.2137"},  // times 10000 it is 92137.49999999999
      {"CCur", {"922337203685477.5807"}, "c 922337203685477.5807"},
      {"CCur", {"922337203685477.5808"}, "error 6"},
      {"CCur", {"&H1F"}, "error 13"},
  });
}

}  // namespace
}  // namespace jetsql
