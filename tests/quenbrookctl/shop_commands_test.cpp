// `quenbrookctl status`, `settlement` and `finish` on sample shops with the faults that shops have.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <sstream>

#include "platform/code_page.h"
#include "support/child_process.h"
#include "support/head_office.h"

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

// "2026/11/20"
std::string daysAgo(int days) {
  std::string day;
  EXPECT_EQ(support::run({"date", "-d", std::to_string(days) + " days ago", "+%Y/%m/%d"}, &day), 0);
  return day.substr(0, 10);
}

// Three days of sales up to yesterday.
class CommandsTest : public testing::Test {
 protected:
  void SetUp() override {
    run({MAKESHOP, home(), "--from", daysAgo(3), "--days", "3", "--sales-per-day", "5"});
    fs::copy(QUENBROOK, home());
  }

  [[nodiscard]] std::string home() const { return folder_.path() / "shop"; }
  [[nodiscard]] fs::path file(const std::string& name) const { return fs::path(home()) / name; }

  int run(const std::vector<std::string>& command) { return support::run(command, &output); }
  int job() { return run({home() + "/quenbrook", "T" + daysAgo(3) + "-" + daysAgo(1)}); }
  int ctl(std::vector<std::string> words) {
    words.insert(words.begin(), QUENBROOKCTL);
    words.insert(words.end(), {"--home", home()});
    return run(words);
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(file(name), std::ios::binary) << CodePage(949).fromUtf8(text);
  }
  void configure(const std::string& lines) const {
    write("config.ini", "[경영자]\r\nGroup=A01\r\n상호=한옥\r\n대표자=Kim\r\n" + lines);
  }
  // The one statement file.
  [[nodiscard]] fs::path statements() const {
    return fs::directory_iterator(file("AutoLoadData"))->path();
  }

  std::string output;

 private:
  support::TemporaryFolder folder_;
};

TEST_F(CommandsTest, StatusNamesEachFaultAndPassesAShopWithoutAny) {
  const support::HeadOffice office;
  configure("[연결]\r\nServerHost=" + office.host() +
            "\r\nFtpPort=" + std::to_string(office.ftpPort()) +
            "\r\nDbPort=" + std::to_string(office.databasePort()) + "\r\n");
  EXPECT_EQ(ctl({"status"}), 1);
  EXPECT_THAT(output, HasSubstr("! 매출에 보내지 않은 행이 있는 날: "));
  EXPECT_THAT(output, HasSubstr("! 결산하지 않은 날: "));
  ASSERT_EQ(job(), 0) << output;
  ASSERT_EQ(ctl({"transfer"}), 0) << output;
  EXPECT_EQ(ctl({"status"}), 0) << output;
  EXPECT_EQ(ctl({"status", "--json"}), 0);
  EXPECT_THAT(output, HasSubstr("\"problems\": []"));
  // Another shop without a config.ini is none; one of which nothing is known is not well.
  fs::create_directories(home() + "/../no-shop");
  fs::create_directories(home() + "/../strange");
  std::ofstream(home() + "/../strange/config.ini") << "";
  EXPECT_EQ(run({QUENBROOKCTL, "status", "--all", home() + "/.."}), 1);
  EXPECT_THAT(output, HasSubstr("/shop): 이상 없음\n"));
  EXPECT_THAT(output, HasSubstr("/strange)\n  ! "));
  EXPECT_THAT(output, testing::Not(HasSubstr("no-shop")));

  // The sample FTP server takes seconds for a login: the faults are looked at without it.
  const std::string nobody = "[연결]\r\nServerHost=127.0.0.1\r\nDbPort=1\r\nFtpPort=1\r\n";
  configure(nobody);
  const fs::path aside = home() + "-whole";
  fs::copy(home(), aside, fs::copy_options::recursive);
  const struct {
    std::function<void()> break_;
    const char* problem;
  } faults[] = {
      {[&] { fs::remove(file("config.ini")); }, "시작할 수 없습니다"},
      {[&] { write("config.ini", "[경영자]\r\n상호=한옥\r\n"); }, "Group이 비어 있습니다"},
      {[] {}, "본사 데이터베이스가 응답하지 않습니다"},
      {[] {}, "FTP 서버가 응답하지 않습니다"},
      {[&] { configure("[연결]\r\nFtpPort=abc\r\n"); }, "FtpPort=abc"},
      {[&] { configure("[연결]\r\nFtpTls=yes\r\n"); }, "FtpTls=yes"},
      {[&] { fs::remove(file("outgo.mdb")); }, "파일이 없습니다: "},
      {[&] { write("data.mdb", "scribbled over"); }, "매출을 읽을 수 없습니다"},
      {[&] {
         write("AutoLoadData/20130821_153045_K.tx",
               "Delete FROM SellingTB  Where SL_RDATE >= '2013-08-01'   And SL_RDATE <= "
               "'2013-08-21';\r\n");
       },
       "끝나지 못한 작업의 파일 20130821_153045_K.tx: 2013-08-01~2013-08-21"},
      {[&] { write("AutoLoadData/20130821_153045_K.txt", "Delete 1;\r\n"); },
       "20130821_153045부터 전송을 기다립니다"},
      {[&] { write("AutoLoadData/20130821_153045_K.txt.gz", "broken off"); },
       "온전하지 않은 압축 파일입니다"},
      {[&] {
         fs::remove(file("outgo.mdb"));
         EXPECT_EQ(job(), 1);
       },
       ": (91) 20단계"},
      {[&] {
         write("AutoLoadData/20130821_153045_K.txt", "Delete 1;\r\n");
         EXPECT_EQ(ctl({"transfer"}), 1);
       },
       "마지막 전송이 실패했습니다"},
      {[&] { write("quenbrook-nightly.txt", "2013/08/21\r\n2013/08/20 x-----x\r\n"); },
       "야간 작업이 실패한 날과 종류: 2013/08/20 x-----x"},
  };
  for (const auto& fault : faults) {
    fault.break_();
    EXPECT_EQ(ctl({"status"}), 1) << fault.problem;
    EXPECT_THAT(output.substr(output.find("[확인할 것]")), HasSubstr(fault.problem));
    fs::remove_all(home());
    fs::copy(aside, home(), fs::copy_options::recursive);
  }
}

