// Collation, Like, and the order of values in SQLite's encoding.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "jetsql/functions/like.h"
#include "jetsql/functions/text_compare.h"
#include "jetsql/sqlite/numeric_encoding.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

TEST(CollationTest, OrdersWithoutCase) {
  // Ascending; texts in one row are equal.
  const std::vector<std::vector<std::string>> rows = {
      {""},     {" "},  {"9"},      {"a", "A"},      {"a "},     {"aB", "Ab"},
      {"abc"},  {"b"},  {"é", "É"}, {"ς", "σ", "Σ"}, {"я", "Я"}, {"가"},
      {"가나"}, {"각"}, {"나"},     {"ａ", "Ａ"}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j < rows.size(); ++j) {
      for (const std::string& a : rows[i]) {
        for (const std::string& b : rows[j]) {
          EXPECT_EQ(compareText(a, b), i < j ? -1 : i > j ? 1 : 0) << a << " and " << b;
          EXPECT_EQ(hashText(a) == hashText(b), i == j) << a << " and " << b;
        }
      }
    }
  }
}

TEST(LikeTest, Matches) {
  struct Case {
    const char* text;
    const char* pattern;
    bool expected;
  };
  const Case cases[] = {
      {"김밥천국", "김*", true}, {"김밥", "김?", true},    {"김밥천국", "김?", false},
      {"abc", "A?C", true},      {"ab12", "ab##", true},   {"ab1x", "ab##", false},
      {"abcbc", "*bc", true},    {"abcbd", "*bc", false},  {"", "*", true},
      {"", "?", false},          {"a*b", "a[*]b", true},   {"axb", "a[*]b", false},
      {"b", "[a-c]", true},      {"B", "[a-c]", true},     {"d", "[a-c]", false},
      {"d", "[!a-c]", true},     {"나", "[가-다]", true},  {"하", "[가-다]", false},
      {"-", "[a-]", true},       {"!", "[!]", true},       {"a]", "a]", true},
      {"ab", "a[]b", true},      {"aXbXc", "a*b*c", true}, {"mississippi", "*iss*ip*", true},
      {"100%", "100%", true},    {"a_b", "a?b", true},     {"É", "é", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(like(c.text, c.pattern), c.expected) << c.text << " like " << c.pattern;
  }
  for (const char* pattern : {"[a", "x[z-a]"}) {
    EXPECT_THROW((void)like("x", pattern), RuntimeError) << pattern;
  }
}

TEST(LikeTest, ManyStarsTakeNoLongerThanTheirProduct) {
  const std::string text(2000, 'a');
  std::string pattern;
  for (int i = 0; i < 50; ++i) pattern += "*a";
  EXPECT_FALSE(like(text, pattern + "b"));
  EXPECT_TRUE(like(text, pattern));
}

TEST(EncodingTest, NumericBytesAreOrderedAsTheirValues) {
  using values::Numeric;
  const values::Uint128 largest =
      static_cast<values::Uint128>(1000000000000000000) * 10000000000 - 1;
  const Numeric ascending[] = {{true, 0, largest}, {true, 0, 2},  {true, 1, 15},
                               {true, 28, 1},      {false, 0, 0}, {false, 28, 1},
                               {false, 2, 150},    {false, 0, 2}, {false, 0, largest}};
  for (std::size_t i = 0; i + 1 < std::size(ascending); ++i) {
    const auto low = encodeNumeric(ascending[i]);
    const auto high = encodeNumeric(ascending[i + 1]);
    EXPECT_LT(std::memcmp(low.data(), high.data(), low.size()), 0) << i;
    const Numeric back = decodeNumeric(low.data(), low.size());
    EXPECT_EQ(toText(values::Variant(back)), toText(values::Variant(ascending[i])));
  }
  // What is equal is the same bytes, whatever its scale, and zero has no sign.
  EXPECT_EQ(encodeNumeric({false, 3, 1500}), encodeNumeric({false, 1, 15}));
  EXPECT_EQ(encodeNumeric({true, 3, 0}), encodeNumeric({false, 0, 0}));
}

}  // namespace
}  // namespace jetsql
