#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jet/rows/row_layout.h"
#include "platform/code_page.h"
#include "support/child_process.h"

namespace {

using jet::Database;

const std::map<std::string, std::vector<std::string>>& tables() {
  static const std::map<std::string, std::vector<std::string>> kTables = {
      {"data.mdb", {"Selling", "Selling_Item", "Set_Menu1", "Employee_Item", "credit_terminate"}},
      {"config.mdb",
       {"Credit2", "Credit_code", "customer", "customer_selling_sum", "credit", "ticket",
        "free_gift", "booking", "set_basic", "set_basic2", "set_basic3"}},
      {"outgo.mdb", {"outgo_item"}}};
  return kTables;
}

class MakeshopTest : public testing::Test {
 protected:
  // Makes a shop and says what was printed; `status` is the exit status that is expected.
  std::string make(const std::string& shop, std::vector<std::string> options = {}, int status = 0) {
    options.insert(options.begin(), {MAKESHOP, path(shop)});
    std::string output;
    EXPECT_EQ(support::run(options, &output), status) << output;
    return output;
  }

  [[nodiscard]] std::string path(const std::string& name) const {
    return (folder_.path() / name).string();
  }

  static std::string tool(std::vector<std::string> command) {
    command.insert(command.begin(), {"env", "MDB_JET3_CHARSET=CP949"});
    std::string output;
    EXPECT_EQ(support::run(command, &output), 0) << command[2] << ": " << output;
    return output;
  }
  static std::string schema(const std::string& database) {
    return tool({"mdb-schema", database, "postgres", "--indexes", "--no-relations"});
  }
  // Texts hold line ends; the sign that ends a row stands in none.
  static std::string exportOf(const std::string& database, const std::string& table) {
    return tool({"mdb-export", "-R", "\x1e", database, table});
  }

