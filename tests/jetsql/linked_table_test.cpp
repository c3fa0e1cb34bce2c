#include "jetsql/sqlite/linked_table.h"

#include "jetsql/session_fixture.h"
#include "jetsql/sqlite/external_source.h"

namespace jetsql {
namespace {

// Three tickets on two days; remembers what it was asked.
class Tickets : public ExternalSource {
 public:
  std::vector<std::string> asked;

  std::vector<ExternalColumn> columns(const std::string&, const std::string&) override {
    return {{"no", values::VariantType::kLong},
            {"rdate", values::VariantType::kDateTime},
            {"name", values::VariantType::kText}};
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

TEST_F(LinkedTableTest, AnotherSystemIsAskedForNoMoreThanIsNeeded) {
  Tickets tickets;
  const auto session = openLinks(&tickets);
  EXPECT_EQ(rows(*session,
                 "SELECT no, rdate, name FROM Tickets WHERE rdate = #2013-08-03# "
                 "AND name Is Null"),
            "2,2013-08-03,-");
  ASSERT_EQ(tickets.asked.size(), 1U);
  EXPECT_EQ(tickets.asked[0], "ODBC;DSN=central TicketTB rdate02013-08-03");
  // A text compares differently elsewhere, so it is compared here.
  EXPECT_EQ(rows(*session, "SELECT no FROM Tickets WHERE name = 'KIM' ORDER BY no"), "1|3");
  EXPECT_EQ(tickets.asked.back(), "ODBC;DSN=central TicketTB");
  tickets.fails = true;
  EXPECT_EQ(rows(*session, "SELECT no FROM Tickets WHERE name = 'KIM' ORDER BY no"), "error 3146");
}

TEST_F(LinkedTableTest, WithoutASourceAnotherSystemIsOutOfReach) {
  EXPECT_EQ(rows(*openLinks(), "SELECT * FROM Tickets"), "error 3151");
}

TEST(ConnectTextTest, Password) {
  EXPECT_EQ(passwordOf(";PWD=secret"), "secret");
  EXPECT_EQ(passwordOf("MS Access;pwd=a=b;DATABASE=x"), "a=b");
  EXPECT_EQ(passwordOf(";DATABASE=x"), "");
}

}  // namespace
}  // namespace jetsql
