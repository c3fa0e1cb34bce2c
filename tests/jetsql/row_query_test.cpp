// Queries that are run without SQLite give what it gives: the same rows, values, order and errors.
#include "jetsql/session_catalogue.h"
#include "jetsql/session_fixture.h"
#include "jetsql/translate/translation.h"

namespace jetsql {
namespace {

class RowQueryTest : public SessionFixture {
 protected:
  bool isLeftToSqlite(const std::string& query) {
    SessionCatalogue catalogue(path("shop.mdb"), {}, clock_);
    Translation translation = translate(normalize(query), catalogue);
    const StatementHandle statement = catalogue.prepare(translation);
    return translation.rowQuery == nullptr;
  }
  // An Or, whose sides may be looked up apart, is always SQLite's. In a session each, as the second
  // lookup by a column finds its rows in another order than the first.
  void expectSame(const std::string& conditions, const std::string& order = "") {
    const std::string query = conditions + order;
    const std::string bySqlite = conditions + " AND (1 = 1 OR 1 = 2)" + order;
    EXPECT_FALSE(isLeftToSqlite(query)) << query;
    EXPECT_TRUE(isLeftToSqlite(bySqlite)) << bySqlite;
    EXPECT_EQ(rows(*open(), query), rows(*open(), bySqlite)) << query;
  }
};

constexpr const char* kQuery =
    "(SELECT id, sale, menu, price, day, done, name, ratio, name & '.' & Left(name, 2) AS code "
    "FROM Plain WHERE id <> 7) AS i";

// The order of a scan, of an index of the file and of one in memory differ: Items has one index for
// nearly every column, Plain none.
TEST_F(RowQueryTest, GivesWhatSqliteGives) {
  const char* froms[] = {"Items AS i",
                         "Plain AS i",
                         kQuery,
                         "Items AS i LEFT JOIN Menu AS m ON i.menu = m.menu",
                         "Plain AS i LEFT JOIN Items AS o ON o.sale = i.id",
                         "Items AS i LEFT JOIN Plain AS o ON o.sale = i.id"};
  const char* conditions[] = {"i.sale = 3",
                              "i.price >= 1 AND i.price < 2",
                              "i.menu = 2 AND i.ratio > 20.5",
                              "i.menu = 5 AND #2013-01-10# <= i.day",
                              "i.done = True AND i.sale > 280",
                              "i.done = False AND Not i.id > 20",
                              "i.name = 'mENU1' AND i.id < 300",
                              "i.name <> 'Menu1' AND i.id < 30",
                              "i.day = #2013-01-10# AND i.price Is Null",
                              "IIf(i.price > 4, i.sale, i.id) - i.menu = 30",
                              "i.id + 2147483600 > 5 AND i.sale < 25",
                              "i.sale = Null"};
  for (const std::string from : froms) {
    for (const std::string condition : conditions) {
      const bool isJoin = from.find("JOIN") != std::string::npos;
      const std::string fields = from.find("code") != std::string::npos ? "*"
                                 : isJoin                               ? "i.*, m.*"
                                          : "*, i.price - 1, i.id + 1";
      const std::string query =
          ("SELECT " + (from.find(" o ") != std::string::npos ? "i.id, o.*" : fields) + " FROM " +
           from + " WHERE " + condition);
      for (const char* order :
           {"", " ORDER BY i.name DESC, i.price", " ORDER BY i.menu", " ORDER BY i.sale, i.day"}) {
        expectSame(query, order);
      }
    }
  }
}

// A text put together from another is found by an index in memory, and its rows are checked.
TEST_F(RowQueryTest, FindsComputedTexts) {
  for (const char* code : {"Menu1.Me", "mENU13.mE", "메뉴2.메뉴", "", ".", "Menu1"}) {
    expectSame(
        "SELECT code, price, day FROM (SELECT price, day, name & '.' & Left(name, 2) AS "
        "code FROM Plain) AS q WHERE code = '" +
        std::string(code) + "' AND price > 0");
  }
  // A column of a query in a FROM has the number of none of the table's.
  expectSame(
      "SELECT b & b FROM (SELECT price, name & name AS b, id FROM Plain) AS q WHERE id < 60");
}

// One plan serves all texts that differ in their literals.
TEST_F(RowQueryTest, TakesItsLiteralsFromTheText) {
  const auto session = open();
  for (const char* text :
       {"name & '.' & Left(name, 2)", "name & ';;' & Left(name, 3)", "name & ' ' & Left(name, -1)",
        "name & '' & Left(name, 0)", "Mid(name, 2, 3) & Left(name & done, 9)",
        "Mid(name, 3, 1) & Left(name & done, 2)", "Mid(name, 0, 1) & Left(name & done, 2)",
        "Mid('메뉴판', 2, 1)", "Mid('뉴', 9, 8)"}) {
    const std::string query = "SELECT id, " + std::string(text) + " FROM Items WHERE id = ";
    for (const char* id : {"2", "53", "4"}) {
      EXPECT_EQ(rows(*session, query + id), rows(*open(), query + id + " AND (1 = 1 OR 1 = 2)"));
    }
  }
}

// Rows of a small joined table are kept from run to run, but not over a change.
TEST_F(RowQueryTest, SeesAChangedJoinedRow) {
  const auto session = openWritable();
  const std::string query =
      "SELECT i.id, m.title FROM Items AS i LEFT JOIN Menu AS m ON i.menu = m.menu WHERE sale = 3";
  EXPECT_EQ(rows(*session, query), "6,-|7,김밥");
  update(*session->openRecordSet("SELECT * FROM Menu WHERE menu = 0"), 0, {{"menu", 6}});
  EXPECT_EQ(rows(*session, query), "6,김밥|7,-");
}

TEST_F(RowQueryTest, LeavesTheRestToSqlite) {
  for (const char* query :
       {"SELECT id FROM Items ORDER BY id + 1", "SELECT TOP 2 id FROM Items",
        "SELECT DISTINCT menu FROM Items",
        "SELECT id FROM (SELECT TOP 3 id FROM Items ORDER BY price) AS q",
        "SELECT id FROM (SELECT id FROM Items ORDER BY price) AS q", "SELECT Sum(id) FROM Items",
        "SELECT id FROM Items WHERE name LIKE 'M*'", "SELECT id FROM Items WHERE exact = 1",
        "SELECT id FROM Items WHERE sale = 3.5", "SELECT id / 2 FROM Items",
        "SELECT i.id FROM Items AS i INNER JOIN Menu AS m ON i.menu = m.menu",
        "SELECT i.id FROM Items AS i LEFT JOIN Menu AS m ON i.menu = m.menu WHERE m.menu = 1",
        "SELECT i.id FROM Items AS i LEFT JOIN Items AS o ON i.sale = o.id",
        "SELECT i.id FROM Items AS i LEFT JOIN Menu AS m ON i.menu < m.menu",
        "SELECT i.id FROM Items AS i, Menu AS m"}) {
    EXPECT_TRUE(isLeftToSqlite(query)) << query;
  }
}

}  // namespace
}  // namespace jetsql
