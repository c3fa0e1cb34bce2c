#include "extract/extractors.h"
#include "support/job_fixture.h"

namespace extract {
namespace {

using support::day;
using values::Currency;

using CardSalesTest = support::JobFixture;

TEST_F(CardSalesTest, CardPaymentsLoseTheirFee) {
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

}  // namespace
}  // namespace extract