// The till's files in a folder of their own, as on a computer that mounts it.
TEST_F(CommandsTest, SetupMakesAShopThatWorksAndASecondRunChangesNothing) {
  const std::string shop = home() + "-new";
  fs::rename(file("data.mdb"), file("DATA.MDB"));
  const auto setup = [&](const std::string& answers, const std::string& flags = "") {
    return run({"sh", "-c",
                "printf '" + answers + "' | " QUENBROOKCTL " setup --no-night " + shop +
                    " --ftp-port 1 --db-port 1 " + flags});
  };
  EXPECT_EQ(setup("A01\\n한옥\\nKim\\n" + home() + "\\n127.0.0.1\\n"), 1);
  EXPECT_THAT(output, HasSubstr("DATA.MDB: 매출 3일, "));
  EXPECT_THAT(output,
              HasSubstr("마지막 날 " + std::regex_replace(daysAgo(1), std::regex("/"), "-")));
  EXPECT_THAT(output, HasSubstr("FTP 서버에 시험 파일을 보낼 수 없습니다: "));
  EXPECT_THAT(support::readFile(shop + "/config.ini"),
              HasSubstr(CodePage(949).fromUtf8("\r\n상호=한옥\r\n")));
  EXPECT_EQ(run({shop + "/quenbrook", "T" + daysAgo(1)}), 0) << output;
  EXPECT_THAT(output, testing::StartsWith("quenbrook " QUENBROOK_VERSION "\n"));

  EXPECT_EQ(setup(""), 1);
  EXPECT_THAT(output, testing::Not(HasSubstr("  + ")));
  std::ofstream(shop + "/quenbrook") << "an older version";
  EXPECT_EQ(run({QUENBROOKCTL, "setup", "--upgrade", shop}), 0) << output;
  EXPECT_EQ(support::readFile(shop + "/quenbrook"), support::readFile(QUENBROOK));

  const struct {
    std::function<void()> break_;
    const char* flags;
    const char* problem;
  } faults[] = {
      {[] {}, "--name 한옥😀", "코드 페이지 949에 없는 글자"},
      {[] {}, "--group ''", "[경영자]의 Group이(가) 비어 있습니다"},
      {[] {}, "--db /nowhere", "/nowhere/data.mdb이(가) 없습니다"},
      {[] {}, "--account nobody-here", "계정 nobody-here이(가) 없습니다"},
      {[&] { fs::remove(shop + "/outgo.mdb"), fs::copy(file("outgo.mdb"), shop); }, "",
       "다른 파일입니다"},
      {[&] { fs::resize_file(file("config.mdb"), 40960); }, "", "config.mdb"},
  };
  const fs::path aside = home() + "-whole";
  fs::copy(shop, aside, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  for (const auto& fault : faults) {
    fault.break_();
    EXPECT_EQ(setup("", fault.flags), 1) << fault.problem;
    EXPECT_THAT(output.substr(output.find("[확인할 것]")), HasSubstr(fault.problem));
    fs::remove_all(shop);
    fs::copy(aside, shop, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  }
}

TEST_F(CommandsTest, SettlementPrintsWhatAJobSendsAndChangesNothing) {
  // A wrong port is no matter of the settlement, which asks whether the host answers.
  configure("[연결]\r\nODBCcustomer=True\r\nServerHost=nowhere.invalid\r\nFtpPort=abc\r\n");
  ASSERT_EQ(ctl({"settlement", daysAgo(2), "--csv", home() + ".csv", "--html", home() + ".html"}),
            0)
      << output;
  EXPECT_FALSE(fs::exists(file("quenbrook-errors.log")));
  std::map<std::string, std::string> figures;  // by column
  std::ifstream csv(home() + ".csv");
  for (std::string line; std::getline(csv, line);) {
    std::istringstream fields(line);
    std::string day, label, column, value;
    for (std::string* field : {&day, &label, &column, &value}) std::getline(fields, *field, ',');
    figures[column] = value;
  }
  EXPECT_EQ(figures.size(), 49U);  // with the head
  EXPECT_THAT(support::readFile(home() + ".html"), HasSubstr("<td class=\"label\">총판매액</td>"));

  ASSERT_EQ(run({home() + "/quenbrook", "T" + daysAgo(2)}), 0) << output;
  const std::string sent = support::readFile(statements());
  const std::string insert = sent.substr(sent.find("Insert Into DailyDataTB ("));
  std::istringstream columns(insert.substr(insert.find("DD_CASH_IN")));
  std::istringstream values(insert.substr(insert.find("', ", insert.find('-')) + 3));
  for (int i = 0; i < 48; ++i) {
    std::string column, value;
    columns >> column, values >> value;
    EXPECT_EQ(figures[column.substr(0, column.find_first_of(",)"))],
              value.substr(0, value.find_first_of(",)")))
        << column;
  }
}

TEST_F(CommandsTest, FinishBringsWhatAKilledJobMarked) {
  ASSERT_EQ(job(), 0) << output;
  const fs::path whole = statements();
  const fs::path orphan = fs::path(whole).replace_extension(".tx");
  fs::rename(whole, orphan);
  const auto length = fs::file_size(orphan);
  fs::resize_file(orphan, length - 9);
  ASSERT_EQ(ctl({"finish", orphan.filename()}), 0) << output;
  EXPECT_THAT(output, HasSubstr("without attendance"));
  EXPECT_LT(fs::file_size(whole), length - 9);
  EXPECT_THAT(support::readFile(whole), testing::EndsWith(";\r\n"));
  EXPECT_EQ(ctl({"finish", whole.filename()}), 1);
}

TEST_F(CommandsTest, ANightMakesUpForNightsOffAndForAKilledJob) {
  const std::string failed = " --x--x-\r\n";
  write("quenbrook-nightly.txt", daysAgo(3) + "\r\n");
  fs::rename(file("outgo.mdb"), file("away"));
  EXPECT_EQ(ctl({"nightly"}), 1);
  EXPECT_THAT(output, HasSubstr("지급: (91)"));
  EXPECT_EQ(support::readFile(file("quenbrook-nightly.txt")),
            daysAgo(1) + "\r\n" + daysAgo(2) + failed + daysAgo(1) + failed);

  fs::rename(file("away"), file("outgo.mdb"));
  fs::rename(statements(), file("AutoLoadData/20130821_153045_K.tx"));
  EXPECT_EQ(ctl({"nightly"}), 1) << "somebody shall hear of the killed job";
  EXPECT_THAT(output, HasSubstr("20130821_153045_K.tx"));
  EXPECT_EQ(support::readFile(file("quenbrook-nightly.txt")), daysAgo(1) + "\r\n");
  std::string all;
  for (const auto& entry : fs::directory_iterator(file("AutoLoadData"))) {
    EXPECT_EQ(entry.path().extension(), ".txt");
    all += support::readFile(entry.path());
  }
  // Twice for the outgo, and of the killed job's day for all but attendance.
  const auto deletes = [&](const std::string& table) {
    std::size_t count = 0;
    for (auto at = all.find(table); at != std::string::npos; at = all.find(table, at + 1)) ++count;
    return count;
  };
  EXPECT_EQ(deletes("Delete FROM SellingTB"), 3U);
  EXPECT_EQ(deletes("Delete FROM EmployeeItemTB"), 2U);
  EXPECT_EQ(ctl({"nightly"}), 0) << output;
  ctl({"status", "--json"});
  EXPECT_THAT(output, HasSubstr("\"began\": \"" + daysAgo(0)));
}

}  // namespace
