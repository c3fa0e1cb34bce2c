#include <array>
#include <limits>

#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"
#include "extract/sale_items.h"
#include "values/runtime_error.h"

namespace extract {

namespace {

constexpr std::int64_t kCaptionMilliseconds = 500;

// What is worked out of a sale before its statement is built.
enum Own { kPrice, kPriceTotal, kPricePayment, kDay, kWeekday, kTime, kOwnCount };
using OwnValues = std::array<values::Variant, kOwnCount>;

// Price, total and payment go up without the part of the service charge that was changed after the
// sale was first entered; the service charge itself goes up as it is.
constexpr Column kColumns[] = {
    group("SL_GROUP"),
    tradeName("SL_SANGHO"),
    representative("SL_CHAIRMAN"),
    number("SL_ID", "S_ID"),
    text("SL_CLASS", "Class"),
    number("SL_C_ID", "C_ID"),
    number("SL_ST_ID", "ST_ID"),
    text("SL_TABLE", "Table"),
    text("SL_NAME", "Name"),
    number("SL_CUSTOMER_CNT", "CUSTOMER_NO"),
    text("SL_PAPER_NO", "PAPER_NO"),
    text("SL_PAPER_NO2", "paper_no2"),
    unescapedText("SL_PAPER_NO3", "paper_no3"),
    text("SL_NO", "no"),
    flag("SL_INCLUDE_VAT", "include_vat"),
    flag("SL_INCLUDE_SERVICE", "include_service"),
    ownNumber("SL_PRICE", kPrice),
    ownNumber("SL_PRICE_TOT", kPriceTotal),
    ownNumber("SL_PRICE_PAYMENT", kPricePayment),
    number("SL_PRICE_DISCOUNT", "Price_Discount"),
    unescapedText("SL_STR_DISCOUNT", "str_discount"),
    number("SL_PRICE_MENU_DISCOUNT", "price_menu_discount"),
    number("SL_PRICE_CUSTOMER_DISCOUNT", "price_customer_discount"),
    number("SL_PRICE_CREDIT", "price_credit"),
    number("SL_PRICE_CARD", "price_card"),
    text("SL_CARD_CLASS", "card_class"),
    number("SL_PRICE_FIRST_PAYMENT", "price_first_payment"),
    number("SL_PRICE_TICKET", "price_ticket"),
    number("SL_PRICE_FREE_GIFT", "price_free_gift"),
    number("SL_PRICE_COUPON", "price_coupon"),
    number("SL_PRICE_SERVICE", "Price_Service"),
    number("SL_PRICE_RETURN", "price_return"),
    number("SL_PRICE_VAT", "price_vat"),
    number("SL_PRICE_GRATUITY", "price_gratuity"),
    number("SL_PRICE_PAYOUT", "price_payout"),
    flag("SL_IS_JOIN", "IS_JOIN"),
    text("SL_HISTORY", "HISTORY"),
    unescapedText("SL_RDATE", "rDate"),
    ownText("SL_MODI_DATE", kDay),
    ownText("SL_MODI_WEEK", kWeekday),
    ownText("SL_MODI_TIME", kTime),
    number("SL_CUSTOMER_MALE", "CUSTOMER_NO_Male"),
    number("SL_CUSTOMER_FEMALE", "CUSTOMER_NO_Female"),
    text("SL_CHANGE_NAME", "change_name"),
    text("SL_CHANGE_CAUSE", "change_cause"),
    text("SL_MODI_TIME2", "time_modified2"),
    text("SL_CUSTOMER_NO_AGE", "CUSTOMER_NO_Age"),
    text("SL_CUSTOMER_NO_PARTY", "CUSTOMER_NO_Party"),
    zero("SL_UPLOAD"),
    flag("SL_VOID", "VOID"),
};

// One blank before Values.
constexpr InsertShape kInsert = {"SellingTB", kColumns, " ) Values ("};

constexpr RangeDelete kDeleteSales = {"SellingTB", "SL_GROUP", "SL_SANGHO", "SL_RDATE"};
constexpr RangeDelete kDeleteItems = {"Selling_ItemTB", "SLI_GROUP", "SLI_SANGHO", "SLI_RDATE"};

std::string salesQuery(const DayRange& days) {
  return "SELECT * FROM Selling  Where rDate >= " + dayLiteral(days.first) +
         "   And rDate <= " + dayLiteral(days.last) + " Order By rDate, s_ID";
}

std::int32_t checkedDifference(std::int32_t left, std::int32_t right) {
  const std::int64_t difference = static_cast<std::int64_t>(left) - right;
  if (difference < std::numeric_limits<std::int32_t>::min() ||
      difference > std::numeric_limits<std::int32_t>::max()) {
    throw RuntimeError(error::kOverflow, "Overflow: " + std::to_string(left) + " less " +
                                             std::to_string(right) + ".");
  }
  return static_cast<std::int32_t>(difference);
}

OwnValues ownValues(const localdb::RecordSet& sale) {
  const values::Variant modified = sale.field("time_modified");
  if (modified.isNull()) {
    throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null: time_modified of sale " +
                                                     NzText(sale.field("S_ID")) + ".");
  }
  const std::int32_t serviceDifference = checkedDifference(NzLong(sale.field("Price_Service")),
                                                           NzLong(sale.field("Price_Service_org")));
  const auto reduced = [&](std::string_view field) {
    return checkedDifference(NzLong(sale.field(field)), serviceDifference);
  };
  const values::Variant day = formatDay(modified);
  return {reduced("Price"),
          reduced("Price_Tot"),
          reduced("price_payment"),
          day,
          std::string(weekdayLetter(day)),
          formatTime(modified)};
}

// "Selling ... 2013-08-02 ... 1,204/5,310 (22.7%)", at most every half second.
class ProgressCaption {
 public:
  explicit ProgressCaption(const Surroundings& around) : around_(around) {}

  void update(const localdb::RecordSet& sales, std::int32_t row) {
    const std::int32_t now = around_.ticks.ticks();
    if (row == 1) shown_ = now;
    if (checkedDifference(now, shown_) <= kCaptionMilliseconds) return;
    const std::int32_t count = sales.recordCount();
    around_.progress.setCaption("Selling ... " + NzText(sales.field("rDate")) + " ... " +
                                groupedText(row) + "/" + groupedText(count) + " (" +
                                oneDecimalText(static_cast<double>(row) / count * 100) + "%)");
    shown_ = now;
  }

 private:
  const Surroundings& around_;
  std::int32_t shown_ = 0;
};

}  // namespace

void 자료수집(Workspace& work) {
  work.openDatabase(work.around.start.dataPath, "자료수집");
  const std::string first = values::dayText(work.days.first);
  const std::string last = values::dayText(work.days.last);
  work.write(rangeDelete(kDeleteSales, work.shop, first, last));
  work.write(rangeDelete(kDeleteItems, work.shop, first, last));
  InsertStatement insert(kInsert, work.shop);
  SaleItems items(work);
  ProgressCaption caption(work.around);
  work.forEachRow(work.sales, salesQuery(work.days), {{"c_upload", true}, {"cc_upload", false}},
                  [&](localdb::RecordSet& sale, std::int32_t i) {
                    caption.update(sale, i);
                    insert.build(sale, ownValues(sale), work.statement);
                    work.write(work.statement);
                    items.자료수집_Item(values::toLong(sale.field("S_ID")));
                  });
}

}  // namespace extract
