// The jetsql program, run as a user runs it.
#include <fstream>

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
}

TEST_F(ToolTest, LeavesTheFileAsItIs) {
  const std::string before = support::readFile(path("shop.mdb"));
  (void)tool({path("shop.mdb"), "SELECT * FROM Items"});
  EXPECT_EQ(support::readFile(path("shop.mdb")), before);
  EXPECT_FALSE(std::filesystem::exists(path("shop.ldb")));
}

}  // namespace
}  // namespace jetsql
