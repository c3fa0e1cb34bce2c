#include "jetsql/syntax/saved_query.h"

#include <gtest/gtest.h>

namespace jetsql {
namespace {

jet::QueryRow row(int attribute, int flag, const char* expression, const char* name1 = "",
                  const char* name2 = "") {
  const auto value = [](const char* text) {
    return *text == '\0' ? values::Variant() : values::Variant(text);
  };
  return {static_cast<jet::QueryAttribute>(attribute),
          static_cast<std::int16_t>(flag),
          value(expression),
          value(name1),
          value(name2),
          {}};
}

struct Case {
  const char* name;
  std::vector<jet::QueryRow> rows;
  const char* text;
};

TEST(SavedQuery, RebuiltAsItWasWritten) {
  const Case cases[] = {
      {"grouped",
       {row(0, 0, ""), row(1, 1, ""), row(3, 0, ""), row(5, 0, "", "Sales"), row(6, 0, "Sales.day"),
        row(6, 0, "Sum(Sales.price)", "prices"), row(8, 0, "((Sales.void)=False)"),
        row(9, 0, "Sales.day"), row(10, 0, "Sum(Sales.price)>0"), row(11, 0, "Sales.day", "D"),
        row(255, 0, "")},
       "SELECT Sales.day, Sum(Sales.price) AS [prices] FROM [Sales] WHERE ((Sales.void)=False) "
       "GROUP BY Sales.day HAVING Sum(Sales.price)>0 ORDER BY Sales.day DESC"},
      {"top, all columns, alias",
       {row(1, 1, ""), row(3, 1 | 8 | 16 | 32, "", "10"), row(5, 0, "", "Sales", "s")},
       "SELECT DISTINCTROW TOP 10 PERCENT * FROM [Sales] AS [s]"},
      {"joins of the same pair",
       {row(1, 1, ""), row(3, 2, ""), row(5, 0, "", "a"), row(5, 0, "", "b"), row(5, 0, "", "c"),
        row(5, 0, "", "d"), row(6, 0, "a.x"), row(7, 2, "a.i = c.i", "a", "c"),
        row(7, 1, "c.i = b.i", "c", "b"), row(7, 1, "c.j = b.j", "c", "b")},
       "SELECT DISTINCT a.x FROM ([a] LEFT JOIN [c] ON (a.i = c.i)) INNER JOIN [b] ON (c.i = b.i) "
       "AND (c.j = b.j), [d]"},
      {"another database",
       {row(1, 1, ""), row(4, 0, ";PWD=x", "C:\\It's.mdb"), row(5, 0, "", "a"), row(6, 0, "x"),
        row(8, 0, "y")},
       "SELECT x FROM [a] IN 'C:\\It''s.mdb' [;PWD=x] WHERE y"},
      {"parameters",
       {row(1, 1, ""), row(2, 8, "", "From Day"), row(5, 0, "", "a"), row(6, 0, "x")},
       "PARAMETERS [From Day] Value; SELECT x FROM [a]"},
      {"union",
       {row(1, 9, ""), row(3, 3, ""), row(5, 0, "SELECT x FROM a", "", "X7YZ_____1"),
        row(5, 0, "SELECT y FROM b", "", "X7YZ_____2"), row(11, 0, "x")},
       "SELECT x FROM a UNION SELECT y FROM b ORDER BY x"},
      {"crosstab",
       {row(1, 6, ""), row(5, 0, "", "a"), row(6, 0, "Sum(v)", "s"), row(6, 2, "r"),
        row(6, 1, "k In (1,2)", "p"), row(9, 2, "r"), row(9, 1, "k")},
       "TRANSFORM Sum(v) AS [s] SELECT r FROM [a] GROUP BY r PIVOT k In (1,2)"},
  };
  for (const Case& c : cases) {
    const SavedQuery query = rebuildQuery(c.name, c.rows);
    EXPECT_EQ(query.text, c.text) << c.name;
    EXPECT_EQ(query.refusal, 0) << c.name;
  }
}

TEST(SavedQuery, RefusedByNumber) {
  for (const int kind : {2, 3, 4, 5, 7, 8}) {
    EXPECT_EQ(rebuildQuery("q", std::vector{row(1, kind, "DROP TABLE t")}).refusal, 3219) << kind;
  }
  for (const int kind : {0, 10, -1}) {
    EXPECT_EQ(rebuildQuery("q", std::vector{row(1, kind, "")}).refusal, 3129) << kind;
  }
  EXPECT_EQ(rebuildQuery("q", {}).refusal, 3129);
  EXPECT_EQ(rebuildQuery("q", std::vector{row(1, 9, "")}).refusal, 3129);
}

}  // namespace
}  // namespace jetsql
