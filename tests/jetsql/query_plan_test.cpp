// What a query reads, and by which keys: conditions that reach the tables, values that are computed
// once.
#include "jetsql/query_fixture.h"

namespace jetsql {
namespace {

class QueryPlanTest : public QueryFixture {};

// A day of a grouped query reads that day's rows, not the whole table.
TEST_F(QueryPlanTest, ConditionsReachTheTables) {
  addQuery("byDay", "SELECT day, kind, Sum(price) AS s FROM Sales GROUP BY day, kind");
  addQuery("overDay", "SELECT day, Sum(s) AS t FROM byDay GROUP BY day HAVING Sum(s) <> 0");
  addQuery("twice", "SELECT day, s FROM byDay UNION SELECT day, t FROM overDay");
  addQuery("joined",
           "SELECT Sales.day, Sales.id, Count(Items.id) AS n FROM Sales LEFT JOIN Items "
           "ON Sales.id = Items.s_id GROUP BY Sales.day, Sales.id");
  addIndex("Sales", "day");
  for (const char* query : {"byDay", "overDay", "twice", "joined"}) {
    EXPECT_EQ(scans(std::string("SELECT * FROM ") + query + " WHERE day = #8/2/2013#", "Sales"), 0)
        << query;
  }
  EXPECT_EQ(scans("SELECT * FROM byDay WHERE kind = 1", "Sales"), 1);
  // Where a condition leaves one group, it leaves none on a day without rows.
  expectAll({
      {"one group", "SELECT t FROM overDay WHERE day = #8/1/2013#", "30.5"},
      {"no group", "SELECT * FROM overDay WHERE day = #8/9/2013#", ""},
      {"groups of a day", "SELECT kind, s FROM byDay WHERE day = #8/2/2013#", "1,20|3,5.25"},
  });
}

// The same expression in another spelling is the same group, DISTINCT order and pushed-down
// predicate: nothing may hang on the text of a query or of the SQL made of it.
TEST_F(QueryPlanTest, SpellingDoesNotMatter) {
  const std::pair<const char*, const char*> same[] = {
      {"note", "NOTE"},
      {"note", "[Sales]![note]"},
      {"Left(note, 1)", "LEFT$([Note], (1))"},
      {"note & 'x' & kind", "(sales.note & \"x\") & [kind]"},
      {"day = #8/2/2013#", "(DAY) = #2013-08-02#"},
      {"void = Yes", "Sales.void = True"},
      {"note Is Null", "IsNull(note)"},
      {"kind * 1e1", "(kind)*10.0"},
      {"IIf(kind = 1, 'a', note)", "iif([kind]=1,'a',(Note))"},
      {"kind In (1, 2) And id > 3", "((KIND In (1,2)) And (id>3))"},
  };
  for (const auto& [one, other] : same) {
    const auto grouped = [this](const std::string& item, const std::string& group) {
      return run("SELECT Count(*), " + item + " FROM Sales GROUP BY " + group +
                 " ORDER BY Count(*), " + item);
    };
    EXPECT_NE(grouped(one, one).rfind("error", 0), 0U) << one;
    EXPECT_EQ(grouped(other, one), grouped(one, one)) << other;
    EXPECT_EQ(grouped(one, other), grouped(one, one)) << other;
    const auto distinct = std::string("SELECT DISTINCT ") + other + " AS x FROM Sales ORDER BY ";
    EXPECT_EQ(run(distinct + one), run(distinct + "1")) << other;
  }

  addQuery("plain", "SELECT day AS d, Sum(price) AS s FROM Sales GROUP BY day");
  addQuery("bracketed", "SELECT [Sales].[DAY] AS d, Sum(price) AS s FROM Sales GROUP BY (day)");
  addQuery("aliased", "SELECT x.day AS e, e AS d, Sum(price) AS s FROM Sales AS x GROUP BY x!Day");
  addQuery("star", "SELECT * FROM plain UNION SELECT * FROM (SELECT * FROM bracketed) AS b");
  addIndex("Sales", "day");
  for (const char* query : {"plain", "bracketed", "aliased", "star"}) {
    for (const char* condition : {"d = #8/2/2013#", "#2013-08-02# = q.[D]", "(D)=(#2-Aug-2013#)",
                                  "s > 0 And (q!d In (#8/2/13#))"}) {
      const std::string text = "SELECT s FROM " + std::string(query) + " AS q WHERE " + condition;
      EXPECT_EQ(run(text), "25.25") << text;
      EXPECT_EQ(scans(text, "Sales"), 0) << text;
    }
  }

  addQuery("tags", "SELECT id, Left(note, 1) & '.' AS tag FROM Sales");
  addQuery("same", "SELECT id, (LEFT$([Sales].[Note], 1) & \".\") AS tag FROM Sales");
  EXPECT_EQ(run("SELECT id FROM tags WHERE tag = 'l.'"), run("SELECT id FROM same WHERE 'L.'=Tag"));
  ASSERT_EQ(keys_.size(), 2U);
  EXPECT_EQ(keys_[0].front().sql, keys_[1].front().sql);
}

// A day put together from parts is computed once for all rows, then looked up.
TEST_F(QueryPlanTest, ComputedColumnsAreFoundByTheirKeys) {
  addQuery("tags", "SELECT id, price, Left(note, 1) & '.' AS tag FROM Sales WHERE price > 0");
  addQuery("sums", "SELECT Year(day) AS y, Sum(price) AS s FROM Sales GROUP BY Year(day)");
  addQuery("outside",
           "SELECT Items.id, Sales.id & 'x' AS tag FROM Items LEFT JOIN Sales ON "
           "Items.s_id = Sales.id");
  addQuery("list",
           "SELECT DISTINCT Left(note, 1) & '.' AS tag FROM Sales ORDER BY Left(note, 1) & '.'");
  expectAll({
      {"condition after condition", "SELECT id FROM tags WHERE tag = 'K.' AND price < 20", "1"},
      {"grouped", "SELECT s FROM sums WHERE y = 2013", "55.75"},
      {"the missing side of a join has no row to be found",
       "SELECT id FROM outside WHERE tag = 'x'", "14"},
      {"not equal", "SELECT id FROM tags WHERE tag <> 'k.' ORDER BY id", "2|3|4"},
      {"shown once, ordered", "SELECT tag FROM list WHERE tag = 'k.'", "K."},
  });
  ASSERT_EQ(keys_.size(), 3U);
  EXPECT_TRUE(keys_[0].front().isText);
  EXPECT_EQ(keys_[0].front().columns, std::vector<std::size_t>{4});
  EXPECT_FALSE(keys_[1].front().isText);
}

struct Join {
  const char* name;
  const char* from;
  const char* rows;  // ids of a and b
  int keys = 1;      // equalities by which rows are looked up
};

// What a computed equality finds is what comparing all pairs would find.
TEST_F(QueryPlanTest, JoinsByComputedValues) {
  const Join joins[] = {
      {"inner", "Sales a INNER JOIN Items b ON CStr(a.id) = CStr(b.s_id)", "1,11|1,12|3,13"},
      {"left", "Sales a LEFT JOIN Items b ON CStr(a.id) = CStr(b.s_id)",
       "1,11|1,12|2,-|3,13|4,-|5,-"},
      {"right", "Sales a RIGHT JOIN Items b ON a.id + 0 = b.s_id + 0", "-,14|1,11|1,12|3,13"},
      {"field on the kept side", "Sales a LEFT JOIN Items b ON a.id = b.s_id * 1",
       "1,11|1,12|2,-|3,13|4,-|5,-"},
      {"condition with literals",
       "Sales a, Items b WHERE Left(a.id & 'x', 1) = Left(b.s_id & 'x', 1)", "1,11|1,12|3,13"},
      {"text ignores case",
       "Sales a INNER JOIN Sales b ON a.note & '!' = UCase(b.note) & '!' "
       "WHERE b.id < 3",
       "1,1|2,2|5,1"},
      {"a field serves", "Sales a INNER JOIN Items b ON a.id = b.s_id AND a.id & '' = b.s_id & ''",
       "1,11|1,12|3,13", 0},
      {"optional side below an inner join",
       "Sales b INNER JOIN (Sales a LEFT JOIN Items i ON a.id = i.s_id) ON b.id & '' = "
       "Nz(i.qty, 5) & ''",
       "1,1|1,2|2,5|3,3|4,5|5,5"},
      {"a grouped query",
       "Sales a LEFT JOIN (SELECT s_id AS id FROM Items GROUP BY s_id) b ON CStr(a.id) = "
       "CStr(b.id)",
       "1,1|2,-|3,3|4,-|5,-"},
      {"two keys",
       "Sales a INNER JOIN Sales b ON Year(a.day) = Year(b.day) AND a.note & '' = UCase(b.note)",
       "1,1|1,5|2,2|4,4|5,1|5,5", 2},
      {"two keys, turned round",
       "Sales a LEFT JOIN Items b ON CStr(a.id) = CStr(b.s_id) AND b.menu & '' = a.kind * 100 & ''",
       "1,11|2,-|3,13|4,-|5,-", 2},
      {"a join as the optional side",
       "Sales a LEFT JOIN (Items b INNER JOIN Menu m ON b.menu = m.menu) ON CStr(a.id) = "
       "CStr(b.s_id)",
       "1,11|1,12|2,-|3,13|4,-|5,-"},
      {"keys of both tables of the optional side",
       "(Items b INNER JOIN Menu m ON b.menu & '' = m.menu & '') RIGHT JOIN Sales a ON "
       "b.s_id & m.name = a.id & '김밥'",
       "1,11|2,-|3,13|4,-|5,-", 2},
      {"a row missing inside of the optional side",
       "Sales a LEFT JOIN (Items b LEFT JOIN Menu m ON b.menu = m.menu) ON a.id & '' = "
       "Nz(m.menu, 500) / 100 & ''",
       "1,11|1,13|2,12|3,-|4,-|5,14"},
      {"a field serves for the optional side",
       "Sales a LEFT JOIN (Items b INNER JOIN Menu m ON b.menu = m.menu) ON a.id = b.s_id AND "
       "a.id & '' = b.s_id & ''",
       "1,11|1,12|2,-|3,13|4,-|5,-", 0},
  };
  for (const Join& join : joins) {
    const auto query = std::string("SELECT a.id, b.id FROM ") + join.from + " ORDER BY a.id, b.id";
    EXPECT_EQ(run(query), join.rows) << join.name;
    const std::string sql = translate(normalize(query), *this).sql;
    int keys = 0;
    for (auto at = sql.find("key"); at != sql.npos; at = sql.find("key", at + 1)) {
      keys += sql.compare(at + 4, 3, " = ") == 0 ? 1 : 0;
    }
    EXPECT_EQ(keys, join.keys) << join.name << ": " << sql;
  }
}

TEST_F(QueryPlanTest, ComparisonsWithAllRowsOrAny) {
  const std::pair<const char*, const char*> cases[] = {
      {"id > ALL (SELECT qty FROM Items)", "4|5"},
      {"id >= ALL (SELECT qty FROM Items)", "3|4|5"},
      {"id < ALL (SELECT qty FROM Items)", ""},
      {"id <= ALL (SELECT qty FROM Items)", "1"},
      {"id = ALL (SELECT qty FROM Items)", ""},
      {"id = ALL (SELECT qty FROM Items WHERE qty = 1)", "1"},
      {"id <> ALL (SELECT qty FROM Items)", "4|5"},
      {"id > ANY (SELECT qty FROM Items)", "2|3|4|5"},
      {"id < SOME (SELECT qty FROM Items)", "1|2"},
      {"id = ANY (SELECT qty FROM Items)", "1|2|3"},
      {"id <> ANY (SELECT qty FROM Items WHERE qty = 1)", "2|3|4|5"},
      {"id <> ANY (SELECT qty FROM Items)", "1|2|3|4|5"},
      // Over no rows.
      {"kind > ALL (SELECT qty FROM Items WHERE qty > 9)", "1|2|3|4|5"},
      {"kind <> ALL (SELECT qty FROM Items WHERE qty > 9)", "1|2|3|4|5"},
      {"Not id > ANY (SELECT qty FROM Items WHERE qty > 9)", "1|2|3|4|5"},
      // Null among the rows.
      {"id > ALL (SELECT kind FROM Sales)", ""},
      {"id <> ALL (SELECT kind FROM Sales)", ""},
      {"id > ANY (SELECT kind FROM Sales)", "2|3|4|5"},
      {"Not id = ANY (SELECT kind FROM Sales)", "4|5"},
      {"Not id > ALL (SELECT kind FROM Sales)", "1|2|3|4|5"},
      // Converted, without regard to case, of the row outside.
      {"price > ALL (SELECT qty FROM Items)", "1|2|3|4"},
      {"note >= ALL (SELECT UCase(note) FROM Sales WHERE id < 3)", "2|4"},
      {"price >= ALL (SELECT price FROM Sales AS s WHERE s.day = Sales.day)", "2|3"},
  };
  for (const auto& [condition, rows] : cases) {
    EXPECT_EQ(run(std::string("SELECT id FROM Sales WHERE ") + condition + " ORDER BY id"), rows)
        << condition;
  }
  EXPECT_EQ(run("SELECT kind FROM Sales GROUP BY kind HAVING Count(*) >= ALL (SELECT Count(*) FROM "
                "Sales GROUP BY kind)"),
            "1");
  EXPECT_EQ(run("SELECT kind FROM Sales GROUP BY kind HAVING Min(price) >= ALL (SELECT price FROM "
                "Sales AS s WHERE s.kind = Sales.kind) ORDER BY kind"),
            "-|2|3");
}

}  // namespace
}  // namespace jetsql
