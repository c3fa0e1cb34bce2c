#include "extract/extractors.h"

#include "support/job_fixture.h"

namespace extract {
namespace {

using support::day;
using values::Currency;

using ExtractorsTest = support::JobFixture;

// A wrong file, or a day range that reaches the DELETE but not the query.
TEST_F(ExtractorsTest, AnEmptyRangeWritesItsDeletesAndClosesItsRecordSet) {
  const struct {
    void (*extract)(Workspace&);
    Rows rows;
    const char* file;
    std::vector<std::string> deletes;
  } cases[] = {
      {자료수집,
       Rows::kSales,
       "data.mdb: ",
       {"Delete FROM SellingTB  Where SL_GROUP = 'A01'   And SL_SANGHO = '김\\'s'   And SL_RDATE "
        ">= "
        "'2013-08-01'   And SL_RDATE <= '2013-08-21';",
        "Delete FROM Selling_ItemTB  Where SLI_GROUP = 'A01'   And SLI_SANGHO = '김\\'s'   And "
        "SLI_RDATE >= '2013-08-01'   And SLI_RDATE <= '2013-08-21';"}},
      {카드매출,
       Rows::kCards,
       "config.mdb: ",
       {"Delete FROM CardItemTB  Where CI_GROUP = 'A01'   And CI_SANGHO = '김\\'s'   And CI_DAY >= "
        "'2013-08-01'   And CI_DAY <= '2013-08-21';"}},
      {아웃고수집,
       Rows::kOutgo,
       "outgo.mdb: ",
       {"Delete FROM OutGoItemTB  Where OI_GROUP = 'A01'   And OI_SANGHO = '김\\'s'   ANd OI_IDATE "
        ">= '2013-08-01'   And OI_IDATE <= '2013-08-21';"}},
      {고객매출자료수집,
       Rows::kCustomerSales,
       "config.mdb: ",
       {"Delete FROM CustomerSellingTB  Where CS_GROUP = 'A01'   And CS_SANGHO = '김\\'s'   And "
        "CS_RDATE >= '2013-08-01'   And CS_RDATE <= '2013-08-21';"}},
      {직원출퇴근자료수집,
       Rows::kAttendance,
       "data.mdb: ",
       {"Delete FROM EmployeeItemTB  Where EI_GROUP = 'A01'   And EI_SANGHO = '김\\'s'   And "
        "EI_RDATE >= '2013-08-01'   And EI_RDATE <= '2013-08-21';"}},
      {고객자료수집, Rows::kCustomers, "config.mdb: ", {}},
  };
  databases.answers["FROM "].missing = {"c_upload"};  // nobody asks for it where nothing is marked
  for (const auto& tried : cases) {
    std::filesystem::remove(work.statementPath());
    databases.queries.clear();
    tried.extract(work);
    EXPECT_EQ(lines(), tried.deletes);
    ASSERT_EQ(databases.queries.size(), 1U);
    const std::string& query = databases.queries[0];
    EXPECT_TRUE(query.starts_with(tried.file)) << query;
    const bool ranged = !tried.deletes.empty();
    EXPECT_EQ(query.find(">= #2013-08-01#") != std::string::npos, ranged) << query;
    EXPECT_EQ(query.find("<= #2013-08-21#") != std::string::npos, ranged) << query;
    EXPECT_FALSE(work.isOpen(tried.rows));
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