 private:
  support::TemporaryFolder folder_;
};

TEST_F(MakeshopTest, TheSameOptionsMakeTheSameBytes) {
  make("a", {"--days", "4", "--seed", "9"});
  make("b", {"--days", "4", "--seed", "9"});
  make("c", {"--days", "4", "--seed", "10"});
  for (const char* name : {"data.mdb", "config.mdb", "outgo.mdb", "config.ini"}) {
    const std::string file = std::string("/") + name;
    EXPECT_TRUE(support::readFile(path("a" + file)) == support::readFile(path("b" + file))) << name;
  }
  EXPECT_FALSE(support::readFile(path("a/data.mdb")) == support::readFile(path("c/data.mdb")));
}

struct KindCase {
  const char* name;
  std::vector<std::string> options;
  const char* version;  // as mdb-ver tells it
};

class MakeshopKindTest : public MakeshopTest, public testing::WithParamInterface<KindCase> {};

TEST_P(MakeshopKindTest, MdbtoolsReadsEveryTableAsWeDo) {
  const auto& [kind, options, version] = GetParam();
  std::vector<std::string> all = {"--days", "5", "--plain"};
  make("usual", all);
  all.insert(all.end(), options.begin(), options.end());
  make("shop", all);
  for (const auto& [file, names] : tables()) {
    const std::string database = path("shop/" + file);
    EXPECT_EQ(tool({"mdb-ver", database}), version + std::string("\n"));
    EXPECT_EQ(support::readFile(database) == support::readFile(path("usual/" + file)),
              kind == std::string("Jet4"));
    EXPECT_EQ(tool({"mdb-tables", database}), tool({"mdb-tables", path("usual/" + file)}));
    EXPECT_EQ(schema(database), schema(path("usual/" + file)));
    const auto ours = Database::open(database);
    for (const std::string& name : names) {
      auto rows = ours->openTable(name).scan();
      std::ptrdiff_t count = 0;
      while (rows.next()) ++count;
      const std::string exported = exportOf(database, name);
      EXPECT_GT(count, 0) << name;
      EXPECT_EQ(std::count(exported.begin(), exported.end(), '\x1e'), count + 1) << name;
      EXPECT_TRUE(exported == exportOf(path("usual/" + file), name)) << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, MakeshopKindTest,
                         testing::Values(KindCase{"Jet3", {"--format", "jet3"}, "JET3"},
                                         KindCase{"Jet4", {"--format", "jet4"}, "JET4"},
                                         KindCase{"Accdb", {"--format", "accdb"}, "ACE12"},
                                         KindCase{"Accdb14", {"--format", "accdb14"}, "ACE14"},
                                         KindCase{"Utf16", {"--texts", "utf16"}, "JET4"}),
                         [](const auto& tried) { return tried.param.name; });

TEST_F(MakeshopTest, EveryQueryIsListedAndIndexesAreThere) {
  make("shop", {"--days", "2"});
  const std::vector<std::pair<std::string, std::vector<std::string>>> queries = {
      {"data.mdb", {"qryRstCreditTerminate", "qryRstSellingItemSum", "qryRstSelling", "qryRstSum"}},
      {"config.mdb",
       {"qryRstCredit", "qryRstTicket", "qryODBCRstTicket", "qryRstFreeGift", "qryCardItem"}}};
  for (const auto& [file, names] : queries) {
    const std::string listed = tool({"mdb-queries", "-L", path("shop/" + file)});
    for (const std::string& name : names) {
      EXPECT_THAT(listed, testing::HasSubstr(name + " "));
      EXPECT_THAT(tool({"mdb-queries", path("shop/" + file), name}),
                  testing::StartsWith("SELECT "));
    }
  }
  const std::string itemsOfSale = "ON \"selling_item\" (\"s_id\")";
  const std::string itemsOfDay = "ON \"selling_item\" (\"rdate\")";
  const std::string indexed = schema(path("shop/data.mdb"));
  EXPECT_THAT(indexed, testing::HasSubstr(itemsOfSale));
  EXPECT_THAT(indexed, testing::HasSubstr(itemsOfDay));
  EXPECT_THAT(indexed, testing::HasSubstr("ON \"selling\" (\"rdate\")"));
  make("noItemDays", {"--days", "2", "--no-item-day-index"});
  const std::string noItemDays = schema(path("noItemDays/data.mdb"));
  EXPECT_THAT(noItemDays, testing::HasSubstr(itemsOfSale));
  EXPECT_THAT(noItemDays, testing::Not(testing::HasSubstr(itemsOfDay)));
  make("bare", {"--days", "2", "--no-indexes"});
  const std::string bare = schema(path("bare/data.mdb"));
  EXPECT_THAT(bare, testing::Not(testing::HasSubstr("CREATE INDEX \"")));
  EXPECT_THAT(bare, testing::HasSubstr("PRIMARY KEY (\"s_id\")"));
}

TEST_F(MakeshopTest, ItemsAddUpToTheirSale) {
  make("shop", {"--days", "3", "--sales-per-day", "40"});
  const auto database = Database::open(path("shop/data.mdb"));
  jet::Table& sales = database->openTable("Selling");
  jet::Table& items = database->openTable("Selling_Item");
  const auto column = [](jet::Table& table, const char* name) {
    return table.definition().findColumn(name).value();
  };
  std::map<std::int64_t, std::int64_t> sums;
  for (auto rows = items.scan(); rows.next();) {
    if (rows.row().wholeNumber(column(items, "is_cancel")) != 0) continue;
    sums[rows.row().wholeNumber(column(items, "S_ID"))] +=
        rows.row().wholeNumber(column(items, "amount_price"));
  }
  std::size_t shortRows = 0;
  for (auto rows = sales.scan(); rows.next();) {
    const std::int64_t id = rows.row().wholeNumber(column(sales, "S_ID"));
    EXPECT_EQ(rows.row().wholeNumber(column(sales, "Price_Tot")), sums[id]) << id;
    const auto layout = jet::RowLayout::of(sales.file().format(), rows.row().bytes());
    if (layout->columns() < sales.definition().maxColumns) ++shortRows;
  }
  EXPECT_GT(sums.size(), 90U);
  EXPECT_GT(shortRows, 60U);  // from before the marks were columns
}

TEST_F(MakeshopTest, TextsAreHardUnlessPlain) {
  make("hard");
  make("plain", {"--plain"});
  const auto texts = [&](const std::string& shop) {
    return tool({"mdb-export", path(shop + "/data.mdb"), "Selling"}) +
           tool({"mdb-export", path(shop + "/data.mdb"), "Set_Menu1"});
  };
  for (const char* hard : {"Kim's", "C:\\홀", "☃", "주방's"}) {
    EXPECT_THAT(texts("hard"), testing::HasSubstr(hard));
    EXPECT_THAT(texts("plain"), testing::Not(testing::HasSubstr(hard)));
  }
  EXPECT_THAT(CodePage(949).toUtf8(support::readFile(path("plain/config.ini"))),
              testing::HasSubstr("[경영자]\r\n"));
}

TEST_F(MakeshopTest, RefusesWhatItCannotMake) {
  make("shop", {"--days", "1"});
  const std::string before = support::readFile(path("shop/data.mdb"));
  EXPECT_THAT(make("shop", {}, 1), testing::HasSubstr("is there already"));
  EXPECT_EQ(support::readFile(path("shop/data.mdb")), before);
  EXPECT_THAT(make("x", {"--days", "0"}, 1), testing::HasSubstr("--days: '0'"));
  EXPECT_THAT(make("x", {"--format", "jet5"}, 1),
              testing::HasSubstr("'jet5' is none of jet3, jet4, accdb, accdb14"));
  EXPECT_THAT(make("x", {"--from", "gestern"}, 1), testing::HasSubstr("'gestern' is no date"));
  EXPECT_THAT(make("x", {"--seed"}, 1), testing::HasSubstr("lacks its value"));
  EXPECT_THAT(make("x", {"--fast"}, 1), testing::HasSubstr("'--fast' is not understood"));
  EXPECT_FALSE(std::filesystem::exists(path("x")));
}

}  // namespace
