// Whole statement files of sample shops, loaded into a real server: one, for all cases, since it
// takes seconds to start.
#include "support/head_office.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "extract/conversions.h"
#include "extract/workspace.h"
#include "job/job_steps.h"
#include "localdb/local_databases.h"
#include "log/message_log.h"
#include "platform/clock.h"
#include "settings/profile_reader.h"
#include "startup/start_mod.h"
#include "support/job_fixture.h"

namespace {

using support::run;
using LineNumbers = std::set<int>;

constexpr int kDays = 3;

// The numbers that the expression finds in the text.
LineNumbers numbersIn(const std::string& text, const char* expression) {
  LineNumbers numbers;
  const std::regex pattern(expression);
  for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
    numbers.insert(std::stoi((*at)[1]));
  }
  return numbers;
}

// What the server holds, and where the same stands in the shop. Each letter of `kinds` says how the
// local field of its place goes up: n number, t text, a magnitude.
struct Held {
  const char* columns;  // of the server, its table after the blank, as in "CS_SS_ID FROM
                        // CustomerSellingTB"
  const char* file;
  const char* query;
  const char* kinds;
};

constexpr Held kHeld[] = {
    {"SL_ID, SL_CUSTOMER_CNT, SL_PRICE_CARD, SL_HISTORY, SL_MODI_TIME2 FROM SellingTB", "data.mdb",
     "SELECT s_id, customer_no, price_card, history, time_modified2 FROM Selling ORDER BY s_id",
     "nnntt"},
    {"SLI_ID, SLI_SL_ID, SLI_MENUNAME, SLI_IS_SERVICE, SLI_TIME_MODIFIED FROM Selling_ItemTB",
     "data.mdb",
     "SELECT si_id, s_id, menu, is_service, time_modified FROM Selling_Item ORDER BY si_id",
     "nntat"},
    {"CI_PRICE_CARDS, CI_NO, CI_CARDNO, CI_NAME, CI_DAY FROM CardItemTB", "config.mdb",
     "SELECT price_total, no, card_no, card_name, rdate FROM Credit2 WHERE price_total > 0 "
     "ORDER BY price_total, no",
     "ntttt"},
    {"OI_OG_ID, OI_PRICE, OI_COMPANY, OI_IDATE, OI_IDSERIAL FROM OutGoItemTB", "outgo.mdb",
     "SELECT og_id, price, company, idate, idserial FROM outgo_item ORDER BY og_id", "nnttt"},
    {"CS_SS_ID, CS_C_ID, CS_PRICE, CS_RDATE FROM CustomerSellingTB", "config.mdb",
     "SELECT ss_id, c_id, price, rdate FROM customer_selling_sum ORDER BY ss_id", "nnnt"},
    {"CT_C_ID, CT_NAME, CT_NOTSMS, CT_TOTAL_PAYMENT, CT_VISIT_DAY_LAST FROM CustomerTB",
     "config.mdb",
     "SELECT c_id, name, notsms, total_payment, visit_day_last FROM customer ORDER BY c_id",
     "ntant"},
    {"EI_ID, E_ID, EI_TIME_OUT, EI_ETC FROM EmployeeItemTB", "data.mdb",
     "SELECT ei_id, e_id, time_out, etc FROM Employee_Item WHERE e_id > 0 AND (is_serving = 0 OR "
     "is_serving IS NULL) AND (c_upload = 0 OR c_upload IS NULL) ORDER BY ei_id",
     "nntt"},
};

// A text as the server's client shows it.
std::string shown(const std::string& text) {
  std::string shown;
  for (const char c : text) shown += c == '\n' ? "\\n" : std::string(1, c);
  return shown;
}

// A sample shop in a temporary folder, and everything that one job and the customer list send.
class Shop {
 public:
  explicit Shop(std::vector<std::string> options) {
    std::vector<std::string> command = {MAKESHOP,          home(), "--days", std::to_string(kDays),
                                        "--sales-per-day", "15"};
    command.insert(command.end(), options.begin(), options.end());
    std::string output;
    if (run(command, &output) != 0) throw std::runtime_error("no sample shop: " + output);
  }

  // The days' statements and the customers', in one file.
  std::filesystem::path send() {
    std::filesystem::path file = folder_.path() / ("run" + std::to_string(++runs_) + ".txt");
    const settings::StartValues start =
        StartMod::Main("", {home(), settings_, log_, messages_}).values;
    extract::Workspace work({start, databases_, panel_, clock_, ticks_},
                            {support::day(8, 1), support::day(8, kDays)});
    work.setStatementPath(file);
    const lib_결산::Dependencies dependencies{
        home(),
        databases_,
        settings_,
        clock_,
        jobLog_,
        [](const std::string& line) { ADD_FAILURE() << line; },
        [] { return false; }};
    for (const job::Step& step : job::jobSteps(dependencies)) step.collect(work);
    work.closeAll();
    EXPECT_EQ(run({QUENBROOKCTL, "customers", "--home", home()}), 0);
    for (const auto& entry : std::filesystem::directory_iterator(home() + "/AutoLoadData")) {
      EXPECT_EQ(entry.path().extension(), ".txt");
      std::ofstream(file, std::ios::app | std::ios::binary) << support::readFile(entry.path());
      std::filesystem::remove(entry.path());
    }
    return file;
  }

