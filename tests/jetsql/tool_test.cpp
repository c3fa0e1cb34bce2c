// The jetsql program, run as a user runs it.
#include <fstream>
#include <regex>

#include "jetsql/session_fixture.h"

namespace jetsql {
namespace {

class ToolTest : public SessionFixture {
 protected:
  // Standard output and error, and the exit status in front.
  std::string tool(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{QUENBROOK_JETSQL};
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::string output;
    const int status = support::run(command, &output);
    return std::to_string(status) + " " + output;
  }
};

TEST_F(ToolTest, PrintsRowsAsCsv) {
  EXPECT_EQ(
      tool({path("shop.mdb"),
            "SELECT id, sale, price, day, done, name, ratio AS [a \"b\"], exact, 1E+14 AS big "
            "FROM Items WHERE id = 3 OR id = 41"}),
      "0 \"id\",\"sale\",\"price\",\"day\",\"done\",\"name\",\"a \"\"b\"\"\",\"exact\","
      "\"big\"\n"
      "3,1,-2.25,2013-01-01 12:00:00,-1,\"Menu3\",-59.25,0.03,100000000000000\n"
      "41,,7.25,2013-01-05 12:00:00,0,\"Menu1\",-49.75,0.41,100000000000000\n");
  EXPECT_EQ(tool({path("shop.mdb"), "Nothing"}), "0 \"id\"\n");
}

TEST_F(ToolTest, ListsNames) {
  EXPECT_EQ(tool({path("shop.mdb")}),
            "0 table\tItems\ntable\tPlain\ntable\tMenu\ntable\tNothing\ntable\tTill 1\n"
            "table\tTill 2\nquery\tCheap\n");
}

// Fault: a report that names another way than the one that was taken, or counts other rows.
TEST_F(ToolTest, ExplainsHowAQueryIsRun) {
  const auto explained = [this](const std::string& query) {
    const std::string text = tool({"--explain", path("shop.mdb"), query});
    return std::regex_replace(text, std::regex("[0-9]+[.][0-9] ms"), "T");
  };
  const std::string end = "; T to understand the query, T to plan it, T to run it\n";
  EXPECT_EQ(explained("SELECT id FROM Items WHERE id > 590 ORDER BY name"),
            "0 Items  index PrimaryKey of the file: id > value  1 time, 10 rows (expected 150), T\n"
            "sorts rows for ORDER BY\n10 rows" +
                end);
  EXPECT_EQ(explained("SELECT Count(*) FROM Plain"),
            "0 Plain  whole  1 time, 600 rows (expected 600), T\n1 row" + end);
  EXPECT_EQ(
      explained("SELECT a.id FROM Nothing AS a RIGHT JOIN Plain AS b ON b.id & '' = a.id & '' "
                "WHERE b.id > ALL (SELECT menu FROM Menu)")
          .substr(0, 71),
      "0 Plain    whole  1 time, 600 rows (expected 600), T\n"
      "Menu     whole  1 ");
  const std::string join = explained(
      "SELECT Plain.id FROM Items INNER JOIN Plain ON CStr(Items.id) = CStr(Plain.id) "
      "WHERE Items.id < 4");
  EXPECT_NE(join.find("Plain  rows by their numbers"), std::string::npos) << join;
  EXPECT_NE(join.find("index built in memory, computed from id: 600 rows, T\n3 rows;"),
            std::string::npos)
      << join;
  const std::string timed = tool({"--time", path("shop.mdb"), "Nothing"});
  EXPECT_EQ(std::regex_replace(timed, std::regex("[0-9]+[.][0-9] ms"), "T"),
            "0 \"id\"\n0 rows in T\n");
}

TEST_F(ToolTest, ReportsErrors) {
  const auto fails = [this](const std::vector<std::string>& arguments, const std::string& start) {
    EXPECT_EQ(tool(arguments).substr(0, start.size()), start);
  };
  fails({path("shop.mdb"), "SELECT * FROM Nowhere"}, "1 jetsql: (3078) ");
  fails({path("shop.mdb"), "SELECT nmae FROM Items"}, "1 jetsql: (3061) ");
  fails({path("shop.mdb"), "DELETE FROM Items"}, "1 jetsql: (");
  fails({path("none.mdb")}, "1 jetsql: (53) ");
  fails({}, "2 usage: ");
  fails({"--nonsense", path("shop.mdb")}, "2 usage: ");
  fails({"--explain", path("shop.mdb")}, "2 usage: ");
}

TEST_F(ToolTest, LeavesTheFileAsItIs) {
  const std::string before = support::readFile(path("shop.mdb"));
  (void)tool({path("shop.mdb"), "SELECT * FROM Items"});
  EXPECT_EQ(support::readFile(path("shop.mdb")), before);
  EXPECT_FALSE(std::filesystem::exists(path("shop.ldb")));
}

}  // namespace
}  // namespace jetsql
