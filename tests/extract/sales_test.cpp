#include "extract/extractors.h"
#include "support/job_fixture.h"

namespace extract {
namespace {

using support::day;
using support::errorOf;
using values::Currency;

// A sale with what every sale needs.
support::FakeRow sale(int id) {
  return {{"s_id", id}, {"rdate", day(8, 2)}, {"time_modified", day(8, 2, 19, 42, 10)}};
}

class SalesTest : public support::JobFixture {
 protected:
  std::vector<support::FakeRow>& sales() { return databases.answers["FROM Selling "].rows; }
};

TEST_F(SalesTest, ASaleIsFollowedByItsItems) {
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

TEST_F(SalesTest, AFailingSaleEndsTheStepAndKeepsWhatWasWritten) {
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
    std::filesystem::remove(work.statementPath());
    support::FakeRow bad = sale(2);
    for (const auto& [field, value] : row.change) bad[field] = value;
    sales() = {sale(1), bad, sale(3)};
    EXPECT_EQ(errorOf([&] { 자료수집(work); }), row.error) << row.name;
    EXPECT_EQ(lines().size(), row.lines) << row.name;
    EXPECT_TRUE(sales()[0].contains("c_upload")) << row.name;
    EXPECT_FALSE(sales()[1].contains("c_upload")) << row.name;
    EXPECT_TRUE(work.isOpen(Rows::kSales)) << row.name;
  }
  databases.missingFiles = {"data.mdb"};
  EXPECT_EQ(errorOf([&] { 자료수집(work); }), 91);
  databases.missingFiles.clear();
  databases.answers["FROM Selling "].missing = {"history"};
  EXPECT_EQ(errorOf([&] { 자료수집(work); }), 3265);
  work.closeAll();
  EXPECT_FALSE(work.isOpen(Rows::kSales));
}

TEST_F(SalesTest, TheCaptionIsShownAtMostEveryHalfSecond) {
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

}  // namespace
}  // namespace extract
