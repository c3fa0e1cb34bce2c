// Grouped queries that are computed without SQLite's grouping give what that gives: the same rows,
// values, order and errors.
#include "jetsql/session_catalogue.h"
#include "jetsql/session_fixture.h"
#include "jetsql/translate/translation.h"

namespace jetsql {
namespace {

class HashAggregateTest : public SessionFixture {
 protected:
  // Whether the query, where it stands alone in a FROM, is left to SQLite.
  bool isLeftToSqlite(const std::string& query) {
    SessionCatalogue catalogue(path("shop.mdb"), {}, clock_);
    return translate(normalize(inside(query)), catalogue).sql.find("GROUP BY") != std::string::npos;
  }
  static std::string inside(const std::string& query) {
    return "SELECT * FROM (" + query + ") AS q";
  }
  // Alone, a query is always SQLite's.
  void expectSame(const std::string& query) {
    EXPECT_FALSE(isLeftToSqlite(query)) << query;
    const std::string expected = rows(query);
    EXPECT_EQ(rows(inside(query)), expected) << query;
    EXPECT_NE(expected, "") << query;
  }
};

constexpr const char* kSums =
    "Count(*), Count(name), Count(price), Sum(price), Sum(sale), Sum(i.menu), Sum(id + i.menu), "
    "Sum(IIf(done, 0, price)), Sum(price - IIf(IsNull(price), 0, price) - i.menu), "
    "Sum(IIf(price > 1 And Not (id < 50 Or done), 1, 0)), Sum(IIf(sale Is Null, Null, id))";

TEST_F(HashAggregateTest, GivesWhatSqliteGives) {
  const char* froms[] = {"Items AS i", "Plain AS i",
                         "Items AS i LEFT JOIN Menu AS m ON i.menu = m.menu",
                         "Plain AS i INNER JOIN Menu AS m ON m.menu = i.menu",
                         "(SELECT * FROM Items WHERE id <> 7) AS i"};
  const char* conditions[] = {"", " WHERE done = False", " WHERE day = #2013-01-10#",
                              " WHERE i.menu = 2 AND day >= #2013-01-10# AND price <> 1",
                              " WHERE Not (sale > 20) Or price Is Null"};
  const char* groups[] = {"i.menu", "name", "sale, done", "name, price", "i.menu + id"};
  for (const std::string from : froms) {
    for (const std::string condition : conditions) {
      for (const std::string group : groups) {
        expectSame("SELECT " + std::string(kSums) + ", " + group + " FROM " + from + condition +
                   " GROUP BY " + group);
      }
    }
  }
  for (const std::string join : {"LEFT", "INNER"}) {
    expectSame("SELECT m.title, Count(m.menu), Sum(price) FROM Items AS i " + join +
               " JOIN Menu AS m ON i.menu = m.menu WHERE m.menu Is Null Or i.id > m.menu "
               "GROUP BY m.title");
    // The rows of one sale by an index of the file, or of memory.
    for (const std::string many : {"Items", "Plain"}) {
      expectSame("SELECT a.id, Count(b.id), Sum(b.price) FROM Plain AS a " + join + " JOIN " +
                 many + " AS b ON a.id = b.sale WHERE a.id < 40 GROUP BY a.id");
    }
  }
}

// One prepared query serves every day; a day without rows has no group, and grouping goes on above.
TEST_F(HashAggregateTest, TakesItsParametersFromTheStatement) {
  const auto session = open();
  for (int i = 0; i < 40; ++i) {
    const std::string day = values::dayText(values::DateTime{41270.0 + 2 * i});
    const std::string days =
        "SELECT day, sale, Sum(price) AS s, Count(*) AS n FROM Items GROUP BY day, sale";
    const std::string found =
        rows(*session, "SELECT s, n FROM (" + days + ") AS q WHERE day = #" + day + "#");
    EXPECT_EQ(found, rows("SELECT Sum(price), Count(*) FROM Items WHERE day = #" + day +
                          "# GROUP BY sale"));
    EXPECT_EQ(rows(*session, "SELECT Sum(s) FROM (" + days + ") AS q WHERE day = #" + day + "#"),
              rows("SELECT Sum(price) FROM Items WHERE day = #" + day + "#"));
  }
}

// Groups of groups: the conditions of both, and their parameters.
TEST_F(HashAggregateTest, GroupsTheGroupsOfAQuery) {
  const auto groups = [](const std::string& keys) {
    return "(SELECT " + keys +
           ", Sum(price) AS s, Count(name) AS n FROM Items AS i LEFT JOIN Menu "
           "AS m ON i.menu = m.menu WHERE id <> 7 GROUP BY " +
           keys + ") AS g";
  };
  for (const std::string condition : {"", " WHERE n >= 1 AND s <> 3"}) {
    expectSame("SELECT menu, Sum(s), Sum(n), Count(s), Count(*) FROM " +
               groups("sale, done, i.menu") + condition + " GROUP BY menu");
  }
  const std::string query = "SELECT day, Sum(s), Sum(n), Count(*) FROM " + groups("day, sale") +
                            " WHERE n < 4 GROUP BY day";
  std::string found;
  for (const std::string day : {"#1/2/2013#", "#1/10/2013#", "#8/2/1999#"}) {
    const std::string sums = rows(inside(query) + " WHERE day = " + day);
    EXPECT_EQ(sums, rows(query + " HAVING day = " + day));
    found += sums;
  }
  EXPECT_NE(found, "");
  EXPECT_TRUE(isLeftToSqlite(
      "SELECT name, Sum(n) FROM (SELECT name, Count(*) AS n FROM Items GROUP BY name) AS g "
      "GROUP BY name"));
}

// A number beyond its type is SQLite's to go on with, and so is what no whole number is.
TEST_F(HashAggregateTest, LeavesTheRestToSqlite) {
  for (const char* sum : {"Sum(id + 2147483600)", "Sum(i.menu + 32767)"}) {
    expectSame("SELECT done, " + std::string(sum) + " FROM Items AS i GROUP BY done");
  }
  for (const char* query :
       {"SELECT menu, Sum(ratio) FROM Items GROUP BY menu",
        "SELECT ratio, Count(*) FROM Items GROUP BY ratio",
        "SELECT menu, Sum(price / 2) FROM Items GROUP BY menu",
        "SELECT menu, Max(id) FROM Items GROUP BY menu",
        "SELECT menu, Sum(id) FROM Items GROUP BY menu HAVING Sum(id) > 5",
        "SELECT TOP 2 menu, Sum(id) FROM Items GROUP BY menu",
        "SELECT menu, Sum(id) FROM Items GROUP BY menu ORDER BY Sum(id)",
        "SELECT id, Count(*) FROM Items LEFT JOIN Menu b ON id < b.menu GROUP BY id"}) {
    EXPECT_TRUE(isLeftToSqlite(query)) << query;
  }
}

// Another user's change shows in the next run: nothing is kept.
TEST_F(HashAggregateTest, SeesWhatWasWritten) {
  const auto session = openWritable();
  const std::string sums =
      "SELECT s FROM (SELECT menu, Sum(id) AS s FROM Items GROUP BY menu) AS q";
  const std::string before = rows(*session, sums);
  const auto set = session->openRecordSet("SELECT * FROM Items WHERE menu = 3");
  for (std::size_t i = 0; i < 2; ++i) update(*set, i, {{"menu", std::int16_t{4}}});
  EXPECT_NE(rows(*session, sums), before);
  EXPECT_EQ(rows(*session, sums), rows(*open(), "SELECT Sum(id) FROM Items GROUP BY menu"));
}

}  // namespace
}  // namespace jetsql
