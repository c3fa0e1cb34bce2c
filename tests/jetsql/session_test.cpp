#include "jetsql/session.h"

#include "jetsql/session_fixture.h"

namespace jetsql {
namespace {

using values::Variant;

class SessionTest : public SessionFixture {};

TEST_F(SessionTest, ACachedQueryIsNotTakenForAnother) {
  struct Case {
    const char* query;
    const char* expected;
  };
  const Case cases[] = {
      {"SELECT id FROM Items WHERE sale = 7", "14|15"},
      {"SELECT id FROM Items WHERE sale = 8", "16|17"},
      {"SELECT id  FROM Items\r\nWHERE sale=9", "18|19"},
      {"SELECT id FROM Items WHERE sale = 7.5", ""},
      {"SELECT id FROM Items WHERE sale = -7", ""},
      {"SELECT id FROM Items WHERE sale = 99999999999", ""},
      {"SELECT id FROM Items WHERE sale = True", ""},
      {"SELECT id FROM Items WHERE sale = Null", ""},
      {"SELECT id FROM Items WHERE sale = 'x'", "error 3464"},
      {"SELECT id FROM Items WHERE id < 3 AND name = 'MENU1'", "1"},
      {"SELECT id FROM Items WHERE id < 3 AND name = \"메뉴2\"", "2"},
      {"SELECT id FROM Items WHERE id < 3 AND name = 'it''s'", ""},
      {"SELECT TOP 1 id FROM Items ORDER BY id", "1"},
      {"SELECT TOP 2 id FROM Items ORDER BY id", "1|2"},
      {"SELECT 'a' & 1 FROM Menu WHERE menu = 0", "a1"},
      {"SELECT 'b' & 2 FROM Menu WHERE menu = 0", "b2"},
      {"SELECT id FROM Cheap WHERE id < 3", "1|2"},
      {"SELECT id FROM Cheap WHERE id < 2", "1"},
      // A number in the name of a table is no literal.
      {"Till 1", "11"},
      {"Till 2", "22"},
  };
  for (int round = 0; round < 3; ++round) {
    for (const Case& c : cases) EXPECT_EQ(rows(c.query), c.expected) << c.query;
  }
}

TEST_F(SessionTest, MoreQueriesThanTheCacheHolds) {
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 150; ++i) {
      EXPECT_EQ(rows("SELECT id AS a" + std::to_string(i) + " FROM Items WHERE id = 5"), "5");
    }
  }
}

TEST_F(SessionTest, ErrorsInsideAQueryKeepTheirNumber) {
  EXPECT_EQ(rows("SELECT 1 / (id - 5) FROM Items"), "error 11");
  EXPECT_EQ(rows("SELECT CInt(id * 1000) FROM Items"), "error 6");
  EXPECT_EQ(rows("SELECT id FROM Items WHERE CDate('kein Tag') = day"), "error 13");
  EXPECT_EQ(rows("SELECT CLng(sale) FROM Items"), "error 94");
  EXPECT_EQ(rows("SELECT id FROM Items WHERE name Like '[a'"), "error 93");
  EXPECT_EQ(rows("SELECT id FROM Nowhere"), "error 3078");
  // None of them outlives its query.
  EXPECT_EQ(rows("SELECT id FROM Items WHERE id = 5"), "5");
}

TEST_F(SessionTest, AResultThatTakesTooMuchMemoryIsRefused) {
  SessionOptions options;
  options.mostResultBytes = 2600;
  session_ = open(options);
  for (const char* query : {"SELECT id FROM Items WHERE id <= 325",
                            "SELECT id, name & 'x' FROM Items WHERE id <= 80"}) {
    EXPECT_NE(rows(query), "error 3360") << query;
  }
  for (const char* query : {"SELECT id FROM Items WHERE id <= 326",
                            "SELECT String(id, 'x') FROM Items WHERE id <= 80"}) {
    EXPECT_EQ(rows(query), "error 3360") << query;
  }
}

TEST_F(SessionTest, ValuesKeepTheirTypes) {
  session_ = open();
  const auto set = session_->openRecordSet(
      "SELECT TOP 1 *, price * 2 AS twice, day + 1 AS tomorrow, name & '!' AS loud, "
      "exact + exact AS sum, id = 1 AS first, id / 2 AS half FROM Items ORDER BY id");
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"id", "1"},
      {"sale", "0"},
      {"menu", "1"},
      {"price", "-2.75"},
      {"day", "2013-01-01 12:00:00"},
      {"done", "False"},
      {"name", "Menu1"},
      {"ratio", "-59.75"},
      {"exact", "0.01"},
      {"twice", "-5.5"},
      {"tomorrow", "2013-01-02 12:00:00"},
      {"loud", "Menu1!"},
      {"sum", "0.02"},
      {"first", "True"},
      {"half", "0.5"}};
  ASSERT_EQ(set->fields().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(set->fields()[i].name, expected[i].first);
    EXPECT_EQ(toText(set->field(expected[i].first)), expected[i].second) << expected[i].first;
    EXPECT_EQ(set->field(i).type(), set->fields()[i].type) << expected[i].first;
  }
}

