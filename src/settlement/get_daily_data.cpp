#include "settlement/get_daily_data.h"

#include <cmath>
#include <new>
#include <utility>

#include "extract/conversions.h"
#include "settlement/day_reader.h"
#include "settlement/derived_figures.h"
#include "values/runtime_error.h"
#include "values/variant.h"

namespace lib_결산 {

namespace {

using extract::NzBool;
using extract::NzLong;
using extract::NzText;

constexpr std::int16_t kDefaultVatRate = 10;
constexpr int kOutOfMemory = 7;

// An empty value counts as missing.
bool isOn(const std::string& setting) { return !setting.empty() && values::toBool(setting); }

class Computation {
 public:
  Computation(const Dependencies& dependencies, values::DateTime day, DailySettlement& figures)
      : dependencies_(dependencies),
        reader_(dependencies, figures),
        lookupDate_(day),
        figures_(figures),
        dateFilter_("WHERE rdate = #" + values::dayText(day) + "#") {
    std::string day8 = values::dayText(day).substr(2);  // yy.MM.dd, the form of qryCardItem's day
    day8[2] = day8[5] = '.';
    cardDayFilter_ = "WHERE day = '" + day8 + "'";
  }

  void run() {
    readSettings();
    readShop();
    readCredit();
    readCards();
    readSales();
    readTotal();
    readOutgo();
    reader_.begin(21);
    deriveCashAndVat(figures_, switches_);
    reader_.begin(22);
    deriveAverages(figures_, switches_);
  }

  // Number of the current step.
  [[nodiscard]] int step() const { return reader_.step(); }

 private:
  using Rows = DayReader::Rows;

  void readSettings();
  void readShop();
  void readCredit();
  void readTickets();
  void readCards();
  void readSales();
  void readTotal();
  void readOutgo();

