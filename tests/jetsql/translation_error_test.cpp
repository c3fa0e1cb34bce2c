#include "jetsql/query_fixture.h"

namespace jetsql {
namespace {

struct Case {
  int number;
  const char* query;
};

class TranslationErrorTest : public QueryFixture {};

TEST_F(TranslationErrorTest, Numbers) {
  addQuery("a", "SELECT * FROM b");
  addQuery("b", "SELECT * FROM (SELECT id FROM a) AS x");
  addQuery("asks", "PARAMETERS [From Day] DateTime; SELECT id FROM Sales WHERE day > [From Day]");
  addQuery("form", "SELECT id FROM Sales WHERE id = [Forms]![Orders]![OrderID]");
  addQuery("q0", "SELECT id FROM Sales");
  for (int i = 1; i < 20; ++i) {
    addQuery("q" + std::to_string(i), "SELECT x.id FROM q" + std::to_string(i - 1) + " AS x, q" +
                                          std::to_string(i - 1) + " AS y");
  }
  refuseQuery("action", 3219);
  const Case cases[] = {
      {3061, "SELECT nothing FROM Sales"},
      {3061, "SELECT id FROM Sales WHERE Sales.nothing = 1"},
      {3061, "SELECT id FROM asks"},
      {3061, "SELECT id FROM form"},
      {3061, "SELECT id FROM Sales ORDER BY nowhere"},
      {3078, "SELECT * FROM Nowhere"},
      {3078, "Nowhere"},
      {3078, "SELEC * FROM Sales"},
      {3079, "SELECT menu FROM Items INNER JOIN Menu ON Items.menu = Menu.menu"},
      {3081, "SELECT 1 FROM Sales, Sales"},
      {3085, "SELECT Frobnicate(id) FROM Sales"},
      {3102, "SELECT * FROM a"},
      {3103, "SELECT y + 1 AS x, x + 1 AS y FROM Sales"},
      {3219, "SELECT * FROM action"},
      {3219, "DELETE FROM Sales"},
      {3219, "SELECT id INTO Other FROM Sales"},
      {3360, "SELECT * FROM q19"},
      {3075, "SELECT id FROM Sales WHERE id = = 1"},
      {3075, "SELECT id FROM Sales WHERE (id = 1"},
      {3075, "SELECT id FROM Sales WHERE note = 'open"},
      {3075, "SELECT id FROM Sales WHERE day = #13/32/2013#"},
      {3075, "SELECT id FROM Sales WHERE day = #2013-02-29#"},
      {3075, "SELECT id FROM Sales WHERE id = 1 kind = 2"},
      {3075, "SELECT Left(note) FROM Sales"},
      {3075, "SELECT id note FROM Sales"},
      {3131, "SELECT id FROM WHERE id = 1"},
      {3131, "SELECT id FROM Sales x y"},
      {3131, "SELECT Sales.id FROM Sales JOIN Items ON Sales.id = Items.s_id"},
      {3131, "SELECT Sales.id FROM Sales FULL JOIN Items ON Sales.id = Items.s_id"},
      {3135, "SELECT id FROM Sales INNER JOIN Items WHERE id = 1"},
      {3138, "SELECT id FROM Sales ORDER id"},
      {3141, "SELECT FROM Sales"},
      {3141, "SELECT id, FROM Sales"},
      {3142, "SELECT id FROM Sales; SELECT 1"},
      {3143, "TRANSFORM Sum(price) FROM Sales"},
      {3464, "SELECT id FROM Sales WHERE id = '1'"},
      {3464, "SELECT id FROM Sales WHERE day = '2013-08-01'"},
      {3464, "SELECT Sum(note) FROM Sales"},
      {3615, "SELECT Sales.id FROM Sales INNER JOIN Menu ON Sales.id = Menu.name"},
      {3122, "SELECT id, Sum(price) FROM Sales"},
      {3122, "SELECT kind + id FROM Sales GROUP BY kind"},
      {3120, "SELECT * FROM Sales GROUP BY id"},
      {3096, "SELECT id FROM Sales WHERE Sum(price) > 1"},
      {3095, "SELECT Sum(Max(price)) FROM Sales"},
      {3093, "SELECT DISTINCT id FROM Sales ORDER BY price"},
      {3091, "SELECT id FROM Sales HAVING id > 1"},
      {3067, "SELECT id WHERE id = 1"},
      {3354, "SELECT (SELECT TOP 1 price FROM Sales ORDER BY price DESC)"},
      {3354, "SELECT id FROM Sales WHERE id = (SELECT s_id FROM Items WHERE s_id = Sales.id)"},
      {3307, "SELECT id FROM Sales UNION SELECT id, day FROM Sales"},
      {3306, "SELECT id FROM Sales WHERE id In (SELECT * FROM Menu)"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(run(c.query), "error " + std::to_string(c.number)) << c.query;
  }
}

TEST_F(TranslationErrorTest, CountsUnknownNamesOnce) {
  try {
    static_cast<void>(
        translate(normalize("PARAMETERS p Long; SELECT a, A, b FROM Sales WHERE p = c"), *this));
    FAIL();
  } catch (const RuntimeError& problem) {
    EXPECT_EQ(problem.number(), 3061);
    EXPECT_EQ(problem.description().rfind("Too few parameters. Expected 4.", 0), 0U)
        << problem.description();
  }
}

// However deep or long, a text is an answer or an error, never an exhausted stack.
TEST_F(TranslationErrorTest, SurvivesExcess) {
  const auto times = [](int n, const std::string& text) {
    std::string all;
    for (int i = 0; i < n; ++i) all += text;
    return all;
  };
  EXPECT_EQ(run("SELECT " + times(50000, "(") + "1" + times(50000, ")")), "error 3360");
  EXPECT_EQ(run("SELECT 1" + times(50000, "+1")), "error 3360");
  EXPECT_EQ(run("SELECT " + times(50001, "-") + "1"), "-1");
  EXPECT_EQ(run("SELECT 1 WHERE " + times(50000, "Not ") + "True"), "error 3067");
  EXPECT_EQ(run(times(50000, "(") + "SELECT 1"), "error 3360");
  EXPECT_EQ(run("SELECT id FROM Sales WHERE id = 1" + times(90, " Or id = 2") + " ORDER BY id"),
            "1|2");
}

// Queries in queries, as deep as the engine takes them. Of the level, # is the number.
TEST_F(TranslationErrorTest, FiftyQueriesInsideEachOther) {
  const struct {
    const char* innermost;
    const char* before;
    const char* after;
    const char* rows;
  } cases[] = {
      {"SELECT id FROM Sales", "SELECT id FROM (", ") AS t", "1|2|3|4|5"},
      {"SELECT id FROM Sales", "SELECT id + 1 AS id FROM (", ") AS t", "51|52|53|54|55"},
      {"SELECT kind FROM Sales", "SELECT Max(kind) AS kind FROM (", ") AS t GROUP BY kind Mod 2",
       "-|2|3"},
      {"SELECT id FROM Sales WHERE id < 3", "SELECT id FROM Sales WHERE id IN (", ")", "1|2"},
      {"SELECT id FROM Sales", "SELECT id FROM (", " UNION SELECT 9 FROM Odd) AS t", "1|2|3|4|5|9"},
      {"SELECT id FROM Sales WHERE id < 3", "SELECT id FROM Sales AS t# WHERE id IN (",
       " AND id = t#.id)", "1|2"},
      {"SELECT Max(price) FROM Sales WHERE kind = 1",
       "SELECT Max(price) FROM Sales AS t# WHERE kind = 1 AND price = (", " AND id = t#.id)", "20"},
  };
  const auto at = [](std::string text, int level) {
    for (auto place = text.find('#'); place != text.npos; place = text.find('#')) {
      text.replace(place, 1, std::to_string(level));
    }
    return text;
  };
  for (const auto& c : cases) {
    std::string query = c.innermost;
    for (int i = 1; i <= 51; ++i) {
      if (i == 51) {
        EXPECT_EQ(run(query), c.rows) << c.before;
      }
      query = at(c.before, i) + query + at(c.after, i);
    }
    EXPECT_EQ(run(query), "error 3360") << c.before;
  }
  addQuery("deep0", "SELECT id, price FROM Sales");
  for (int i = 1; i <= 50; ++i) {
    addQuery("deep" + std::to_string(i),
             "SELECT id, price * 1 AS price FROM deep" + std::to_string(i - 1) + " WHERE id > 1");
  }
  EXPECT_EQ(run("SELECT price FROM deep49 WHERE id = 4"), "5.25");
  EXPECT_EQ(run("SELECT price FROM deep50 WHERE id = 4"), "error 3360");
}

}  // namespace
}  // namespace jetsql
