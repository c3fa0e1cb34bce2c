#include <array>
#include <limits>

#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"
#include "extract/row_fields.h"
#include "extract/sale_items.h"
#include "values/runtime_error.h"

namespace extract {

namespace {

constexpr std::int64_t kCaptionMilliseconds = 500;

// Values computed from a sale before its statement is built.
enum Computed { kPrice, kPriceTotal, kPricePayment, kDay, kWeekday, kTime, kComputedCount };
using ComputedValues = std::array<values::Variant, kComputedCount>;

// Price, total and payment are sent less the change of the service charge since the sale was first
// entered; the service charge itself is sent unchanged.
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
    computedNumber("SL_PRICE", kPrice),
    computedNumber("SL_PRICE_TOT", kPriceTotal),
    computedNumber("SL_PRICE_PAYMENT", kPricePayment),
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
    computedText("SL_MODI_DATE", kDay),
    computedText("SL_MODI_WEEK", kWeekday),
    computedText("SL_MODI_TIME", kTime),
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
constexpr InsertTemplate kInsert = {"SellingTB", kColumns, " ) Values ("};

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

// The fields that are read besides those of the columns, in the order of kFields.
enum Field { kSaleId, kModified, kService, kFirstService, kFullPrice, kTotal, kPayment };
constexpr std::string_view kFields[] = {
    "S_ID",  "time_modified", "Price_Service", "Price_Service_org",
    "Price", "Price_Tot",     "price_payment"};

ComputedValues computedValues(const localdb::RecordSet& sale, RowFields& fields) {
  const values::Variant modified = fields.value(sale, kModified);
  if (modified.isNull()) {
    throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null: time_modified of sale " +
                                                     NzText(fields.value(sale, kSaleId)) + ".");
  }
  const auto amount = [&](Field field) { return NzLong(fields.value(sale, field)); };
  const std::int32_t serviceDifference = checkedDifference(amount(kService), amount(kFirstService));
  const auto reduced = [&](Field field) {
    return checkedDifference(amount(field), serviceDifference);
  };
  const values::Variant day = formatDay(modified);
  return {
      reduced(kFullPrice), reduced(kTotal), reduced(kPayment), day, std::string(weekdayLetter(day)),
      formatTime(modified)};
}

// "Selling ... 2013-08-02 ... 1,204/5,310 (22.7%)", at most every half second.
class ProgressCaption {
 public:
  explicit ProgressCaption(const Dependencies& dependencies) : dependencies_(dependencies) {}

  void update(const localdb::RecordSet& sales, std::int32_t row) {
    const std::int32_t now = dependencies_.ticks.ticks();
    if (row == 1) shown_ = now;
    if (checkedDifference(now, shown_) <= kCaptionMilliseconds) return;
    const std::int32_t count = sales.recordCount();
    dependencies_.progress.setCaption(
        "Selling ... " + NzText(sales.field("rDate")) + " ... " + groupedText(row) + "/" +
        groupedText(count) + " (" + oneDecimalText(static_cast<double>(row) / count * 100) + "%)");
    shown_ = now;
  }

 private:
  const Dependencies& dependencies_;
  std::int32_t shown_ = 0;
};

}  // namespace

void 자료수집(Workspace& work) {
  work.openDatabase(work.dependencies.start.dataPath, "자료수집");
  const std::string first = values::dayText(work.days.first);
  const std::string last = values::dayText(work.days.last);
  work.write(rangeDelete(kDeleteSales, work.shop, first, last));
  work.write(rangeDelete(kDeleteItems, work.shop, first, last));
  InsertStatement insert(kInsert, work.shop, work.codePage);
  RowFields fields(kFields);
  SaleItems items(work);
  ProgressCaption caption(work.dependencies);
  work.forEachRow(Rows::kSales, salesQuery(work.days), {{"c_upload", true}, {"cc_upload", false}},
                  [&](localdb::RecordSet& sale, std::int32_t i) {
                    caption.update(sale, i);
                    work.writeEncoded(insert.build(sale, computedValues(sale, fields)));
                    items.자료수집_Item(values::toLong(fields.value(sale, kSaleId)));
                  });
}

}  // namespace extract
