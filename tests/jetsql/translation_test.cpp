#include "jetsql/query_fixture.h"

namespace jetsql {
namespace {

class TranslationTest : public QueryFixture {};

TEST_F(TranslationTest, Expressions) {
  expectAll({
      {"minus binds looser than power", "SELECT -2^2, 2^-1, 2^3^2", "-4,0.5,64"},
      {"product before sum", "SELECT 2+3*4, (2+3)*4, 10-4-3", "14,20,3"},
      {"\\ after *, Mod after \\", "SELECT 7\\2*2, 100 Mod 7\\2, 11 Mod 3*2", "1,1,5"},
      {"& after +", "SELECT 1+2 & 3, 'a' & 1+1", "33,a2"},
      {"comparison after &", "SELECT 'ab' = 'a' & 'B', 1 < 2 = True", "-1,-1"},
      {"Not after comparison", "SELECT Not 1 = 2, Not False And False", "-1,0"},
      {"And before Or before Xor", "SELECT True Or True And False, True Xor True Or True", "-1,0"},
      {"Eqv and Imp last", "SELECT False Imp False Eqv True, False And True Imp False", "-1,-1"},
      {"bits of whole numbers", "SELECT 6 And 3, 6 Or 3, 6 Xor 3, Not 5", "2,7,5,-6"},
      {"Null", "SELECT Null + 1, Null & 'a', Null = Null, Not Null, False And Null, 4 Or Null",
       "-,a,-,-,0,4"},
      {"exact amounts", "SELECT price * 3, price + 0.5, price / 2 FROM Sales WHERE id = 4",
       "15.75,5.75,2.625"},
      {"too large amounts", "SELECT CCur('922337203685477') + CCur('1')", "error 6"},
      {"days", "SELECT #8/2/2013# - #2013-07-31#, #8/31/2013# + 1, #8/2/2013 6:00:00 PM#",
       "2,2013-09-01,2013-08-02 18:00:00"},
      {"exponents and points", "SELECT 1.5E3, .5, 2e-1, 3000000000", "1500,0.5,0.2,3000000000"},
      {"doubled quotes", R"(SELECT 'O''Neil', "say ""a""", "it's")", R"(O'Neil,say "a",it's)"},
      {"between", "SELECT 5 Between 1 And 5, 'B' Between 'a' And 'c', 6 Not Between 1 And 5",
       "-1,-1,-1"},
      {"between bounds in either order, or Null",
       "SELECT 5 Between 9 And 1, 'B' Between 'c' And 'a', 6 Not Between 5 And Null", "-1,-1,-"},
      {"in", "SELECT 'B' In ('a','b'), 2 Not In (1,3), 1 In (2, Null)", "-1,-1,-"},
      {"only what is asked for", "SELECT IIf(0 = 1, 1 / 0, 'no'), Choose(2, 1 \\ 0, 7)", "no,7"},
      {"division by zero", "SELECT 1 / 0", "error 11"},
      {"times", "SELECT TimeValue(#2013-08-21 15:30#) <= #15:30#, TimeSerial(15, 30, 0) = #15:30#",
       "-1,-1"},
      {"for ever", "SELECT id FROM Sales WHERE day < #9999-12-31# And id = 1", "1"},
      {"hexadecimal and octal", "SELECT &H10, &hFFFF, &HFFFF& + 1, &H10000, &O17, 'a' & &H1F",
       "16,-1,65536,65536,15,a31"},
      {"& before a name joins", "SELECT note&id&kind FROM Sales WHERE id = 1", "Kim11"},
      {"the next wider type", "SELECT 2000000000 + 2000000000, CLng('4,0') + 1", "4000000000,41"},
  });
}

// Values that & joins to the criteria are those of the row around, whatever the domain's fields are
// called.
TEST_F(TranslationTest, DomainFunctions) {
  expectAll({
      {"of the row",
       "SELECT id, DSum('qty', 'Items', 's_id = ' & id), DCount('*', '[Items]', 's_id=' & [id]) "
       "FROM Sales WHERE id < 4",
       "1,3,2|2,-,0|3,3,1"},
      {"text", "SELECT DLookup('menu', 'Menu', 'name = ''' & name & '''') FROM Menu",
       "100|200|400"},
      {"part of a text",
       "SELECT DCount('*', 'Sales', 'note Like \"' & Left(note, 1) & '*\"') FROM Sales WHERE id = "
       "1",
       "2"},
      {"date", "SELECT DCount('*', 'Sales', 'day = #' & day & '#') FROM Sales WHERE id = 1", "2"},
      {"no criteria", "SELECT DMax('price', 'Sales'), DFirst('id', 'Sales'), DLast('id', 'Sales')",
       "20,1,5"},
      {"constant criteria", "SELECT DAvg('price', 'Sales', 'id <= 2 And void = ' & 'False')",
       "10.5"},
      {"in a condition", "SELECT id FROM Sales WHERE DCount('*', 'Items', 's_id=' & id) > 1", "1"},
      {"no rows", "SELECT DLookup('id', 'Sales', 'id = 77'), DCount('id', 'Sales', 'id = 77')",
       "-,0"},
      {"expression that is a field", "SELECT DLookup(note, 'Sales') FROM Sales", "error 3075"},
      {"criteria that are a field", "SELECT DSum('qty', 'Items', note) FROM Sales", "error 3075"},
      {"part of a date", "SELECT DCount('*', 'Sales', 'day = #1/' & id & '/2013#') FROM Sales",
       "error 3075"},
      {"no such domain", "SELECT DSum('qty', 'Nowhere')", "error 3078"},
      {"no such field", "SELECT DSum('nothing', 'Items')", "error 3061"},
  });
}

TEST_F(TranslationTest, Conditions) {
  expectAll({
      {"case does not count", "SELECT id FROM sales WHERE NOTE = 'kim' ORDER BY id", "1|5"},
      {"nor in lists and patterns",
       "SELECT id FROM Sales WHERE note In ('KIM') And note Like 'k*m' ORDER BY id", "1|5"},
      {"ALike", "SELECT id FROM Sales WHERE note ALike 'k_m' And note Not ALike 'x%'", "1|5"},
      {"ALike, taken as they are",
       "SELECT 'a*b' ALike 'a*%', 'axb' ALike 'a*b', '5' ALike '#', '50%' "
       "ALike '50[%]', 'b' ALike '[!a]'",
       "-1,0,0,-1,-1"},
      {"missing blanks", "SELECT id FROM Sales WHERE(kind<>3)AND(kind<>2 AND void=False)AND id>0",
       "1|3"},
      {"amount and whole number", "SELECT id FROM Sales WHERE price = 20 And 5 < price", "2|3"},
      {"amount and fraction", "SELECT id FROM Sales WHERE price > 5.2 And price < 10.75", "1|4"},
      {"a field alone", "SELECT id FROM Sales WHERE void", "2"},
      {"Null test", "SELECT id FROM Sales WHERE price Is Null Or note Is Not Null", "1|2|4|5"},
      {"bits", "SELECT id FROM Sales WHERE kind And 2 ORDER BY id", "2|4"},
      {"Yes and No", "SELECT id FROM Sales WHERE void = Yes Or (void = No And id = 5)", "2|5"},
      {"On and Off", "SELECT id FROM Sales WHERE void = On Or (void = Off And id = 5)", "2|5"},
      {"day", "SELECT id FROM Sales WHERE day >= #2013-08-02# And day <= #8/2/2013#", "3|4"},
      {"scalar subquery", "SELECT id FROM Sales WHERE price > (SELECT Avg(price) FROM Sales)",
       "2|3"},
      {"subquery of the row",
       "SELECT id, (SELECT Sum(qty) FROM Items WHERE s_id = Sales.id) AS n FROM Sales "
       "WHERE Exists (SELECT * FROM Items WHERE Items.s_id = Sales.id)",
       "1,3|3,3"},
      {"subquery of one row",
       "SELECT id FROM Sales WHERE (SELECT discount FROM Items WHERE Items.id = Sales.id + 10) > 0",
       "2"},
      {"In (SELECT)", "SELECT name FROM Menu WHERE menu Not In (SELECT menu FROM Items)", "떡"},
      {"amounts in numbers", "SELECT id FROM Sales WHERE price In (SELECT kind * 20 FROM Sales)",
       "2|3"},
  });
}

TEST_F(TranslationTest, Names) {
  expectAll({
      {"keywords as fields",
       "SELECT [no], Table, Date, Name, Class, 기념일_년, [two words] FROM Odd",
       "1,2,2013-08-05,n,4,1999,7"},
      {"bare no is the field where there is one", "SELECT no FROM Odd WHERE Odd.no = 1", "1"},
      {"bang", "SELECT Odd!Name FROM Odd ORDER BY Date", "n"},
      {"a bare table", "Menu", "100,김밥|200,라면|400,떡"},
      {"a bracketed one", "[Menu] ;", "100,김밥|200,라면|400,떡"},
      {"backticks", "SELECT `two words`, o.`no` FROM `Odd` AS `o`", "7,1"},
      {"a table in backticks", "`Menu`", "100,김밥|200,라면|400,떡"},
      {"alias in a later expression", "SELECT id * 2 AS d, d + 1 AS e FROM Sales WHERE id = 2",
       "4,5"},
      {"own columns", "SELECT m.* FROM Menu AS m, Odd o WHERE m.menu > o.no + 300", "400,떡"},
  });
  EXPECT_EQ(fields("SELECT id, price * 2, note AS n, void FROM Sales"),
            "id:l Expr1001:c n:x void:y");
  EXPECT_EQ(fields("SELECT * FROM Items INNER JOIN Menu ON Items.menu = Menu.menu"),
            "id:l s_id:l Items.menu:l qty:i discount:s Menu.menu:l name:x");
  EXPECT_EQ(fields("SELECT Sum(price), Avg(id), Count(*), Max(day), Sum(qty), Sum(Sales.id) "
                   "FROM Sales, Items"),
            "error 3079");
  EXPECT_EQ(fields("SELECT Sum(price), Avg(qty), Count(*), Max(day), Sum(qty), Sum(Sales.id), "
                   "First(void) FROM Sales, Items"),
            "Expr1000:c Expr1001:d Expr1002:l Expr1003:t Expr1004:l Expr1005:d Expr1006:y");
  EXPECT_EQ(fields("SELECT IIf(void, 1, price), IIf(void, day, Null), 1 + discount, id / 2, "
                   "day + 1, day - day, id = 1 FROM Sales, Items WHERE Items.menu = Sales.kind"),
            "error 3079");
  EXPECT_EQ(fields("SELECT IIf(void, 1, price), IIf(void, day, Null), kind * 1.5, kind / 2, "
                   "day + 1, day - day, kind = 1, kind + kind, kind & 1 FROM Sales"),
            "Expr1000:c Expr1001:t Expr1002:d Expr1003:d Expr1004:t Expr1005:d Expr1006:y "
            "Expr1007:i Expr1008:x");
}

TEST_F(TranslationTest, Joins) {
  expectAll({
      {"inner",
       "SELECT Items.id, name FROM Items INNER JOIN Menu ON Items.menu = Menu.menu "
       "ORDER BY Items.id",
       "11,김밥|12,라면|13,김밥"},
      {"left",
       "SELECT Items.*, Menu.name as MenuName FROM Items Left Join Menu ON Items.menu = "
       "Menu.menu  WHERE s_id = 9",
       "14,9,300,1,0,-"},
      {"right",
       "SELECT Items.id, name FROM Items RIGHT JOIN Menu ON Items.menu = Menu.menu "
       "ORDER BY Menu.menu, Items.id",
       "11,김밥|13,김밥|12,라면|-,떡"},
      {"nested to the left",
       "SELECT Sales.id, name FROM (Sales INNER JOIN Items ON Sales.id = Items.s_id) LEFT JOIN "
       "Menu ON Items.menu = Menu.menu ORDER BY Items.id",
       "1,김밥|1,라면|3,김밥"},
      {"nested to the right",
       "SELECT Sales.id, Items.id, name FROM Sales LEFT JOIN (Items INNER JOIN Menu ON "
       "Items.menu = Menu.menu) ON Sales.id = Items.s_id ORDER BY Sales.id, Items.id",
       "1,11,김밥|1,12,라면|2,-,-|3,13,김밥|4,-,-|5,-,-"},
      {"right of a join",
       "SELECT Sales.id, Menu.menu FROM (Sales INNER JOIN Items ON Sales.id = Items.s_id) RIGHT "
       "JOIN Menu ON Items.menu = Menu.menu ORDER BY Menu.menu, Sales.id",
       "1,100|3,100|1,200|-,400"},
      {"by a comma", "SELECT a.id FROM Sales a, Sales AS b WHERE a.id = b.id + 4", "5"},
      {"of a subquery",
       "SELECT s.n, name FROM (SELECT menu, Sum(qty) AS n FROM Items GROUP BY menu) AS s INNER "
       "JOIN Menu ON s.menu = Menu.menu ORDER BY s.n DESC",
       "5,김밥|1,라면"},
  });
}

TEST_F(TranslationTest, Order) {
  expectAll({
      {"Null first", "SELECT id FROM Sales ORDER BY price, id", "5|4|1|2|3"},
      {"ordinal and direction", "SELECT kind, id FROM Sales ORDER BY 1 DESC, 2",
       "3,4|2,2|1,1|1,3|-,5"},
      {"alias", "SELECT -id AS m FROM Sales ORDER BY m", "-5|-4|-3|-2|-1"},
      {"expression", "SELECT id FROM Sales ORDER BY id Mod 2, id DESC", "4|2|5|3|1"},
      {"text without case", "SELECT note FROM Sales ORDER BY note, id", "-|Kim|KIM|lee|O'Neil"},
      {"Top", "SELECT TOP 2 id FROM Sales ORDER BY id DESC", "5|4"},
      {"Top keeps ties", "SELECT TOP 1 id FROM Sales ORDER BY price DESC", "2|3"},
      {"Top of values", "SELECT TOP 1 price * 2 FROM Sales ORDER BY price * 2 DESC", "40|40"},
      {"Top of different values", "SELECT DISTINCT TOP 2 price FROM Sales ORDER BY price DESC",
       "20|10.5"},
      {"Top without order", "SELECT TOP 2 id FROM Sales", "1|2"},
      {"Percent rounds up", "SELECT TOP 30 PERCENT id FROM Sales ORDER BY id", "1|2"},
      {"distinct ignores case", "SELECT DISTINCT note FROM Sales WHERE note Like 'k*'", "Kim"},
      {"distinct rows of a table",
       "SELECT DISTINCTROW Sales.id FROM Sales INNER JOIN Items ON Sales.id = Items.s_id", "1|3"},
      {"distinct rows of all tables",
       "SELECT DISTINCTROW Sales.id, Items.qty FROM Sales INNER JOIN Items ON Sales.id = "
       "Items.s_id ORDER BY Items.id",
       "1,2|1,1|3,3"},
  });
}

TEST_F(TranslationTest, Groups) {
  expectAll({
      {"sum by day", "SELECT day, Sum(price) AS s, Count(*) FROM Sales GROUP BY day ORDER BY day",
       "2013-08-01,30.5,2|2013-08-02,25.25,2|2013-08-03,-,1"},
      {"over no rows", "SELECT Sum(price), Count(*), Max(note), Avg(id) FROM Sales WHERE id > 9",
       "-,0,-,-"},
      {"no group", "SELECT kind, Sum(price) FROM Sales WHERE id > 9 GROUP BY kind", ""},
      {"of expressions",
       "SELECT Left(note, 1) & '.' AS n, Count(*) FROM Sales GROUP BY Left(note, 1) & '.' "
       "ORDER BY Count(*) DESC, 1",
       "K.,2|.,1|l.,1|O.,1"},
      {"text groups ignore case", "SELECT Count(*) FROM Sales GROUP BY note HAVING note = 'kim'",
       "2"},
      {"expression of aggregates", "SELECT Sum(price) / Count(price) * 2 FROM Sales", "27.875"},
      {"of a constant", "SELECT 2, Sum(id) FROM Sales GROUP BY 2 ORDER BY True", "2,15"},
      {"having", "SELECT kind FROM Sales GROUP BY kind HAVING Count(*) > 1 And kind > 0", "1"},
      {"first and last", "SELECT First(id), Last(id) FROM Sales GROUP BY day ORDER BY day",
       "1,2|3,4|5,5"},
      {"spread", "SELECT StDevP(id), Var(id), StDev(id) FROM Sales WHERE id < 3",
       "0.5,0.5,0.707106781186548"},
      {"least and most", "SELECT Min(note), Max(void), Min(price), Max(day) FROM Sales",
       "Kim,0,5.25,2013-08-03"},
      {"alias of an aggregate", "SELECT Max(day) AS day FROM Sales GROUP BY kind ORDER BY day",
       "2013-08-01|2013-08-02|2013-08-02|2013-08-03"},
      {"sum of conditions", "SELECT Sum(IIf(void, 0, price)), Sum(id = 1) FROM Sales", "35.75,-1"},
  });
}

TEST_F(TranslationTest, Unions) {
  expectAll({
      {"doubles go, case or not",
       "SELECT note FROM Sales WHERE id < 5 UNION SELECT 'LEE' FROM Odd WHERE no = 2 ORDER BY note",
       "-|Kim|lee|O'Neil"},
      {"all stay",
       "SELECT id FROM Sales WHERE id < 3 UNION ALL SELECT no FROM Odd ORDER BY id DESC", "2|1|1"},
      {"types meet",
       "SELECT price FROM Sales WHERE id = 1 UNION ALL SELECT id FROM Items WHERE id = 11",
       "10.5|11"},
      {"part with its own Top",
       "(SELECT TOP 1 id FROM Sales ORDER BY id DESC) UNION ALL SELECT menu FROM Menu ORDER BY 1",
       "5|100|200|400"},
  });
}

TEST_F(TranslationTest, Crosstabs) {
  const char* transform =
      "TRANSFORM Sum(price) SELECT day, Count(*) AS n FROM Sales GROUP BY day PIVOT kind";
  EXPECT_EQ(fields(transform), "day:t n:l <>:c 1:c 2:c 3:c");
  EXPECT_EQ(run(transform),
            "2013-08-01,2,-,10.5,20,-|2013-08-02,2,-,20,-,5.25|2013-08-03,1,-,-,-,-");
  const char* fixed =
      "TRANSFORM Count(id) AS c SELECT void FROM Sales GROUP BY void PIVOT 'k' & kind In ('k2', "
      "'K1')";
  EXPECT_EQ(fields(fixed), "void:y k2:l K1:l");
  EXPECT_EQ(run(fixed), "-1,1,-|0,-,2");
  addQuery("byKind", transform);
  EXPECT_EQ(run("SELECT [3], n FROM byKind WHERE day = #2013-08-02#"), "5.25,2");
}

TEST_F(TranslationTest, SavedQueries) {
  addQuery("live", "SELECT id, day, price AS amount, note FROM Sales WHERE void = False");
  addQuery("byDay", "SELECT day, Sum(amount) AS total FROM live GROUP BY day ORDER BY day");
  addQuery("both", "SELECT id AS n, day FROM live UNION ALL SELECT no, Date FROM Odd");
  addQuery("mixed",
           "SELECT kind AS x FROM Sales GROUP BY kind UNION "
           "SELECT note FROM Sales GROUP BY note");
  expectAll({
      {"as a table", "byday", "2013-08-01,10.5|2013-08-02,25.25|2013-08-03,-"},
      {"with a condition", "SELECT total FROM byDay WHERE day = #8/2/2013#", "25.25"},
      {"in a join",
       "SELECT live.id, total FROM live INNER JOIN byDay ON live.day = byDay.day WHERE id > 3",
       "4,25.25|5,-"},
      {"a union", "SELECT n FROM both WHERE day > #8/2/2013# ORDER BY n", "1|5"},
      {"a union whose parts have different types", "SELECT Count(*) FROM mixed WHERE x = 'kim'",
       "1"},
      {"beside literals of the text", "SELECT id & 'a' FROM live WHERE id = 3 And note Is Null",
       "3a"},
  });
  EXPECT_EQ(fields("SELECT * FROM byDay"), "day:t total:c");
}

TEST_F(TranslationTest, RowIdentitiesAndNormalizedTexts) {
  const Translation join = translate(normalize("SELECT Items.*, Menu.name as MenuName, qty * 2 "
                                               "FROM Items Left Join Menu ON Items.menu = "
                                               "Menu.menu WHERE s_id = 1"),
                                     *this);
  ASSERT_EQ(join.sources.size(), 2U);
  EXPECT_EQ(join.computedCount, 1U);
  EXPECT_FALSE(join.updatable);
  EXPECT_EQ(join.columns[5].base->source, 1U);
  EXPECT_EQ(join.columns[5].base->column, 1U);
  EXPECT_FALSE(join.columns[6].base);
  EXPECT_EQ(translate(normalize("SELECT id FROM Sales ORDER BY price"), *this).updatable, 0U);
  EXPECT_FALSE(translate(normalize("SELECT DISTINCT id FROM Sales"), *this).updatable);

  EXPECT_EQ(normalize("SELECT  1 FROM t WHERE a='x'").key,
            normalize("SELECT 2 FROM t\nWHERE a=\"yy\"").key);
  EXPECT_NE(normalize("SELECT 1 FROM t").key, normalize("SELECT 1.5 FROM t").key);
  EXPECT_NE(normalize("SELECT [a b] FROM t").key, normalize("SELECT [a  b] FROM t").key);
  EXPECT_FALSE(translate(normalize("SELECT id FROM Sales WHERE id = 1"), *this).exactTextOnly);
  for (const char* shaped : {"SELECT TOP 1 id FROM Sales", "SELECT id FROM Sales ORDER BY 1",
                             "SELECT id Mod 2 FROM Sales GROUP BY id Mod 2"}) {
    EXPECT_TRUE(translate(normalize(shaped), *this).exactTextOnly) << shaped;
  }
}

}  // namespace
}  // namespace jetsql
