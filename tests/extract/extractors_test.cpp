#include "extract/extractors.h"

#include "extract/sale_items.h"
#include "support/job_fixture.h"

namespace extract {
namespace {

using support::day;
using support::errorOf;
using testing::Test;
using values::Currency;

class ExtractorsTest : public support::JobFixture {
 protected:
  // A sale with what every sale needs.
  static support::FakeRow sale(int id) {
    return {{"s_id", id}, {"rdate", day(8, 2)}, {"time_modified", day(8, 2, 19, 42, 10)}};
  }
  std::vector<support::FakeRow>& sales() { return databases.answers["FROM Selling "].rows; }
};

TEST_F(ExtractorsTest, AnEmptyRangeWritesItsDeletesAndClosesItsRecordSet) {
  const struct {
    void (*extract)(Workspace&);
    std::vector<std::string> deletes;
    std::string query;
  } rows[] = {
      {자료수집,
       {"Delete FROM SellingTB  Where SL_GROUP = 'A01'   And SL_SANGHO = '김\\'s'   And SL_RDATE "
        ">= "
        "'2013-08-01'   And SL_RDATE <= '2013-08-21';",
        "Delete FROM Selling_ItemTB  Where SLI_GROUP = 'A01'   And SLI_SANGHO = '김\\'s'   And "
        "SLI_RDATE >= '2013-08-01'   And SLI_RDATE <= '2013-08-21';"},
       "data.mdb: SELECT * FROM Selling  Where rDate >= #2013-08-01#   And rDate <= #2013-08-21# "
       "Order By rDate, s_ID"},
      {카드매출,
       {"Delete FROM CardItemTB  Where CI_GROUP = 'A01'   And CI_SANGHO = '김\\'s'   And CI_DAY >= "
        "'2013-08-01'   And CI_DAY <= '2013-08-21';"},
       "config.mdb: SELECT s_id, '20' & Left([date],2) & '.' & Mid([date],3,2) AS days, RDATE AS "
       "DAY,        Left([date],2) & '.' & Mid([date],3,2) & '.' & Mid([date],5,2) & ' ' & "
       "Mid([date],7,2) & ':' & Mid([date],9,2) AS daytime,       card_kind, card_name, "
       "offer_name, price_total AS price_cards, card_no as cardno,        [no] as sNo, is_cancel, "
       "kind, kind2, is_credit, c_upload, void, signname  FROM Credit2  Where price_total > 0   "
       "And rdate >= #2013-08-01#   And rdate <= #2013-08-21# Order By Date"},
      {아웃고수집,
       {"Delete FROM OutGoItemTB  Where OI_GROUP = 'A01'   And OI_SANGHO = '김\\'s'   ANd OI_IDATE "
        ">= '2013-08-01'   And OI_IDATE <= '2013-08-21';"},
       "outgo.mdb: SELECT * FROM outgo_item  Where iDate >= #2013-08-01#   And iDate <= "
       "#2013-08-21# Order By og_id;"},
      {고객매출자료수집,
       {"Delete FROM CustomerSellingTB  Where CS_GROUP = 'A01'   And CS_SANGHO = '김\\'s'   And "
        "CS_RDATE >= '2013-08-01'   And CS_RDATE <= '2013-08-21';"},
       "config.mdb: SELECT ss_id, c_id, rdate, price, mileage, c_upload  FROM customer_selling_sum "
       " Where rdate >= #2013-08-01#   And rdate <= #2013-08-21# Order By ss_id"},
      {직원출퇴근자료수집,
       {"Delete FROM EmployeeItemTB  Where EI_GROUP = 'A01'   And EI_SANGHO = '김\\'s'   And "
        "EI_RDATE >= '2013-08-01'   And EI_RDATE <= '2013-08-21';"},
       "data.mdb: SELECT * From Employee_Item  Where ( c_upload = 0 or c_upload is null )    And "
       "rdate >= #2013-08-01#   And rdate <= #2013-08-21#   And (is_serving = 0 or is_serving is "
       "null)    And e_id > 0 Order By ei_id"},
      {고객자료수집,
       {},
       "config.mdb: SELECT c_id, name, [no] as cno, class, kind, work_place, tel1, tel2, tel3, "
       "telO1, telO2, telO3,        hp1, hp2, hp3, NotSMS, car_no, car_class, birthday_year, "
       "birthday_month, birthday_day, birthday_class,        기념일_년, 기념일_월, 기념일_일, "
       "기념일_class, email, email2, zip_code, addr, addr2, apartment,        etc, "
       "visit_day_first, visit_day_last, visit_no, total_payment, ticketing_day, "
       "ticket_price_remain,        free_gift_no, mileage, taste, upgrade_day, reg_day, uid, flag, "
       "credit_checked, e_id, ename, ticket_no, c_upload  FROM customer  Order By c_id"},
  };
  databases.answers["FROM "].missing = {"c_upload"};  // nobody asks for it where nothing is marked
  for (const auto& row : rows) {
    std::filesystem::remove(work.statementPath);
    databases.queries.clear();
    row.extract(work);
    if (!row.deletes.empty() || std::filesystem::exists(work.statementPath)) {
      EXPECT_EQ(lines(), row.deletes);
    }
    EXPECT_EQ(databases.queries, std::vector{row.query});
  }
  for (const auto* handle : {&work.sales, &work.cards, &work.outgo, &work.customerSales,
                             &work.attendance, &work.customers}) {
    EXPECT_EQ(*handle, nullptr);
  }
}

TEST_F(ExtractorsTest, ASaleGoesUpWithItsItemsBehindIt) {
  support::FakeRow row = sale(1532);
  row.insert({{"class", "1"},
              {"st_id", std::int16_t{3}},
              {"table", "12"},
              {"name", "it's Kim's"},
              {"customer_no", 2},
              {"paper_no", "0045"},
              {"paper_no3", "4'5"},
              {"no", 7},
              {"include_vat", true},
              {"include_service", 1},
              {"price", Currency{330005000}},
              {"price_tot", 33000},
              {"price_payment", 33000},
              {"str_discount", "10'%"},
              {"price_service", 3000},
              {"price_service_org", 1000},
              {"card_class", "VISA"},
              {"history", "C:\\x ☃ 똠"},
              {"time_modified2", day(8, 3)},
              {"void", -2}});
  sales() = {row};
  databases.answers["WHERE s_id = 1532"].rows = {{{"si_id", 5},
                                                  {"s_id", 1532},
                                                  {"sm1_id", 2},
                                                  {"menuname", "면's"},
                                                  {"menu", "냉면"},
                                                  {"no", 1.5},
                                                  {"selling_price", Currency{85005000}},
                                                  {"is_package", true},
                                                  {"is_cancel", 1},
                                                  {"is_service", -3},
                                                  {"time_modified", day(8, 2, 19)},
                                                  {"rdate", day(8, 2)},
                                                  {"origincomp", "O'N'"},
                                                  {"void", false}},
                                                 {{"si_id", 6}}};
  자료수집(work);

  const std::string itemStart =
      "Insert Into Selling_ItemTB (SLI_GROUP, SLI_SANGHO, SLI_CHAIRMAN, SLI_ID, SLI_SL_ID, "
      "SLI_TABLENO, SLI_MENU1, SLI_IS_MENUGRP, SLI_MENU2, SLI_MENU3, SLI_MENUNAME, SLI_QTY, "
      "SLI_CANCELNO, SLI_PRICE, SLI_AMT_COST, SLI_AMT_PRICE, SLI_AMT_DISCOUNT, SLI_CLASS, "
      "SLI_CLASS_STR, SLI_NAME, SLI_IS_PACKAGE, SLI_IS_FIRST_PAYMENT, SLI_IS_CANCEL, "
      "SLI_IS_SERVICE, SLI_IS_CUTTING, SLI_TIME_MODIFIED, SLI_RDATE, SLI_PRICE_CHANGE_ITEM, "
      "SLI_ORIGINCOMP, SLI_IS_TICKET, SLI_VOID )  Values ('A01', '김\\'s', 'Kim', ";
  const std::vector<std::string> written = lines();
  ASSERT_EQ(written.size(), 5U);
  EXPECT_EQ(written[2],
            "Insert Into SellingTB (SL_GROUP, SL_SANGHO, SL_CHAIRMAN, SL_ID, SL_CLASS, SL_C_ID, "
            "SL_ST_ID, SL_TABLE, SL_NAME, SL_CUSTOMER_CNT, SL_PAPER_NO, SL_PAPER_NO2, "
            "SL_PAPER_NO3, SL_NO, SL_INCLUDE_VAT, SL_INCLUDE_SERVICE, SL_PRICE, SL_PRICE_TOT, "
            "SL_PRICE_PAYMENT, SL_PRICE_DISCOUNT, SL_STR_DISCOUNT, SL_PRICE_MENU_DISCOUNT, "
            "SL_PRICE_CUSTOMER_DISCOUNT, SL_PRICE_CREDIT, SL_PRICE_CARD, SL_CARD_CLASS, "
            "SL_PRICE_FIRST_PAYMENT, SL_PRICE_TICKET, SL_PRICE_FREE_GIFT, SL_PRICE_COUPON, "
            "SL_PRICE_SERVICE, SL_PRICE_RETURN, SL_PRICE_VAT, SL_PRICE_GRATUITY, SL_PRICE_PAYOUT, "
            "SL_IS_JOIN, SL_HISTORY, SL_RDATE, SL_MODI_DATE, SL_MODI_WEEK, SL_MODI_TIME, "
            "SL_CUSTOMER_MALE, SL_CUSTOMER_FEMALE, SL_CHANGE_NAME, SL_CHANGE_CAUSE, "
            "SL_MODI_TIME2, SL_CUSTOMER_NO_AGE, SL_CUSTOMER_NO_PARTY, SL_UPLOAD, SL_VOID ) Values "
            "('A01', '김\\'s', 'Kim', 1532, '1', 0, 3, '12', 'it\\'s Kim's', 2, '0045', '', '4'5', "
            "'7', '1', '0', 31000, 31000, 31000, 0, '10'%', 0, 0, 0, 0, 'VISA', 0, 0, 0, 0, 3000, "
            "0, 0, 0, 0, '0', 'C:\\x ? 똠', '2013-08-02', '2013-08-02', '금', '19:42:10', 0, 0, "
            "'', '', '2013-08-03', '', '', 0, '0');");
  EXPECT_EQ(written[3],
            itemStart +
                "5, 1532, 0, 2, '면\\'s', 0, 0, '냉면', '1.5', '', '8500.5', '', '', '', "
                "'', '', '', '1', '0', '1', '3', '0', '2013-08-02 19:00:00', "
                "'2013-08-02', 0, 'O\\'N'', '0', '0');");
  EXPECT_EQ(written[4], itemStart +
                            "6, 0, 0, 0, '', 0, 0, '', '', '', '', '', '', '', '', '', "
                            "'', '0', '0', '0', '0', '0', '', '', 0, '', '0', '0');");
  EXPECT_EQ(*sales()[0].at("c_upload").as<bool>(), true);
  EXPECT_EQ(*sales()[0].at("cc_upload").as<bool>(), false);
  EXPECT_EQ(panel.yields, 1);
}

TEST_F(ExtractorsTest, AFailingSaleEndsTheStepAndKeepsWhatWasWritten) {
  const struct {
    const char* name;
    support::FakeRow change;
    int error;
    std::size_t lines;  // two DELETEs, the first sale, and what the second still wrote
  } rows[] = {
      {"no time of change", {{"time_modified", values::Variant()}}, 94, 3},
      {"time of change is a word", {{"time_modified", "어제"}}, 13, 3},
      {"service difference", {{"price_service", INT32_MAX}, {"price_service_org", -1}}, 6, 3},
      {"corrected price", {{"price_tot", INT32_MIN}, {"price_service", 1}}, 6, 3},
      {"no id for the items", {{"s_id", values::Variant()}}, 94, 4},
  };
  for (const auto& row : rows) {
    std::filesystem::remove(work.statementPath);
    support::FakeRow bad = sale(2);
    for (const auto& [field, value] : row.change) bad[field] = value;
    sales() = {sale(1), bad, sale(3)};
    EXPECT_EQ(errorOf([&] { 자료수집(work); }), row.error) << row.name;
    EXPECT_EQ(lines().size(), row.lines) << row.name;
    EXPECT_TRUE(sales()[0].contains("c_upload")) << row.name;
    EXPECT_FALSE(sales()[1].contains("c_upload")) << row.name;
    EXPECT_NE(work.sales, nullptr) << row.name;
  }
  databases.missingFiles = {"data.mdb"};
  EXPECT_EQ(errorOf([&] { 자료수집(work); }), 91);
  databases.missingFiles.clear();
  databases.answers["FROM Selling "].missing = {"history"};
  EXPECT_EQ(errorOf([&] { 자료수집(work); }), 3265);
  work.closeAll();
  EXPECT_EQ(work.sales, nullptr);
}

TEST_F(ExtractorsTest, TheCaptionIsShownAtMostEveryHalfSecond) {
  sales().assign(1204, sale(7));
  ticks.step = 251;
  자료수집(work);
  ASSERT_EQ(panel.captions.size(), 601U);
  EXPECT_EQ(panel.captions.back(), "Selling ... 2013-08-02 ... 1,203/1,204 (99.9%)");

  // The counter passes its largest value between two rows.
  sales().resize(2);
  ticks.now = INT32_MAX - 150;
  ticks.step = 100;
  EXPECT_EQ(errorOf([&] { 자료수집(work); }), 6);
}

TEST_F(ExtractorsTest, CardPaymentsLoseTheirFee) {
  databases.answers["FROM Credit2 "].rows = {
      {{"s_id", 12},
       {"days", "2013.08"},
       {"day", day(8, 2)},
       {"daytime", "13.08.02 19:42"},
       {"card_kind", "BC"},
       {"price_cards", 10000},
       {"cardno", "9410-'"},
       {"sno", "7"},
       {"is_cancel", true},
       {"kind", 2},
       {"void", -2},
       {"signname", "김's'"}},
      {{"card_kind", "O'X"}, {"price_cards", 500}},
      {{"card_kind", "SS"}, {"price_cards", Currency{500000}}},
      {{"price_cards", 3e9}}};
  databases.answers["Card_Kind = 'BC'"].rows = {{{"rate", 3}}, {{"rate", 9}}};
  databases.answers["Card_Kind = 'SS'"].rows = {{{"rate", 5.5}}};
  databases.answers["Card_Kind = 'O'X'"].fails = true;
  databases.answers["Card_Kind = ''"].rows = {{{"rate", 1}}};
  카드매출(work);

  const std::string start =
      "Insert Into CardItemTB (CI_S_ID, CI_GROUP, CI_SANGHO, CI_CHAIRMAN, CI_IN_DATE, CI_IN_TIME, "
      "CI_DAYS, CI_DAY, CI_DAYTIME, CI_CARD_KIND, CI_NAME, CI_OFFER_NAME, CI_PRICE_CARDS, "
      "CI_RATES, CI_CASH, CI_CARDNO, CI_NO, CI_IS_CANCEL, CI_KIND, CI_KIND2, CI_IS_CREDIT, "
      "CI_VOID, CI_SIGNNAME)  Values (";
  const std::string shop = "'A01', '김\\'s', 'Kim', '2013-08-21', '15:30:45', ";
  const std::string rest = "'', '', '0', '', '', '0', '0', '');";
  const std::vector<std::string> written = lines();
  ASSERT_EQ(written.size(), 5U);
  EXPECT_EQ(written[1], start + "12, " + shop +
                            "'2013.08', '2013-08-02', '13.08.02 19:42', 'BC', '', '', 10000, '3', "
                            "9700, '9410-\\'', '7', '1', '2', '', '0', '2', '김\\'s'');");
  EXPECT_EQ(written[2], start + "0, " + shop + "'', '', '', 'O\\'X', '', '', 500, '0', 0, " + rest);
  // 50 less 6 % is 47; the rate of 5.5 is a whole number first, halves to even.
  EXPECT_EQ(written[3], start + "0, " + shop + "'', '', '', 'SS', '', '', 50, '6', 47, " + rest);
  EXPECT_EQ(written[4], start + "0, " + shop + "'', '', '', '', '', '', 0, '1', 0, " + rest);
  for (const auto& row : databases.answers["FROM Credit2 "].rows) {
    EXPECT_TRUE(row.contains("c_upload"));
    EXPECT_FALSE(row.contains("cc_upload"));
  }
}

TEST_F(ExtractorsTest, AnOutgoRowIsDeletedBySerialBeforeItIsSent) {
  databases.answers["FROM outgo_item "].rows = {{{"og_id", 4},
                                                 {"company", "O'Neil's"},
                                                 {"unit_price", 3e9},
                                                 {"hyeonjaejanaek", -1000},
                                                 {"rdate", day(8, 1)},
                                                 {"idate", day(8, 2)},
                                                 {"comp_id", 8},
                                                 {"isipgo", 3},
                                                 {"idserial", "ID'4"},
                                                 {"closed", true}},
                                                {}};
  아웃고수집(work);
  const std::string start =
      "Insert Into OutGoItemTB (OI_GROUP, OI_SANGHO, OI_CHAIRMAN, OI_OG_ID, OI_COMPANY, "
      "OI_OMENU1, OI_OMENU2, OI_OMENU3, OI_NO, OI_UNIT_PRICE, OI_PRICE, OI_JEONJANGEUM, OI_ENURI, "
      "OI_JIGEUPAEK, OI_HYEONJANAEK, OI_RDATE, OI_IDATE, OI_ETC_TYPE, OI_ETC_TYPE2, OI_ETC, "
      "OI_COMP_ID, OI_ISIPGO, OI_OGSERIAL, OI_ORIGINCOMP, OI_FINALCOMP, OI_IDSERIAL, OI_AUTO_2)  "
      "Values ('A01', '김\\'s', 'Kim', ";
  const std::vector<std::string> written = lines();
  ASSERT_EQ(written.size(), 5U);
  EXPECT_EQ(written[1],
            "Delete FROM OutGoItemTB WHERE OI_IDSERIAL = 'ID\\'4'   And OI_GROUP "
            "='A01' And OI_SANGHO ='김\\'s';");
  EXPECT_EQ(written[2], start +
                            "4, 'O\\'Neil's', '', '', '', 0, 0, 0, 0, 0, 0, -1000, "
                            "'2013-08-01', '2013-08-02', '', '', '', '8', '3', '', '', '', "
                            "'ID\\'4', '1');");
  EXPECT_EQ(written[3],
            "Delete FROM OutGoItemTB WHERE OI_IDSERIAL = ''   And OI_GROUP ='A01' And "
            "OI_SANGHO ='김\\'s';");
  EXPECT_EQ(written[4], start +
                            "0, '', '', '', '', 0, 0, 0, 0, 0, 0, 0, '', '', '', '', '', '', "
                            "'0', '', '', '', '', '0');");
  EXPECT_TRUE(databases.answers["FROM outgo_item "].rows[1].contains("c_upload"));
}

TEST_F(ExtractorsTest, CustomerSalesAndAttendanceKeepTheirOwnForms) {
  databases.answers["FROM customer_selling_sum"].rows = {
      {{"ss_id", 15}, {"c_id", 302}, {"rdate", day(8, 2)}, {"price", Currency{450005000}}}};
  databases.answers["From Employee_Item"].rows = {{{"ei_id", 5},
                                                   {"e_id", 2},
                                                   {"time_in", day(8, 2, 19, 5, 59)},
                                                   {"time_out", day(8, 3, 2, 58)},
                                                   {"etc", "지각'"},
                                                   {"time_modified", day(8, 2, 19, 6)},
                                                   {"rdate", day(8, 2)}},
                                                  {{"ei_id", 6}}};
  고객매출자료수집(work);
  직원출퇴근자료수집(work);
  const std::string start =
      "Insert Into EmployeeItemTB (EI_GROUP, EI_SANGHO, EI_CHAIRMAN, EI_ID, E_ID, EI_TIME_IN, "
      "EI_TIME_OUT, EI_ETC, EI_TIME_MODIFIED, EI_RDATE ) Values ('A01', '김\\'s', 'Kim', ";
  const std::vector<std::string> written = lines();
  ASSERT_EQ(written.size(), 5U);
  EXPECT_EQ(written[1],
            "Insert Into CustomerSellingTB (CS_GROUP, CS_SANGHO, CS_CHAIRMAN, CS_SS_ID, CS_C_ID, "
            "CS_RDATE, CS_PRICE, CS_MILEAGE ) Values ('A01', '김\\'s', 'Kim', 15, 302, "
            "'2013-08-02', 45000, 0);");
  EXPECT_EQ(written[3], start +
                            "5, 2, '19:05', '2013-08-03 02:58:00', '지각\\'', "
                            "'2013-08-02 19:06:00', '2013-08-02');");
  EXPECT_EQ(written[4], start + "6, 0, '', '', '', '', '');");
  EXPECT_TRUE(databases.answers["FROM customer_selling_sum"].rows[0].contains("c_upload"));
  EXPECT_TRUE(databases.answers["From Employee_Item"].rows[1].contains("c_upload"));
}

// Whatever ends a walk: the file holds what was written before, and the rows whose statements are
// all in it are marked, no others.
TEST_F(ExtractorsTest, AWalkThatFailsHasMarkedTheRowsThatAreInTheFile) {
  // The file is a link, so that it can be there at one moment and out of reach at the next.
  const std::string file = folder.path() / "file";
  const std::string link = folder.path() / "link";
  std::filesystem::create_symlink(file, work.statementPath);
  std::filesystem::create_symlink(folder.path() / "no folder" / "file", link);
  const struct {
    int error;
    std::function<void()> failing;  // between the two statements of row 500
  } cases[] = {{94, [] { throw RuntimeError(error::kInvalidUseOfNull, ""); }},
               {53, [&] { std::filesystem::rename(link, work.statementPath); }}};
  for (const auto& tried : cases) {
    std::filesystem::remove(file);
    auto& rows = databases.answers["FROM rows"].rows;
    rows.assign(1000, {});
    work.openDatabase(start.dataPath, "");
    EXPECT_EQ(tried.error, errorOf([&] {
                work.forEachRow(work.sales, "SELECT * FROM rows", {{"sent", true}},
                                [&](localdb::RecordSet&, std::int32_t number) {
                                  work.write(std::to_string(2 * number - 1));
                                  if (number == 500) tried.failing();
                                  work.write(std::to_string(2 * number));
                                });
              }));
    const auto written = linesOf(file);
    if (tried.error == 94) {
      EXPECT_EQ(written.size(), 999U);
    }
    for (std::size_t i = 0; i < written.size(); ++i) EXPECT_EQ(written[i], std::to_string(i + 1));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(rows[i].contains("sent"), i < written.size() / 2) << i << " of " << written.size();
    }
  }
}

TEST_F(ExtractorsTest, CustomersReplaceTheServersWholeList) {
  auto& rows = databases.answers["FROM customer "].rows;
  rows = {{{"c_id", 1},
           {"name", "O'N'"},
           {"cno", "7"},
           {"notsms", true},
           {"기념일_년", "1999"},
           {"기념일_class", true},
           {"visit_day_last", day(8, 2, 3)},
           {"total_payment", 31000}}};
  고객자료수집(work);
  const std::vector<std::string> written = lines();
  ASSERT_EQ(written.size(), 2U);
  EXPECT_EQ(written[0],
            "Delete From CustomerTB  Where CT_GROUP = 'A01'   And CT_SANGHO = '김\\'s';");
  EXPECT_EQ(written[1],
            "Insert Into CustomerTB (CT_GROUP, CT_SANGHO, CT_CHAIRMAN, CT_C_ID, CT_NAME, CT_NO, "
            "CT_CLASS, CT_KIND, CT_WORK_PLACE, CT_TEL1, CT_TEL2, CT_TEL3, CT_TELO1, CT_TELO2, "
            "CT_TELO3, CT_HP1, CT_HP2, CT_HP3, CT_NOTSMS, CT_CAR_NO, CT_CAR_CLASS, "
            "CT_BIRTHDAY_YEAR, CT_BIRTHDAY_MONTH, CT_BIRTHDAY_DAY, CT_BIRTHDAY_CLASS, "
            "CT_MEMORY_YEAR, CT_MEMORY_MONTH, CT_MEMORY_DAY, CT_MEMORY_CLASS, CT_EMAIL, "
            "CT_EMAIL2, CT_ZIPCODE, CT_ADDR, CT_ADDR2, CT_APARTMENT, CT_ETC, CT_VISIT_DAY_FIRST, "
            "CT_VISIT_DAY_LAST, CT_VISIT_NO, CT_TOTAL_PAYMENT, CT_TICKETING_DAY, "
            "CT_TICKET_PRICE_REMAIN, CT_FREE_GIFT_NO, CT_MILEAGE, CT_TASTE, CT_UPGRADE_DAY, "
            "CT_REG_DAY, CT_UID, CT_FLAG, CT_CREDIT_CHECKED, CT_E_ID, CT_ENAME, CT_TICKET_NO)  "
            "Values ('A01', '김\\'s', 'Kim', 1, 'O\\'N'', '7', '', '', '', '', '', '', '', '', "
            "'', '', '', '', '1', '', '', '', '', '', '0', '1999', '', '', '1', '', '', '', '', "
            "'', '0', '', '', '2013-08-02 03:00:00', 0, 31000, '', 0, 0, 0, '', '', '', 0, '0', "
            "'0', 0, '', 0);");
  EXPECT_FALSE(rows[0].contains("c_upload"));
}

}  // namespace
}  // namespace extract
