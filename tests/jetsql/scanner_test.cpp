#include "jetsql/syntax/normalized_query.h"

#include <gtest/gtest.h>

#include "jetsql/syntax/date_literal.h"

namespace jetsql {
namespace {

TEST(DateLiteral, FormsThatAccessWrites) {
  struct Case {
    const char* literal;
    const char* date;  // empty: none
  };
  const Case cases[] = {
      {"8/2/2013", "2013-08-02"},
      {"08/02/13", "2013-08-02"},
      {"1/1/95", "1995-01-01"},
      {"2/3/29", "2029-02-03"},
      {"2013-08-02", "2013-08-02"},
      {"2013/8/2", "2013-08-02"},
      {"25/12/2013", "2013-12-25"},
      {"2-Aug-2013", "2013-08-02"},
      {"August 2, 2013", "2013-08-02"},
      {"8/2/2013 2:30:15 PM", "2013-08-02 14:30:15"},
      {"2013-08-02 00:05:00", "2013-08-02 00:05:00"},
      {"8/2/2013 12:00:00 AM", "2013-08-02"},
      {"2/29/2012", "2012-02-29"},
      {"9999-12-31", "9999-12-31"},
      {"99999-12-31", ""},
      {"2/29/2013", ""},
      {"13/13/2013", ""},
      {"8/2/2013 25:00", ""},
      {"8/2/2013 14:00 PM", ""},
      {"", ""},
      {"8/2", ""},
      {"x", ""},
      {"1/2/3/4", ""},
      {":", ""},
      {"pm", ""},
      {"99999999/1/1", ""},
  };
  for (const Case& c : cases) {
    const auto date = parseDateLiteral(c.literal);
    EXPECT_EQ(date ? values::dateText(*date) : "", c.date) << c.literal;
  }
  const auto time = parseDateLiteral("14:30");
  ASSERT_TRUE(time);
  EXPECT_EQ(values::timeText(*time), "14:30:00");
}

TEST(Scanner, LiteralTypes) {
  const auto query = normalize("1 32768 2147483648 1.0 1e2 'a' #1/1/2000# t.5x");
  const values::VariantType types[] = {values::VariantType::kInteger, values::VariantType::kLong,
                                       values::VariantType::kDouble,  values::VariantType::kDouble,
                                       values::VariantType::kDouble,  values::VariantType::kText,
                                       values::VariantType::kDateTime};
  for (std::size_t i = 0; i < std::size(types); ++i) {
    EXPECT_EQ(query.literals[i].type(), types[i]) << i;
    EXPECT_EQ(query.tokens[i].literal, i);
  }
  EXPECT_TRUE(isWord(query.tokens[7], "T"));
  EXPECT_TRUE(isSymbol(query.tokens[8], "."));
}

}  // namespace
}  // namespace jetsql
