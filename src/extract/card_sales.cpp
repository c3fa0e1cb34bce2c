#include <array>
#include <map>

#include "extract/conversions.h"
#include "extract/extractors.h"
#include "extract/insert_statement.h"
#include "extract/row_fields.h"
#include "values/runtime_error.h"

namespace extract {

namespace {

enum Computed { kInDate, kInTime, kRate, kCash, kComputedCount };
using ComputedValues = std::array<values::Variant, kComputedCount>;

// Unlike in the other tables, the sale's number comes before the shop.
constexpr Column kColumns[] = {
    number("CI_S_ID", "S_ID"),
    group("CI_GROUP"),
    tradeName("CI_SANGHO"),
    representative("CI_CHAIRMAN"),
    computedText("CI_IN_DATE", kInDate),
    computedText("CI_IN_TIME", kInTime),
    text("CI_DAYS", "Days"),
    text("CI_DAY", "Day"),
    text("CI_DAYTIME", "DayTime"),
    text("CI_CARD_KIND", "card_kind"),
    text("CI_NAME", "card_name"),
    text("CI_OFFER_NAME", "offer_name"),
    number("CI_PRICE_CARDS", "price_cards"),
    computedText("CI_RATES", kRate),
    computedNumber("CI_CASH", kCash),
    text("CI_CARDNO", "cardno"),
    text("CI_NO", "sNo"),
    absoluteFlag("CI_IS_CANCEL", "is_cancel"),
    text("CI_KIND", "kind"),
    text("CI_KIND2", "Kind2"),
    absoluteFlag("CI_IS_CREDIT", "Is_Credit"),
    absoluteFlag("CI_VOID", "VOID"),
    text("CI_SIGNNAME", "SIGNNAME"),
};

constexpr InsertTemplate kInsert = {"CardItemTB", kColumns, ")  Values ("};

constexpr RangeDelete kDelete = {"CardItemTB", "CI_GROUP", "CI_SANGHO", "CI_DAY"};

// `date` is a text of year, month, day, hour and minute in two digits each. Only payments above
// zero, cancelled ones included.
std::string cardsQuery(const DayRange& days) {
  return "SELECT s_id, '20' & Left([date],2) & '.' & Mid([date],3,2) AS days, RDATE AS DAY, "
         "       Left([date],2) & '.' & Mid([date],3,2) & '.' & Mid([date],5,2) & ' ' & "
         "Mid([date],7,2) & ':' & Mid([date],9,2) AS daytime,"
         "       card_kind, card_name, offer_name, price_total AS price_cards, card_no as cardno, "
         "       [no] as sNo, is_cancel, kind, kind2, is_credit, c_upload, void, signname"
         "  FROM Credit2 "
         " Where price_total > 0"
         "   And rdate >= " +
         dayLiteral(days.first) + "   And rdate <= " + dayLiteral(days.last) + " Order By Date";
}

// A payment less the fee of `rate` percent; 0 without a rate.
values::Variant netAmount(const values::Variant& price, std::int16_t rate) {
  if (rate == 0) return 0;
  if (price.isNull()) return {};
  return values::toDouble(price) * (1 - rate * 0.01);
}

// Caches the fee rates by card kind. A kind without a rate is looked up for every payment, so that
// the message log has a line for each failure.
class Rates {
 public:
  explicit Rates(Workspace& work) : work_(work) {}

  std::int16_t of(const std::string& kind) {
    const auto known = found_.find(kind);
    if (known != found_.end()) return known->second;
    const std::int16_t rate = Rate_call(work_, kind);
    if (rate != 0) found_[kind] = rate;
    return rate;
  }

 private:
  Workspace& work_;
  std::map<std::string, std::int16_t> found_;
};

// The fields that are read besides those of the columns, in the order of kFields.
enum Field { kCardKind, kPrice };
constexpr std::string_view kFields[] = {"card_kind", "price_cards"};

ComputedValues computedValues(Workspace& work, Rates& rates, const localdb::RecordSet& card,
                              RowFields& fields) {
  // The time of the upload, not of the payment.
  const values::CivilTime now = work.dependencies.clock.now();
  const std::int16_t rate = rates.of(NzText(fields.value(card, kCardKind)));
  return {values::formatTime(now, "%Y-%m-%d"), values::formatTime(now, "%H:%M:%S"),
          values::toText(rate), netAmount(fields.value(card, kPrice), rate)};
}

std::int16_t rateOf(Workspace& work, std::string_view kind) {
  work.openDatabase(work.dependencies.start.configurationPath, "Rate_call");
  // The kind is not escaped: one with an apostrophe makes the query fail, so that it has no rate.
  const localdb::RecordSet& rates = work.open(
      Rows::kCardRates, "SELECT * From Credit_code Where Card_Kind = '" + std::string(kind) + "'");
  std::int16_t rate = 0;
  if (rates.recordCount() > 0) rate = values::toInteger(rates.field("Rate"));
  work.close(Rows::kCardRates);
  return rate;
}

}  // namespace

std::int16_t Rate_call(Workspace& work, std::string_view kind) noexcept {
  try {
    return rateOf(work, kind);
  } catch (const std::exception&) {
    work.close(Rows::kCardRates);
    return 0;
  }
}

void 카드매출(Workspace& work) {
  // The days as SqlText writes them, as in CI_DAY, so that the DELETE finds its rows.
  work.write(rangeDelete(kDelete, work.shop, values::dateText(work.days.first),
                         values::dateText(work.days.last)));
  work.openDatabase(work.dependencies.start.configurationPath, "카드매출");
  InsertStatement insert(kInsert, work.shop, work.codePage);
  Rates rates(work);
  RowFields fields(kFields);
  work.forEachRow(
      Rows::kCards, cardsQuery(work.days), {{"c_upload", true}},
      [&](localdb::RecordSet& card, std::int32_t) {
        work.writeEncoded(insert.build(card, computedValues(work, rates, card, fields)));
      });
}

}  // namespace extract