  const Dependencies& dependencies_;
  DayReader reader_;
  const values::DateTime lookupDate_;
  DailySettlement& figures_;
  const std::string dateFilter_;
  std::string cardDayFilter_;
  Switches switches_;
  bool odbcCustomer_ = false;  // tickets are read from the server, which is pinged first
};

void Computation::readSettings() {
  reader_.begin(1, "ODBC");
  reader_.begin(2);
  odbcCustomer_ = isOn(dependencies_.settings.read("연결", "ODBCcustomer", ""));
  switches_.serviceChargeOffNetSales =
      isOn(dependencies_.settings.read("NewType", "ApplyDCinRO", ""));
}

void Computation::readShop() {
  reader_.begin(4, "Set_Basic");
  reader_.openDatabase("config.mdb");
  if (const Rows basic = reader_.open("set_basic", localdb::kOpenTable); basic->recordCount() > 0) {
    basic->moveFirst();
    const values::Variant rate = basic->field("rate_surtax");
    switches_.vatRate = rate.isNull() ? kDefaultVatRate : values::toInteger(rate);
    if (!NzBool(basic->field("enable_rate_surtax"))) switches_.vatRate = 0;
    switches_.vatIncluded = NzBool(basic->field("include_rate_surtax"));
    switches_.serviceRateEnabled = NzBool(basic->field("enable_rate_sacrifice_price"));
    switches_.serviceRateIncluded = NzBool(basic->field("include_rate_sacrifice_price"));
  }

  reader_.begin(5, "set_basic2");
  const Rows history = reader_.open("SELECT * FROM set_basic2 ORDER BY si2_id DESC");
  while (!history->atEnd()) {
    const values::Variant since = history->field("rDate");
    if (!since.isNull() && std::floor(values::toDate(since).serial) <= lookupDate_.serial) {
      figures_[Figure::종업원수] = NzLong(history->field("num_employee"));
      figures_[Figure::좌석수] = NzLong(history->field("num_table"));
      break;
    }
    history->moveNext();
  }

  reader_.begin(6, "set_basic3");
  // Without a day: the table holds the till's counts since it was opened.
  reader_.addFirstRow("SELECT * FROM set_basic3 ",
                      {{{"hand_amount"}, Figure::시제},
                       {{"num_drawer", "num_drawer2", "num_drawer3"}, Figure::돈통열린회수},
                       {{"num_paper"}, Figure::전표건수},
                       {{"num_cancel"}, Figure::취소건수}});
}

void Computation::readCredit() {
  reader_.begin(7, "qryRstCredit");
  // Each row overwrites: the last one of a kind wins.
  const Rows credit = reader_.open("SELECT * FROM qryRstCredit " + dateFilter_);
  for (; !credit->atEnd(); credit->moveNext()) {
    const bool byCard = NzText(credit->field("etc")) == "카드";
    figures_[byCard ? Figure::외상카드입금 : Figure::외상현금입금] =
        NzLong(credit->field("price_ins"));
  }

  reader_.begin(8);
  readTickets();

  reader_.begin(9, "qryRstFreeGift");
  reader_.sumRows("SELECT * FROM qryRstFreeGift ", {{"nos", Figure::경품건수}});

  reader_.begin(10, "Booking");
  const std::string bookedOn = "WHERE indate" + dateFilter_.substr(dateFilter_.find(" = "));
  reader_.sumRows("SELECT * FROM booking " + bookedOn, {{"first_payment", Figure::선금금액}});
}

void Computation::readTickets() {
  const bool reachable = !odbcCustomer_ || dependencies_.centralAnswers();
  reader_.begin(8, "qryODBCRstRicket Or qryRstTicket");
  if (!reachable) return;
  const std::string query = odbcCustomer_ ? "qryODBCRstTicket " : "qryRstTicket ";
  reader_.addFirstRow("SELECT * FROM " + query + dateFilter_,
                      {{{"price_gets"}, Figure::상품권판매}});
}

void Computation::readCards() {
  const std::string slips = "SELECT * FROM qryCardItem " + cardDayFilter_;
  reader_.begin(11, "qryCardItem");
  reader_.sumRows(
      slips + " AND (kind<>3) AND(kind2<>2 AND is_cancel=False) AND s_id>0 AND is_credit=false",
      {{"price_cards", Figure::카드매출}});
  reader_.begin(12);
  reader_.sumRows(slips + " AND (kind<>3) AND (kind2<>2 AND is_cancel=False) AND s_id=0",
                  {{"price_cards", Figure::카드지불외}});
  reader_.begin(13);
  reader_.sumRows(slips + " AND (kind<>3) AND (kind2=2 AND is_cancel=False) AND s_id=0",
                  {{"price_cards", Figure::카드외부취소}});
}

void Computation::readSales() {
  reader_.begin(14);
  reader_.openDatabase("data.mdb");
  reader_.begin(14, "qryRstCreditTerminate");
  reader_.addFirstRow("SELECT * FROM qryRstCreditTerminate " + dateFilter_,
                      {{{"prices"}, Figure::외상종료액}});

  reader_.begin(15, "Selling");
  if (const Rows sales = reader_.open("SELECT * FROM selling " + dateFilter_)) {
    figures_[Figure::주문건수] = sales->recordCount();  // set even when a sum overflows
    reader_.sumRows(*sales, {{"price_change", Figure::매가변경}, {"price_trim", Figure::절상절하}});
  }

  reader_.begin(16, "Selling_Item");
  figures_[Figure::서비스건수] =
      reader_.open("SELECT * FROM selling_item " + dateFilter_ + " AND is_service=True")
          ->recordCount();

  reader_.begin(17, "qryRstSellingItemSum");
  reader_.sumRows("SELECT * FROM qryRstSellingItemSum " + dateFilter_,
                  {{"cost_amounts", Figure::총원가}, {"margin_amounts", Figure::총마진}});

  reader_.begin(18, "qryRstSelling");
  reader_.sumRows("SELECT * FROM qryRstSelling " + dateFilter_,
                  {{"price_credits", Figure::외상매출},
                   {"price_discounts", Figure::할인},
                   {"price_services", Figure::서비스},
                   {"price_coupons", Figure::쿠폰사용},
                   {"price_tickets", Figure::상품권사용},
                   {"price_free_gifts", Figure::경품현금지급},
                   {"price_gratuitys", Figure::봉사료},
                   {"price_payouts", Figure::페이아웃},
                   {"price_vats", Figure::부가세},
                   {"customer_nos", Figure::손님수},
                   {"customer_nos_male", Figure::손님수남},
                   {"customer_nos_female", Figure::손님수여},
                   {"team_nos", Figure::테이블수},
                   {"coupons", Figure::쿠폰건수}});
}

void Computation::readTotal() {
  reader_.begin(19, "qryRstSum");
  reader_.sumRows("SELECT * FROM qryRstSum " + dateFilter_, {{"sa", Figure::총판매액}});
  reader_.closeDatabase();
  addServiceCharge(figures_, switches_);
}

void Computation::readOutgo() {
  reader_.begin(20);
  reader_.openDatabase("outgo.mdb");
  reader_.begin(20, "outgo_item");
  const auto query = [&](std::string_view sum, std::string_view types) {
    return "SELECT Sum(" + std::string(sum) + " FROM outgo_item " + dateFilter_ + " AND (" +
           std::string(types);
  };
  // Types 2 and 3 are both outlay and cash taken out; the outlay adds the price of type 2 and the
  // amount paid of type 3.
  reader_.addFirstRow(query("price) as JiGeupAekS", "etc_type=1 OR etc_type=2 OR etc_type=4) "),
                      {{{"JiGeupAekS"}, Figure::지출액}});
  reader_.addFirstRow(query("JiGeupAek) as JiGeupAekS", "etc_type=3 OR etc_type=5) "),
                      {{{"JiGeupAekS"}, Figure::지출액}});
  reader_.addFirstRow(query("JiGeupAek) as JiGeupAekS", "etc_type=2 OR etc_type=3 OR etc_type=6) "),
                      {{{"JiGeupAekS"}, Figure::출금}});
  reader_.addFirstRow(query("price) as prices", "etc_type=9)"), {{{"prices"}, Figure::현금입금}});
  reader_.closeDatabase();
}

}  // namespace

bool GetDailyData(const Dependencies& dependencies, values::DateTime LookupDate,
                  DailySettlement& settlement) noexcept {
  settlement = {};
  try {
    Computation computation(dependencies, LookupDate, settlement);
    DayFailure failed;
    try {
      computation.run();
      return true;
    } catch (const RuntimeError& failure) {
      failed = {computation.step(), failure.number(), failure.description()};
    } catch (const std::bad_alloc&) {
      failed = {computation.step(), kOutOfMemory, "Out of memory"};
    }
    dependencies.message("E)lib_결산->GetDailyData(LookupDate:=" + values::dateText(LookupDate) +
                         ")[Erl:=" + std::to_string(failed.step) +
                         "](Eno:=" + std::to_string(failed.number) + ")");
    settlement.failure = std::move(failed);
  } catch (const std::exception&) {
    return false;  // the message log failed as well
  }
  return false;
}

}  // namespace lib_결산