TEST_F(SessionTest, ARecordSetIsWalked) {
  session_ = open();
  const auto set = session_->openRecordSet("SELECT id, Name FROM Items WHERE sale = 5 ORDER BY id");
  EXPECT_EQ(set->recordCount(), 2);
  EXPECT_EQ(toLong(set->field("ID")), 10);
  set->moveLast();
  EXPECT_EQ(toLong(set->field("id")), 11);
  set->moveNext();
  EXPECT_TRUE(set->atEnd());
  EXPECT_EQ(errorOf([&] { (void)set->field("id"); }), 3021);
  EXPECT_EQ(errorOf([&] { set->moveNext(); }), 3021);
  set->moveFirst();
  EXPECT_EQ(toText(set->field("name")), "메뉴10");
  EXPECT_EQ(errorOf([&] { (void)set->field("nmae"); }), 3265);
  EXPECT_EQ(errorOf([&] { (void)set->field(std::size_t{2}); }), 3265);
  set->close();
  EXPECT_EQ(errorOf([&] { (void)set->recordCount(); }), 91);
  EXPECT_EQ(errorOf([&] { (void)set->field("id"); }), 91);
}

TEST_F(SessionTest, AnEmptyRecordSet) {
  session_ = open();
  for (const char* source : {"Nothing", "SELECT * FROM Items WHERE id = 0"}) {
    const auto set = session_->openRecordSet(source);
    EXPECT_EQ(set->recordCount(), 0);
    EXPECT_TRUE(set->atEnd());
    EXPECT_EQ(errorOf([&] { set->moveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { set->moveLast(); }), 3021);
    EXPECT_EQ(errorOf([&] { set->moveNext(); }), 3021);
  }
}

TEST_F(SessionTest, ARecordSetOutlivesItsSession) {
  session_ = open();
  const auto set = session_->openRecordSet("Menu");
  session_.reset();
  EXPECT_EQ(set->recordCount(), 3);
  EXPECT_EQ(toText(set->field("title")), "김밥");
}

TEST_F(SessionTest, UpdatesReachTheFile) {
  auto session = openWritable();
  const auto set =
      session->openRecordSet("SELECT id, done, price AS cost FROM Items WHERE id <= 2 ORDER BY id");
  set->updateRows(0, 2, std::vector<jet::FieldValue>{{"DONE", -1}, {"cost", 99.5}});
  for (; !set->atEnd(); set->moveNext()) EXPECT_TRUE(toBool(set->field("done")));
  EXPECT_EQ(rows(*session, "SELECT id, price FROM Items WHERE price = 99.5 ORDER BY id"),
            "1,99.5|2,99.5");
  session.reset();
  EXPECT_EQ(rows("SELECT done, price FROM Items WHERE id < 4 ORDER BY id"),
            "True,99.5|True,99.5|True,-2.25");
}

TEST_F(SessionTest, WhatCannotBeUpdated) {
  const auto session = openWritable();
  const auto refused = [&](Session& by, const std::string& query) {
    const auto set = by.openRecordSet(query);
    return errorOf([&] { update(*set, 0, {{set->fields()[0].name, 1}}); });
  };
  EXPECT_EQ(refused(*session, "SELECT * FROM Items WHERE id = 1"), 0);
  EXPECT_EQ(
      refused(*session, "SELECT Items.* FROM Items INNER JOIN Menu ON Items.menu = Menu.menu"),
      3027);
  EXPECT_EQ(refused(*session, "SELECT Count(*) FROM Items"), 3027);
  EXPECT_EQ(session->openRecordSet("SELECT Count(*) FROM Items")->tableRow(0), nullptr);
  EXPECT_EQ(refused(*session, "SELECT DISTINCT done FROM Items"), 3027);
  EXPECT_EQ(refused(*open(), "SELECT * FROM Items WHERE id = 1"), 3027);

  const auto set = session->openRecordSet("SELECT id, done, price * 2 AS twice FROM Items");
  EXPECT_EQ(errorOf([&] { update(*set, 0, {{"twice", 1}}); }), 3027);
  EXPECT_EQ(errorOf([&] { update(*set, 0, {{"done", true}, {"dnoe", true}}); }), 3265);
  EXPECT_EQ(errorOf([&] { update(*set, 0, {{"done", "maybe"}}); }), 13);
  EXPECT_EQ(errorOf([&] { update(*set, set->recordCount(), {{"done", true}}); }), 3021);
  EXPECT_EQ(rows(*session, "SELECT done FROM Items WHERE id = 1"), "False");
}

TEST_F(SessionTest, NamesAreListed) {
  session_ = open();
  EXPECT_EQ(session_->tableNames(),
            (std::vector<std::string>{"Items", "Plain", "Menu", "Nothing", "Till 1", "Till 2"}));
  EXPECT_EQ(session_->queryNames(), std::vector<std::string>{"Cheap"});
}

TEST_F(SessionTest, TextsOfDomainFunctionsAreNoLiteralsOfACachedQuery) {
  EXPECT_EQ(rows("SELECT DCount('*', 'Items', 'id < 3') AS n"), "2");
  EXPECT_EQ(rows("SELECT DCount('*', 'Items', 'id < 5') AS n"), "4");
}

// As with DAO, so that a day without customers has its other figures.
TEST_F(SessionTest, AnErrorInAColumnIsRaisedWhereItIsRead) {
  const struct {
    const char* query;
    std::vector<const char*> fields;
    const char* values;  // row by row
  } cases[] = {
      {"SELECT id, 1/0 AS x FROM Items WHERE id < 3", {"id", "x"}, "1,error 11|2,error 11"},
      {"SELECT id, 6/(id-2) AS x FROM Items WHERE id < 4", {"id", "x"}, "1,-6|2,error 11|3,6"},
      {"SELECT Sum(price)/Sum(0) AS r, Count(*) AS n FROM Nothing, Items", {"n", "r"}, "0,-"},
      {"SELECT Sum(id)/Sum(0) AS r, Count(*) AS n FROM Items", {"n", "r"}, "600,error 11"},
      {"SELECT * FROM (SELECT Count(*) AS n, Sum(id)/Sum(0) AS r FROM Items) AS q",
       {"n", "r"},
       "600,error 11"},
      {"SELECT n + 1 AS m, Nz(r, 0) AS z FROM (SELECT Count(*) AS n, 1/0 AS r FROM Items) AS q",
       {"m", "z"},
       "601,error 11"},
      {"SELECT a.id, x FROM Items AS a INNER JOIN (SELECT id, 6/(id-2) AS x FROM Items WHERE id < "
       "4 "
       "GROUP BY id) AS b ON CStr(a.id) = CStr(b.id) ORDER BY a.id",
       {"id", "x"},
       "1,-6|2,error 11|3,6"},
      {"SELECT id, CLng(name) AS x FROM Items WHERE id = 7", {"id", "x"}, "7,error 13"},
      {"SELECT IsError(6/(id-2)) AS x FROM Items WHERE id < 4", {"x"}, "False|True|False"},
      // Where the query itself needs the value.
      {"SELECT id FROM Items WHERE 6/(id-2) > 0", {}, "error 11"},
      {"SELECT id FROM Items ORDER BY 6/(id-2)", {}, "error 11"},
      {"SELECT 6/(id-2) AS x FROM Items GROUP BY 6/(id-2)", {}, "error 11"},
      {"SELECT DISTINCT 6/(id-2) AS x FROM Items", {}, "error 11"},
      {"SELECT n FROM (SELECT Count(*) AS n, 1/0 AS r FROM Items) AS q WHERE r > 0",
       {},
       "error 11"},
      {"SELECT id FROM Items WHERE id IN (SELECT 6/(id-2) FROM Items)", {}, "error 11"},
      {"SELECT Sum(6/(id-2)) AS x FROM Items", {}, "error 11"},
  };
  const auto session = open();
  for (const auto& c : cases) {
    const auto read = [&](const RecordSet& rows, const char* field) -> std::string {
      try {
        const values::Variant value = rows.field(field);
        return value.isNull() ? "-" : toText(value);
      } catch (const RuntimeError& problem) {
        return "error " + std::to_string(problem.number());
      }
    };
    std::string text;
    try {
      const auto rows = session->openRecordSet(c.query);
      for (; !rows->atEnd(); rows->moveNext()) {
        if (!text.empty()) text += '|';
        for (std::size_t i = 0; i < c.fields.size(); ++i) {
          text += (i > 0 ? "," : "") + read(*rows, c.fields[i]);
        }
      }
    } catch (const RuntimeError& problem) {
      text = "error " + std::to_string(problem.number());
    }
    EXPECT_EQ(text, c.values) << c.query;
  }
}

}  // namespace
}  // namespace jetsql
