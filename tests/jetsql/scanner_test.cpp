#include "jetsql/syntax/normalized_query.h"

#include <gtest/gtest.h>

#include "jetsql/syntax/date_literal.h"
#include "jetsql/syntax/query_template.h"

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

// A template that took a text for another query would bind its literals to the wrong statement.
TEST(QueryTemplate, AgreesWithScanning) {
  const char* texts[] = {"a = 5 And b",
                         "a = 70 And b",
                         "a = 70000 And b",
                         "a = 5.5 And b",
                         "a = 5e3 And b",
                         "a = .5 And b",
                         "a = 5  And b",
                         "a = 5x And b",
                         "a = &H5 And b",
                         "a = #1/1/13#",
                         "a = #2/3/13#",
                         "a = #1/1/13",
                         "a = #1/99/99#",
                         "a = 'x'",
                         "a = 'x''y'",
                         "a = 'x' 'y'",
                         "a = \"x\"",
                         "a = 'x'\"y\"",
                         "[a].5",
                         "[a]5",
                         "[a]5e3",
                         "WHERE&H5",
                         "WHERE5",
                         "a = 1, 'b', 2",
                         "a = 13, 'c', 7",
                         "a = 1, 'b', 2,",
                         "SELECT 1",
                         "",
                         "x'1'",
                         "x1"};
  for (const char* known : texts) {
    const auto query = normalize(known);
    for (const char* text : texts) {
      const auto literals = QueryTemplate(query).literalsOf(text);
      const auto scanned = normalize(text);
      if (literals) {
        EXPECT_FALSE(scanned.fault);
        EXPECT_EQ(scanned.key, query.key) << known << " and " << text;
        EXPECT_EQ(*literals, scanned.literals) << known << " and " << text;
      }
    }
  }
  EXPECT_EQ(QueryTemplate(normalize(texts[23])).literalsOf(texts[24])->size(), 3U);
}

}  // namespace
}  // namespace jetsql
