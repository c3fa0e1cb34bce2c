#include "values/variant.h"

#include <gtest/gtest.h>

#include <functional>

#include "values/runtime_error.h"

namespace values {
namespace {

// The number of the error that the call raises, 0 when it raises none.
int errorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& failure) {
    return failure.number();
  }
  return 0;
}

TEST(VariantTest, TextIsThePlatformsDefaultForm) {
  const Numeric fraction{true, 28, Uint128{5}};
  const struct {
    Variant value;
    const char* text;
  } rows[] = {
      {std::int32_t{-2147483647 - 1}, "-2147483648"},
      {true, "True"},
      {0.1 + 0.2, "0.3"},
      {-0.0, "0"},
      {1234567.5, "1234567.5"},
      {123456789012345.0, "123456789012345"},
      {999999999999999.9, "1E+15"},
      {-1234567890123456.0, "-1.23456789012346E+15"},
      {1e100, "1E+100"},
      {0.00001, "1E-05"},
      {1.5e-20, "1.5E-20"},
      {0.1F, "0.1"},
      {16777216.0F, "1.677722E+07"},
      {Currency{125000}, "12.5"},
      {Currency{-1}, "-0.0001"},
      {Currency{INT64_MIN}, "-922337203685477.5808"},
      {Currency{0}, "0"},
      {Numeric{false, 2, Uint128{12300}}, "123"},
      {fraction, "-0.0000000000000000000000000005"},
      {toDateTime({2013, 8, 2, 0, 0, 0}), "2013-08-02"},
      {toDateTime({2013, 8, 2, 19, 5, 9}), "2013-08-02 19:05:09"},
      {Binary{{std::byte{'a'}, std::byte{'b'}}}, "ab"},
  };
  for (const auto& row : rows) EXPECT_EQ(toText(row.value), row.text);
  EXPECT_EQ(errorOf([] { (void)toText(Variant()); }), 94);
}

TEST(VariantTest, WholeNumbersRoundHalvesToEvenAndKeepTheirRange) {
  const struct {
    const char* name;
    Variant value;
    std::int32_t whole;
    int error;
  } rows[] = {
      {"half to even", 2.5, 2, 0},
      {"half up to even", 3.5, 4, 0},
      {"negative half", -2.5, -2, 0},
      {"largest", 2147483647.4, 2147483647, 0},
      {"half beyond the largest", 2147483647.5, 0, 6},
      {"half below the smallest", -2147483648.5, -2147483647 - 1, 0},
      {"not a number", 0.0 / 0.0 * -1, 0, 6},
      {"currency half", Currency{25000}, 2, 0},
      {"currency just above", Currency{25001}, 3, 0},
      {"currency negative", Currency{-35000}, -4, 0},
      {"currency too large", Currency{INT64_MAX}, 0, 6},
      {"numeric half", Numeric{true, 1, Uint128{35}}, -4, 0},
      {"numeric just above a half",
       Numeric{false, 19, Uint128{1} + Uint128{2500000000000000000U} * 10}, 3, 0},
      {"text", " 42 ", 42, 0},
      {"text with fraction", "+2.5", 2, 0},
      {"text with exponent", "1e3", 1000, 0},
      {"word", "abc", 0, 13},
      {"word for infinity", "inf", 0, 13},
      {"empty text", "", 0, 13},
      {"yes", true, -1, 0},
      {"null", Variant(), 0, 94},
      {"binary", Binary{}, 0, 13},
  };
  for (const auto& row : rows) {
    std::int32_t whole = 0;
    EXPECT_EQ(errorOf([&] { whole = toLong(row.value); }), row.error) << row.name;
    EXPECT_EQ(whole, row.whole) << row.name;
  }
  EXPECT_EQ(toInteger(Variant(32767.4)), 32767);
  EXPECT_EQ(errorOf([] { (void)toInteger(Variant(40000.0)); }), 6);
  EXPECT_EQ(toCurrency(Variant(Numeric{true, 5, Uint128{100005}})).units, -10000);
  EXPECT_EQ(toCurrency(Variant(0.1)).units, 1000);
  EXPECT_EQ(errorOf([] { (void)toCurrency(Variant(1e15)); }), 6);
}

TEST(VariantTest, TextsReadAsNumbersOfAKoreanSystem) {
  const struct {
    const char* text;
    double number;
    int error = 0;
  } rows[] = {
      {"1,234", 1234}, {"₩1,234", 1234}, {"(5)", -5},        {"(₩1,234.5)", -1234.5},
      {"&H1F", 31},    {" 7 ", 7},       {"\t7", 7},         {"7-", -7},
      {"1e2", 100},    {"- 5", -5},      {"&HFFFFFFFF", -1}, {"&o17", 15},
      {".5", 0.5},     {"1d2", 0, 13},   {"1 234", 0, 13},   {"1.5%", 0, 13},
      {"１２", 0, 13}, {"True", 0, 13},  {"", 0, 13},        {"(5", 0, 13},
      {"-7-", 0, 13},  {"1.5,0", 0, 13}, {",5", 0, 13},      {"1e", 0, 13},
      {"&H", 0, 13},   {"1e400", 0, 6},  {"1e-400", 0},      {"₩₩5", 0, 13},
  };
  for (const auto& row : rows) {
    double number = 0;
    EXPECT_EQ(errorOf([&] { number = toDouble(Variant(row.text)); }), row.error) << row.text;
    EXPECT_EQ(number, row.number) << row.text;
  }
  EXPECT_EQ(toCurrency(Variant("(₩1,234.56785)")).units, -12345678);  // halves to even
}