  // As the server's rows are shown: tab-separated.
  std::string rows(const Held& held) {
    std::shared_ptr<localdb::Database> database;
    std::unique_ptr<localdb::RecordSet> rows;
    EXPECT_TRUE(databases_.JetOpenDB(database, home() + "/" + held.file, true, false, "", ""));
    EXPECT_TRUE(
        databases_.JetOpenRST(database, rows, held.query, localdb::kOpenSnapshot, 0, 0, false));
    std::string text;
    for (; !rows->atEnd(); rows->moveNext()) {
      for (std::size_t i = 0; held.kinds[i] != 0; ++i) {
        const values::Variant value = rows->field(i);
        const std::int32_t number = extract::NzLong(value);
        text += i == 0 ? "" : "\t";
        text += held.kinds[i] == 't'   ? shown(extract::NzText(value))
                : held.kinds[i] == 'n' ? std::to_string(number)
                                       : std::to_string(std::abs(number));
      }
      text += '\n';
    }
    return text;
  }

 private:
  [[nodiscard]] std::string home() const { return folder_.path() / "shop"; }

  support::TemporaryFolder folder_;
  int runs_ = 0;
  platform::SystemClock clock_;
  platform::SystemTickCounter ticks_;
  platform::SystemMemory memory_;
  platform::StandardErrorDisplay messages_;
  lib_Setting::ProfileReader settings_;
  lib_Message2::MessageLog log_{folder_.path(), clock_, memory_, messages_};
  joblog::JobLog jobLog_{folder_.path(), clock_};
  support::Panel panel_;
  localdb::DBEngine engine_{clock_, nullptr};
  localdb::LocalDatabases databases_{engine_,
                                     [](const std::string& line) { ADD_FAILURE() << line; }};
};

class HeadOfficeTest : public testing::Test {
 protected:
  // The lines that the server refuses.
  LineNumbers load(const std::filesystem::path& file) {
    const std::string waiting = office.folder() / "ftp/MU/file.txt";
    std::filesystem::copy_file(file, waiting);
    EXPECT_EQ(run({"gzip", waiting}), 0);
    return numbersIn(office.load(), "ERROR \\d+ \\(\\w+\\) at line (\\d+)");
  }

  // The server's rows of a table, in the order of their first columns.
  std::string rows(const Held& held) {
    const std::string table = office.sql("SELECT " + std::string(held.columns) + " ORDER BY 1, 2");
    return table.empty() ? table : table.substr(table.find('\n') + 1);
  }

  support::HeadOffice office;
};

TEST_F(HeadOfficeTest, HoldsExactlyWhatTheShopsHaveAndRefusesWhatTheCheckSays) {
  Shop plain({"--plain"});
  std::vector<std::string> local;  // before the run marks what it sends
  for (const Held& held : kHeld) local.push_back(plain.rows(held));
  const auto firstRun = plain.send();
  for (const char* round : {"once", "again"}) {
    EXPECT_EQ(load(firstRun), LineNumbers()) << round;
    for (std::size_t i = 0; i < local.size(); ++i) {
      EXPECT_NE(local[i], "") << kHeld[i].columns;
      EXPECT_EQ(rows(kHeld[i]), local[i]) << round << ": " << kHeld[i].columns;
    }
    EXPECT_EQ(rows({"DD_RDATE, DD_CARD FROM DailyDataTB", "", "", ""}),
              "2013-08-01\t0\n2013-08-02\t0\n2013-08-03\t0\n");
  }

  // Attendance is sent once only, so that a second run of the days takes it away.
  EXPECT_EQ(load(plain.send()), LineNumbers());
  for (std::size_t i = 0; i < local.size(); ++i) {
    const bool attendance = std::string_view(kHeld[i].columns).ends_with("EmployeeItemTB");
    EXPECT_EQ(rows(kHeld[i]), attendance ? "" : local[i]) << "second run: " << kHeld[i].columns;
  }

  Shop awkward({"--seed", "7"});
  const auto file = awkward.send();
  std::string verdict;
  EXPECT_EQ(run({QUENBROOKCTL, "check", file}, &verdict), 1);
  const LineNumbers refused = load(file);
  EXPECT_GT(refused.size(), 3U);
  EXPECT_EQ(numbersIn(verdict, "\\.txt:(\\d+):"), refused);
}

}  // namespace
