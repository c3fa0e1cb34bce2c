#include <gmock/gmock.h>

#include <fstream>

#include "settings/settings.h"
#include "settlement/derived_figures.h"
#include "settlement/get_daily.h"
#include "support/job_fixture.h"

namespace settlement {
namespace {

using lib_결산::DailySettlement;
using lib_결산::Figure;
using support::day;
using testing::ElementsAre;

class FakeSettings : public settings::Settings {
 public:
  void setFile(const std::string&) override {}
  [[nodiscard]] std::string read(std::string_view, std::string_view key,
                                 std::string_view otherwise) const override {
    const auto found = values.find(std::string(key));
    return found == values.end() ? std::string(otherwise) : found->second;
  }
  void write(std::string_view, std::string_view, std::string_view) override {}

  std::map<std::string, std::string> values;
};

class SettlementTest : public support::JobFixture {
 protected:
  // One row of each query's answer; fields by name.
  support::FakeRow& row(const std::string& query) {
    auto& rows = databases.answers[query].rows;
    if (rows.empty()) rows.emplace_back();
    return rows[0];
  }

  bool settle() { return lib_결산::GetDailyData(dependencies, day(8, 21), figures); }

  FakeSettings settings;
  joblog::JobLog jobLog{folder.path(), clock};
  std::vector<std::string> messages;
  bool centralAnswers = true;
  lib_결산::Dependencies dependencies{folder.path(),
                                      databases,
                                      settings,
                                      clock,
                                      jobLog,
                                      [this](const std::string& line) { messages.push_back(line); },
                                      [this] { return centralAnswers; }};
  DailySettlement figures;
};

TEST(DerivedFiguresTest, ServiceChargeAndVatInEveryCombination) {
  const struct {
    std::int16_t rate;
    bool vatIncluded, enabled, included;
    std::int32_t total, vat;
  } rows[] = {
      // A total of 1,000,000 with a service charge of 100,000.
      {0, false, false, false, 1100000, 7},       {0, false, false, true, 1100000, 7},
      {0, false, true, false, 1100000, 7},        {0, false, true, true, 1000000, 7},
      {0, true, false, false, 1100000, 7},        {0, true, true, true, 1000000, 7},
      {10, false, false, false, 1100000, 100000}, {10, false, false, true, 1100000, 100000},
      {10, false, true, false, 1100000, 100000},  {10, false, true, true, 1000000, 90909},
      {10, true, false, false, 1100000, 100000},  {10, true, false, true, 1100000, 100000},
      {10, true, true, false, 1100000, 100000},   {5, true, true, true, 1000000, 90909},
  };
  for (const auto& row : rows) {
    const lib_결산::Switches switches{row.rate, row.vatIncluded, row.enabled, row.included, false};
    DailySettlement figures;
    figures[Figure::총판매액] = 1000000;
    figures[Figure::봉사료] = 100000;
    figures[Figure::부가세] = 7;
    addServiceCharge(figures, switches);
    deriveCashAndVat(figures, switches);
    const std::string name = std::to_string(row.rate) + (row.vatIncluded ? " in" : " out") +
                             (row.enabled ? " enabled" : "") + (row.included ? " included" : "");
    EXPECT_EQ(figures[Figure::총판매액], row.total) << name;
    EXPECT_EQ(figures[Figure::부가세], row.vat) << name;
  }
  // A negative charge is added only where service rates are enabled.
  DailySettlement figures;
  figures[Figure::봉사료] = -5;
  addServiceCharge(figures, {});
  EXPECT_EQ(figures[Figure::총판매액], 0);
  addServiceCharge(figures, {0, false, true, false, false});
  EXPECT_EQ(figures[Figure::총판매액], -5);
}

TEST(DerivedFiguresTest, AveragesRoundHalvesToEvenAndAreZeroWithoutADivisor) {
  const struct {
    std::int32_t total, visitors, tables, employees, seats;
    std::int32_t aVisitor, aTable, visitorsAnEmployee, saleAnEmployee, turnover;
  } rows[] = {
      {10000, 4, 3, 2, 10, 2500, 3333, 2, 5000, 40},
      {10000, 25, 0, 0, 10, 400, 0, 0, 0, 250},
      {5, 5, 2, 2, 0, 1, 2, 2, 2, 0},
      {7, 7, 2, -2, 800, 1, 4, -4, -4, 1},
      {-5, 0, 2, 0, 0, 0, -2, 0, 0, 0},
  };
  for (const auto& row : rows) {
    DailySettlement figures;
    figures[Figure::총판매액] = row.total;
    figures[Figure::손님수] = row.visitors;
    figures[Figure::테이블수] = row.tables;
    figures[Figure::종업원수] = row.employees;
    figures[Figure::좌석수] = row.seats;
    deriveAverages(figures, {});
    EXPECT_EQ(figures[Figure::객단가], row.aVisitor) << row.total;
    EXPECT_EQ(figures[Figure::테이블단가], row.aTable) << row.total;
    EXPECT_EQ(figures[Figure::직원당손님수], row.visitorsAnEmployee) << row.total;
    EXPECT_EQ(figures[Figure::직원당판매액], row.saleAnEmployee) << row.total;
    EXPECT_EQ(figures[Figure::좌석회전율], row.turnover) << row.total;
  }
}

TEST(DerivedFiguresTest, CashIsWhatNoOtherMeansPaidAndNetSalesLoseWhatWasLetOff) {
  DailySettlement figures;
  const struct {
    Figure figure;
    std::int32_t value;
  } values[] = {{Figure::총판매액, 1000000}, {Figure::외상매출, 1},     {Figure::할인, 20},
                {Figure::카드매출, 300},     {Figure::쿠폰사용, 4000},  {Figure::상품권사용, 50000},
                {Figure::경품현금지급, 600}, {Figure::현금입금, 70000}, {Figure::절상절하, -8},
                {Figure::봉사료, 900}};
  for (const auto& value : values) figures[value.figure] = value.value;
  deriveCashAndVat(figures, {10, true, false, false, false});
  EXPECT_EQ(figures[Figure::현금매출], 1000000 - (1 + 20 + 300 + 4000 + 50000 + 600) + 70000);
  EXPECT_EQ(figures[Figure::부가세], 85944);  // of 945380
  deriveAverages(figures, {});
  EXPECT_EQ(figures[Figure::실판매액], 1000000 - 8 - 20 - 4000);
  deriveAverages(figures, {0, false, false, false, true});
  EXPECT_EQ(figures[Figure::실판매액], 1000000 - 8 - 20 - 4000 - 900);
}

TEST_F(SettlementTest, EveryFigureComesFromItsQuery) {
  row("set_basic2 ") = {{"rdate", day(8, 22)}, {"num_employee", 99}};
  databases.answers["set_basic2 "].rows.push_back(
      {{"rdate", day(8, 21, 9)}, {"num_employee", 6}, {"num_table", 12}});
  databases.answers["set_basic2 "].rows.push_back({{"rdate", day(1, 1)}, {"num_employee", 1}});
  row("set_basic3 ") = {{"hand_amount", 84500}, {"num_drawer", 1}, {"num_drawer2", 2},
                        {"num_drawer3", 4},     {"num_paper", 55}, {"num_cancel", 3}};
  databases.answers["qryRstCredit "].rows = {{{"etc", "카드"}, {"price_ins", 10}},
                                             {{"price_ins", 20}},
                                             {{"etc", "카드"}, {"price_ins", 30}},
                                             {{"etc", "카드사"}, {"price_ins", 40}}};
  row("qryRstTicket ") = {{"price_gets", 119000}};
  databases.answers["qryRstFreeGift "].rows = {{{"nos", 5}}, {{"nos", 6}}};
  row("FROM booking ") = {{"first_payment", 2.5}};
  row("s_id>0") = {{"price_cards", 100}};
  row("kind2<>2 AND is_cancel=False) AND s_id=0") = {{"price_cards", 200}};
  row("kind2=2") = {{"price_cards", 400}};
  row("qryRstCreditTerminate") = {{"prices", 79000}};
  databases.answers["FROM selling "].rows = {{{"price_change", -2000}, {"price_trim", 1}},
                                             {{"price_trim", 2}}};
  databases.answers["is_service=True"].rows = {{}, {}, {}};
  row("qryRstSellingItemSum") = {{"cost_amounts", 11}, {"margin_amounts", 22}};
  row("qryRstSelling ") = {{"price_credits", 1},      {"price_discounts", 2},
                           {"price_services", 3},     {"price_coupons", 4},
                           {"price_tickets", 5},      {"price_free_gifts", 6},
                           {"price_gratuitys", 7},    {"price_payouts", 8},
                           {"price_vats", 9},         {"customer_nos", 59},
                           {"customer_nos_male", 22}, {"customer_nos_female", 24},
                           {"team_nos", 12},          {"coupons", 13}};
  databases.answers["qryRstSum"].rows = {{{"sa", 600000}}, {{"sa", 95393}}};
  row("etc_type=1 OR") = {{"jigeupaeks", 1000}};
  row("etc_type=3 OR etc_type=5") = {{"jigeupaeks", 2000}};
  row("etc_type=3 OR etc_type=6") = {{"jigeupaeks", 4000}};
  row("etc_type=9") = {{"prices", 8000}};

  ASSERT_EQ(GetDaily(work, dependencies, day(8, 21), day(8, 21)), false);
  EXPECT_THAT(messages, ElementsAre());
  EXPECT_THAT(
      lines(),
      ElementsAre(
          "Delete From DailyDataTB  Where DD_GROUP = 'A01'   And DD_SANGHO = '김\\'s'   And "
          "DD_RDATE = '2013-08-21';",
          "Insert Into DailyDataTB (DD_GROUP, DD_SANGHO, DD_CHAIRMAN, DD_RDATE, DD_CASH_IN, "
          "DD_CASH_SALE, DD_DISCOUNT, DD_REAL_SALE, DD_CREDIT_SALE, DD_CREDIT_END, "
          "DD_CREDIT_CARD, DD_CREDIT_CASH, DD_TOT_MARGIN, DD_TOT_COST, DD_TOT_PRICE, DD_CARD, "
          "DD_CARD_SALE, DD_CARD_CANCEL, DD_CARD_PAYMENT, DD_PAYOUT, DD_TABLE_CNT, "
          "DD_TABLE_COST, DD_COUPON_CNT, DD_COUPON_USE, DD_CANCEL_CNT, DD_CASH_OUT, DD_OUTLAY, "
          "DD_BANPUM, DD_BONGSA, DD_VAT, DD_GIFT_USE, DD_GIFT_SALE, DD_GIFT_CNT, DD_GIFT_CASH, "
          "DD_SERVICE, DD_SERVICE_CNT, DD_PREPAY, DD_VISITOR_CNT, DD_VISITOR_MALE, "
          "DD_VISITOR_FEMALE, DD_VISITOR_COST, DD_SIJAE, DD_BILL_CNT, DD_UPDOWN, "
          "DD_EMPLOYEE_CNT, DD_SEAT_CNT, DD_SEAT_CHANGE, DD_JUMUN_CNT, DD_EMP_VISIT_CNT, "
          "DD_EMP_SALE, DD_CASHBOX_OPEN, DD_MAGA_CHANGE) Values ( 'A01', '김\\'s', 'Kim', "
          "'2013-08-21', 8000, 703282, 2, 695397, 1, 79000, 30, 40, 22, 11, 695400, 0, 100, 400, "
          "200, 8, 12, 57950, 13, 4, 3, 4000, 3000, 0, 7, 9, 5, 119000, 11, 6, 3, 3, 2, 59, 22, "
          "24, 11786, 84500, 55, 3, 6, 12, 492, 2, 10, 115900, 7, -2000);"));
  EXPECT_THAT(databases.queries,
              testing::IsSupersetOf(
                  {"config.mdb: set_basic", "config.mdb: SELECT * FROM set_basic3 ",
                   "config.mdb: SELECT * FROM booking WHERE indate = #2013-08-21#",
                   "config.mdb: SELECT * FROM qryCardItem WHERE day = '13.08.21' AND (kind<>3) "
                   "AND(kind2<>2 AND is_cancel=False) AND s_id>0 AND is_credit=false",
                   "data.mdb: SELECT * FROM selling_item WHERE rdate = #2013-08-21# AND "
                   "is_service=True",
                   "outgo.mdb: SELECT Sum(price) as JiGeupAekS FROM outgo_item WHERE rdate = "
                   "#2013-08-21# AND (etc_type=1 OR etc_type=2 OR etc_type=4) "}));
  EXPECT_EQ(linesOf(jobLog.path()).size(), 18U);
  EXPECT_EQ(linesOf(jobLog.path())[0],
            "Daily Data Load -- GetDaily In..2013-08-21..2013-08-21..20130821 153045");
  EXPECT_EQ(linesOf(jobLog.path())[7],
            "Daily Data Load -- qryODBCRstRicket Or qryRstTicket 연결 Start 20130821 153045");
  EXPECT_EQ(panel.yields, 3);
}

TEST_F(SettlementTest, TheShopsSettingsSteerTheComputation) {
  row("set_basic") = {{"enable_rate_surtax", true}};
  row("qryRstSum") = {{"sa", 1000000}};
  row("qryODBCRstTicket ") = {{"price_gets", 7}};
  row("qryRstTicket ") = {{"price_gets", 5}};
  const struct {
    const char* name;
    support::FakeRow basic;
    const char* odbc;
    bool answers;
    std::int32_t vat, tickets;
  } rows[] = {
      {"no rate is ten", {{"enable_rate_surtax", true}}, "", true, 90909, 5},
      {"a rate of 0", {{"enable_rate_surtax", true}, {"rate_surtax", 0}}, "0", false, 0, 5},
      {"1 is not yes", {{"enable_rate_surtax", 1}, {"rate_surtax", 10}}, "False", true, 0, 5},
      {"server's tickets", {}, "True", true, 0, 7},
      {"server does not answer", {}, "-1", false, 0, 0},
  };
  for (const auto& row : rows) {
    databases.answers["set_basic"].rows = {row.basic};
    settings.values["ODBCcustomer"] = row.odbc;
    centralAnswers = row.answers;
    EXPECT_TRUE(settle()) << row.name;
    EXPECT_EQ(figures[Figure::부가세], row.vat) << row.name;
    EXPECT_EQ(figures[Figure::상품권판매], row.tickets) << row.name;
  }
}

TEST_F(SettlementTest, AFailedDayKeepsTheFiguresReachedAndIsSent) {
  row("set_basic3 ") = {{"hand_amount", 84500}};
  row("qryRstSum") = {{"sa", 5}};
  const struct {
    const char* name;
    std::function<void()> breakIt;
    const char* step;
    std::int32_t float_;
  } rows[] = {
      {"setting", [&] { settings.values["ApplyDCinRO"] = "maybe"; }, "2](Eno:=13)", 0},
      {"no config.mdb", [&] { databases.missingFiles = {"config.mdb"}; }, "4](Eno:=91)", 0},
      {"rate",
       [&] {
         row("set_basic") = {{"rate_surtax", 40000}};
       },
       "4](Eno:=6)", 0},
      {"field",
       [&] {
         row("FROM booking "), databases.answers["FROM booking "].missing = {"first_payment"};
       },
       "10](Eno:=3265)", 84500},
      {"no outgo.mdb", [&] { databases.missingFiles = {"outgo.mdb"}; }, "20](Eno:=91)", 84500},
      {"query", [&] { databases.answers["qryRstSelling "].fails = true; }, "18](Eno:=91)", 84500},
      {"overflow",
       [&] {
         databases.answers["qryRstSum"].rows.push_back({{"sa", INT32_MAX}});
       },
       "19](Eno:=6)", 84500},
  };
  const auto whole = databases.answers;
  for (const auto& row : rows) {
    databases.answers = whole;
    databases.missingFiles.clear();
    settings.values.clear();
    messages.clear();
    row.breakIt();
    std::filesystem::remove(work.statementPath());
    GetDaily(work, dependencies, day(8, 21), day(8, 21));
    EXPECT_THAT(messages, ElementsAre(std::string("E)lib_결산->GetDailyData(LookupDate:=2013-08-21)"
                                                  "[Erl:=") +
                                      row.step))
        << row.name;
    EXPECT_EQ(lines().size(), 2U) << row.name;
    EXPECT_THAT(lines()[1], testing::HasSubstr(row.float_ == 0 ? " 0, 0, 0, 0, 0);" : ", 84500, "))
        << row.name;
  }
  EXPECT_FALSE(settle());
  EXPECT_EQ(figures[Figure::총판매액], 5);
  EXPECT_EQ(figures[Figure::현금매출], 0);
  const auto failures = work.takeFailures();
  ASSERT_EQ(failures.size(), std::size(rows));
  EXPECT_EQ(
      joblog::failureLine(failures.back()),
      "결산 2013-08-21: (6) 19단계: Overflow: a figure reached 2147483652 - 구하지 못한 숫자는 "
      "0으로 보냅니다.");
}

// Within a row the figures are added in order, and a sum of fields is one figure.
TEST_F(SettlementTest, AFailureWithinARowKeepsTheFiguresBeforeIt) {
  row("qryRstSelling ") = {{"price_credits", 3}, {"team_nos", 4}};
  databases.answers["qryRstSelling "].missing = {"coupons"};
  EXPECT_FALSE(settle());
  EXPECT_EQ(figures[Figure::외상매출], 3);
  EXPECT_EQ(figures[Figure::테이블수], 4);
  EXPECT_EQ(figures.failure->step, 18);

  row("set_basic3 ") = {{"hand_amount", 84500}, {"num_drawer", INT32_MAX}, {"num_drawer2", 1}};
  EXPECT_FALSE(settle());
  EXPECT_EQ(figures[Figure::시제], 84500);
  EXPECT_EQ(figures[Figure::돈통열린회수], 0);
}

TEST_F(SettlementTest, EveryDayOfTheRangeIsSentOnce) {
  const struct {
    values::DateTime first, last;
    std::vector<std::string> days;
  } rows[] = {
      {day(8, 30), day(9, 2), {"2013-08-30", "2013-08-31", "2013-09-01", "2013-09-02"}},
      {day(8, 21), day(8, 20), {}},
  };
  for (const auto& row : rows) {
    std::ofstream(work.statementPath(), std::ios::trunc).close();
    GetDaily(work, dependencies, row.first, row.last);
    const std::vector<std::string> written = lines();
    ASSERT_EQ(written.size(), row.days.size() * 2);
    for (std::size_t i = 0; i < written.size(); ++i) {
      EXPECT_THAT(written[i], testing::HasSubstr("'" + row.days[i / 2] + "'"));
    }
  }
  EXPECT_EQ(support::errorOf([&] { GetDaily(work, dependencies, {0}, {32767}); }), 6);
}

}  // namespace
}  // namespace settlement