TEST(VariantTest, SwitchesReadNumbersAndTheTwoWords) {
  EXPECT_TRUE(toBool(Variant("TRUE")));
  EXPECT_FALSE(toBool(Variant(" false ")));
  EXPECT_TRUE(toBool(Variant("0.5")));
  EXPECT_EQ(errorOf([] { (void)toBool(Variant("yes")); }), 13);
}

TEST(DateTimeTest, SerialsAndCalendarAgreeAtTheirEdges) {
  const struct {
    double serial;
    CivilTime civil;
    int weekday;
  } rows[] = {
      {0, {1899, 12, 30, 0, 0, 0}, 7},       {1.5, {1899, 12, 31, 12, 0, 0}, 1},
      {-1.25, {1899, 12, 29, 6, 0, 0}, 6},   {41488.25, {2013, 8, 2, 6, 0, 0}, 6},
      {36585, {2000, 2, 29, 0, 0, 0}, 3},    {-657434, {100, 1, 1, 0, 0, 0}, 6},
      {2958465, {9999, 12, 31, 0, 0, 0}, 6},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(toCivil({row.serial}), row.civil) << row.serial;
    EXPECT_EQ(toDateTime(row.civil).serial, row.serial);
    EXPECT_EQ(weekday({row.serial}), row.weekday) << row.serial;
  }
  EXPECT_EQ(timeText({41488.9999999}), "00:00:00");
  EXPECT_EQ(dayText({41488.9999999}), "2013-08-03");
  EXPECT_EQ(daySerial(2013, 14, 0), daySerial(2014, 1, 31));
  EXPECT_EQ(daySerial(2013, -1, 1), daySerial(2012, 11, 1));
  EXPECT_EQ(errorOf([] { (void)toCivil({2958466}); }), 6);
  EXPECT_EQ(errorOf([] { (void)toCivil({0.0 / 0.0}); }), 6);
  EXPECT_EQ(errorOf([] { (void)daySerial(99, 1, 1); }), 6);
  EXPECT_EQ(errorOf([] { (void)toDateTime({2013, 2, 29, 0, 0, 0}); }), 5);
  EXPECT_EQ(errorOf([] { (void)toDateTime({2013, 2, 28, 24, 0, 0}); }), 5);
}

TEST(DateTimeTest, TextsReadAsDates) {
  const struct {
    const char* text;
    const char* date;  // nullptr: no date
  } rows[] = {
      {"2013-08-02", "2013-08-02"},
      {"2013/8/2 7:05", "2013-08-02 07:05:00"},
      {"8/2/2013 19:05:09", "2013-08-02 19:05:09"},
      {" 19:05 ", "1899-12-30 19:05:00"},
      {"2013-02-29", nullptr},
      {"2013-08", "2013-08-01"},
      {"2013/8/21 3:30 PM", "2013-08-21 15:30:00"},
      {"13-08-21", "2013-08-21"},
      {"30-1-2", "1930-01-02"},
      {"2013.08.21", "2013-08-21"},
      {"2013. 8. 21.", "2013-08-21"},
      {"8/21/13", "2013-08-21"},
      {"3:30", "1899-12-30 03:30:00"},
      {"2013-08-21 오후 3:30:00", "2013-08-21 15:30:00"},
      {"오전 9:05", "1899-12-30 09:05:00"},
      {"오전 12:05", "1899-12-30 00:05:00"},
      {"12:05 pm", "1899-12-30 12:05:00"},
      {"오전 13:00", nullptr},
      {"2013년 8월 21일", "2013-08-21"},
      {"2013년 8월 21일 수요일 오후 3:30", "2013-08-21 15:30:00"},
      {"8-21", nullptr},  // of which year
      {"3.45", nullptr},
      {"20130821", nullptr},
      {"15", nullptr},
      {"2013-08-21 2013-08-22", nullptr},
      {"오후", nullptr},
      {"2013-08/02", nullptr},
      {"2013-08-02-", nullptr},
      {"2013-08-02 25:00", nullptr},
      {"99999999999-1-1", nullptr},
      {"", nullptr},
  };
  for (const auto& row : rows) {
    const auto date = parseDate(row.text);
    EXPECT_EQ(date ? dateText(*date) : "none", row.date != nullptr ? row.date : "none") << row.text;
  }
  EXPECT_EQ(errorOf([] { (void)toDate(Variant(1e9)); }), 6);
}

}  // namespace
}  // namespace values
