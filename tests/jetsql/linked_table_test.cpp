#include "jetsql/sqlite/linked_table.h"

#include "jetsql/session_fixture.h"
#include "jetsql/sqlite/external_source.h"
#include "jetsql/syntax/database_reference.h"

namespace jetsql {
namespace {

// Three tickets on two days; remembers what it was asked.
class Tickets : public ExternalSource {
 public:
  std::vector<std::string> asked;

  std::vector<ExternalColumn> columns(const std::string&, const std::string&) override {
    return {{"no", values::VariantType::kLong},
            {"rdate", values::VariantType::kDateTime},
            {"name", values::VariantType::kText},
            {"paid", values::VariantType::kYesNo}};
  }

  std::unique_ptr<ExternalRows> open(const std::string& connect, const std::string& table,
                                     const std::vector<ExternalCondition>& conditions) override {
    std::string call = connect + " " + table;
    for (const auto& condition : conditions) {
      call += " " + condition.column + std::to_string(static_cast<int>(condition.comparison)) +
              toText(condition.value);
    }
    asked.push_back(call);
    if (fails) throw RuntimeError(3146, "ODBC--call failed.");
    return std::make_unique<Rows>();
  }

  bool fails = false;

 private:
  class Rows : public ExternalRows {
   public:
    bool next() override { return ++row_ <= 3; }
    values::Variant value(std::size_t column) override {
      if (column == 0) return static_cast<double>(row_);  // not of the column's type
      if (column == 1) return values::DateTime{41488.0 + row_ / 2};
      if (column == 3) return row_ != 2;
      return row_ == 2 ? values::Variant() : values::Variant("Kim");
    }

   private:
    int row_ = 0;
  };
};

class LinkedTableTest : public SessionFixture {
 protected:
  LinkedTableTest() {
    jetcreate::FileBuilder builder(path("links.mdb"));
    builder.addTable("Own", {{.name = "id"}}).add({std::int32_t{3}});
    builder.addLink(
        {.name = "Meals", .foreignName = "Menu", .database = "C:\\POS\\Data\\SHOP.MDB"});
    builder.addLink({.name = "Missing", .foreignName = "Menu", .database = "C:\\POS\\gone.mdb"});
    builder.addLink(
        {.name = "NoSuchTable", .foreignName = "Nowhere", .database = "C:\\POS\\shop.mdb"});
    builder.addLink({.name = "Tickets", .foreignName = "TicketTB", .connect = "ODBC;DSN=central"});
    builder.finish();
    jetcreate::FileBuilder chain(path("chain.mdb"));
    chain.addLink({.name = "Twice", .foreignName = "Meals", .database = "C:\\POS\\links.mdb"});
    chain.addLink({.name = "Tickets", .foreignName = "Tickets", .database = "links.mdb"});
    chain.addLink({.name = "There", .foreignName = "Back", .database = "chain.mdb"});
    chain.addLink({.name = "Back", .foreignName = "There", .database = "chain.mdb"});
    chain.addQuery("Own", {.tables = {{"Twice"}}, .columns = {{"Twice.title"}}});
    chain.finish();
  }

  [[nodiscard]] std::shared_ptr<Session> openLinks(ExternalSource* source = nullptr) const {
    SessionOptions options;
    options.external = source;
    return Session::open(path("links.mdb"), options, clock_);
  }
};

TEST_F(LinkedTableTest, AnotherJetFileIsFoundBesideThisOne) {
  const auto session = openLinks();
  EXPECT_EQ(rows(*session, "SELECT title FROM Meals WHERE menu = 1"), "라면");
  EXPECT_EQ(rows(*session, "SELECT id, title FROM Own LEFT JOIN Meals ON Own.id = Meals.menu + 1"),
            "3,찌개");
  EXPECT_EQ(rows(*session, "SELECT * FROM Missing"), "error 3024");
  EXPECT_EQ(rows(*session, "SELECT * FROM NoSuchTable"), "error 3011");
  EXPECT_EQ(rows(*session, "SELECT * FROM Own"), "3");
}

TEST_F(LinkedTableTest, LinksLeadThroughLinks) {
  Tickets tickets;
  const SessionOptions options{.external = &tickets};
  const auto session = Session::open(path("chain.mdb"), options, clock_);
  EXPECT_EQ(rows(*session, "SELECT title FROM Twice WHERE menu = 2"), "찌개");
  EXPECT_EQ(rows(*session, "SELECT Count(*) FROM Tickets"), "3");
  EXPECT_EQ(rows(*session, "SELECT * FROM There"), "error 3102");
}

TEST_F(LinkedTableTest, QueriesNameOtherDatabases) {
  const std::pair<const char*, const char*> cases[] = {
      {"Menu IN 'C:\\POS\\shop.mdb' WHERE menu = 1", "라면"},
      {"Menu IN \"shop\" WHERE menu = 1", "라면"},
      {"Menu IN '' [;DATABASE=C:\\POS\\shop.mdb;PWD=x] WHERE menu = 1", "라면"},
      {"Menu IN '' 'MS Access;DATABASE=shop.mdb' WHERE menu = 1", "라면"},
      {"Menu IN 'shop.mdb' ';PWD=x' WHERE menu = 1", "라면"},
      {"[C:\\POS\\shop.mdb].Menu WHERE menu = 1", "라면"},
      {"[;DATABASE=shop.mdb].[Menu] AS m WHERE m.menu = 1", "라면"},
      {"Own INNER JOIN `shop.mdb`.Menu ON Own.id = Menu.menu + 1", "찌개"},
      {"Items INNER JOIN Menu ON Items.menu = Menu.menu IN 'shop.mdb' WHERE id = 8", "라면"},
      // A saved query reads the file that it is from, whatever is called alike here.
      {"Own IN 'chain.mdb'", "김밥|라면|찌개"},
      {"(SELECT title FROM Menu IN 'shop.mdb') AS q, Own WHERE Own.id = 3", "김밥|라면|찌개"},
      {"Menu", "error 3078"},
      {"Nowhere IN 'shop.mdb'", "error 3078"},
      {"Menu IN 'gone.mdb'", "error 3024"},
      {"Menu IN '' [dBASE IV;DATABASE=C:\\]", "error 3170"},
      {"[ODBC;DSN=central].TicketTB", "error 3151"},
      {"Menu IN 5", "error 3131"},
      {"Menu IN", "error 3131"},
  };
  const auto session = openLinks();
  for (const auto& [from, expected] : cases) {
    EXPECT_EQ(rows(*session, std::string("SELECT title FROM ") + from), expected) << from;
  }
  EXPECT_EQ(rows(*session, "SELECT Count(*) FROM Own, Cheap IN 'shop.mdb'"), "error 3078");
  Tickets tickets;
  EXPECT_EQ(rows(*openLinks(&tickets), "SELECT no FROM [ODBC;DSN=x].T WHERE no = 2"), "2");
  EXPECT_EQ(tickets.asked.back(), "ODBC;DSN=x T no02");
}

TEST_F(LinkedTableTest, AnotherSystemIsAskedForNoMoreThanIsNeeded) {
  Tickets tickets;
  const auto session = openLinks(&tickets);
  EXPECT_EQ(rows(*session,
                 "SELECT no, rdate, name FROM Tickets WHERE rdate = #2013-08-03# "
                 "AND name Is Null"),
            "2,2013-08-03,-");
  ASSERT_EQ(tickets.asked.size(), 1U);
  EXPECT_EQ(tickets.asked[0], "ODBC;DSN=central TicketTB rdate02013-08-03");
  // What the source sends is compared again; the order of texts is not its business.
  EXPECT_EQ(rows(*session, "SELECT no FROM Tickets WHERE name = 'KIM' ORDER BY no"), "1|3");
  EXPECT_EQ(tickets.asked.back(), "ODBC;DSN=central TicketTB name0KIM");
  EXPECT_EQ(rows(*session, "SELECT no FROM Tickets WHERE name > 'a' AND paid = True"), "1|3");
  EXPECT_EQ(tickets.asked.back(), "ODBC;DSN=central TicketTB paid0True");
  tickets.fails = true;
  EXPECT_EQ(rows(*session, "SELECT no FROM Tickets WHERE name = 'KIM' ORDER BY no"), "error 3146");
}

TEST_F(LinkedTableTest, WithoutASourceAnotherSystemIsOutOfReach) {
  EXPECT_EQ(rows(*openLinks(), "SELECT * FROM Tickets"), "error 3151");
}

TEST(ConnectTextTest, Password) {
  EXPECT_EQ(connectValue(";PWD=secret", "PWD"), "secret");
  EXPECT_EQ(connectValue("MS Access;pwd=a=b;DATABASE=x", "PWD"), "a=b");
  EXPECT_EQ(connectValue(";DATABASE=x", "PWD"), "");
}

}  // namespace
}  // namespace jetsql
