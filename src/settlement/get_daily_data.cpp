#include "settlement/get_daily_data.h"

#include <cmath>
#include <initializer_list>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "extract/conversions.h"
#include "platform/files.h"
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

// A field of a query's rows and the figure that it is added to.
struct SummedField {
  std::string_view field;
  Figure figure;
};
using SummedFields = std::initializer_list<SummedField>;

// Fields of a query's first row whose sum is added to a figure.
struct FirstRowField {
  std::initializer_list<std::string_view> fields;
  Figure figure;
};
using FirstRowFields = std::initializer_list<FirstRowField>;

// An empty value counts as missing.
bool isOn(const std::string& setting) { return !setting.empty() && values::toBool(setting); }

class Computation {
 public:
  Computation(const Dependencies& dependencies, values::DateTime day, DailySettlement& figures)
      : dependencies_(dependencies),
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
    step_ = 21;
    deriveCashAndVat(figures_, switches_);
    step_ = 22;
    deriveAverages(figures_, switches_);
  }

  // Number of the current step.
  [[nodiscard]] int step() const { return step_; }

 private:
  using Rows = std::unique_ptr<localdb::RecordSet>;

  void readSettings();
  void readShop();
  void readCredit();
  void readTickets();
  void readCards();
  void readSales();
  void readTotal();
  void readOutgo();

  void begin(int step, std::string_view what);
  void openDatabase(std::string_view file);
  [[nodiscard]] Rows open(std::string_view source, std::int32_t type = localdb::kOpenDynaset);
  void sumRows(const std::string& query, SummedFields fields);
  void sumRows(localdb::RecordSet& rows, SummedFields fields);
  void takeFirstRow(const std::string& query, FirstRowFields fields);

  const Dependencies& dependencies_;
  const values::DateTime lookupDate_;
  DailySettlement& figures_;
  const std::string dateFilter_;
  std::string cardDayFilter_;
  std::shared_ptr<localdb::Database> database_;
  Switches switches_;
  bool odbcCustomer_ = false;  // tickets are read from the server, which is pinged first
  int step_ = 1;
};

void Computation::begin(int step, std::string_view what) {
  step_ = step;
  dependencies_.jobLog.append(
      "Daily Data Load -- " + std::string(what) + " 연결 Start " +
      values::formatTime(dependencies_.clock.now(), values::kStampFormat));
}

void Computation::openDatabase(std::string_view file) {
  const std::string path = platform::joinPath(dependencies_.programFolder, file);
  if (!dependencies_.databases.JetOpenDB(database_, path, false, false, "", "GetDailyData")) {
    throw RuntimeError(error::kObjectNotSet, "Object variable not set: no database " + path);
  }
}

Computation::Rows Computation::open(std::string_view source, std::int32_t type) {
  Rows rows;
  if (!dependencies_.databases.JetOpenRST(database_, rows, source, type, 0, 0, false)) {
    throw RuntimeError(error::kObjectNotSet,
                       "Object variable not set: no record set of " + std::string(source));
  }
  return rows;
}

void Computation::sumRows(localdb::RecordSet& rows, SummedFields fields) {
  if (rows.recordCount() == 0) return;
  // Each field is looked up in the first row: a missing one leaves the figures before it with that
  // row's values.
  std::vector<std::size_t> indexes;
  for (rows.moveFirst(); !rows.atEnd(); rows.moveNext()) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const SummedField& sum = fields.begin()[i];
      if (indexes.size() == i) indexes.push_back(rows.fieldIndex(sum.field));
      figures_[sum.figure] = checkedAdd(figures_[sum.figure], NzLong(rows.field(indexes[i])));
    }
  }
}

void Computation::sumRows(const std::string& query, SummedFields fields) {
  sumRows(*open(query), fields);
}

void Computation::takeFirstRow(const std::string& query, FirstRowFields fields) {
  const Rows rows = open(query);
  if (rows->recordCount() == 0) return;
  rows->moveFirst();
  for (const FirstRowField& sum : fields) {
    std::int32_t total = 0;  // a figure whose sum overflows stays as it was
    for (const std::string_view field : sum.fields) {
      total = checkedAdd(total, NzLong(rows->field(field)));
    }
    figures_[sum.figure] = checkedAdd(figures_[sum.figure], total);
  }
}

void Computation::readSettings() {
  begin(1, "ODBC");
  step_ = 2;
  odbcCustomer_ = isOn(dependencies_.settings.read("연결", "ODBCcustomer", ""));
  switches_.serviceChargeOffNetSales =
      isOn(dependencies_.settings.read("NewType", "ApplyDCinRO", ""));
}

void Computation::readShop() {
  begin(4, "Set_Basic");
  openDatabase("config.mdb");
  if (const Rows basic = open("set_basic", localdb::kOpenTable); basic->recordCount() > 0) {
    basic->moveFirst();
    const values::Variant rate = basic->field("rate_surtax");
    switches_.vatRate = rate.isNull() ? kDefaultVatRate : values::toInteger(rate);
    if (!NzBool(basic->field("enable_rate_surtax"))) switches_.vatRate = 0;
    switches_.vatIncluded = NzBool(basic->field("include_rate_surtax"));
    switches_.serviceRateEnabled = NzBool(basic->field("enable_rate_sacrifice_price"));
    switches_.serviceRateIncluded = NzBool(basic->field("include_rate_sacrifice_price"));
  }

  begin(5, "set_basic2");
  const Rows history = open("SELECT * FROM set_basic2 ORDER BY si2_id DESC");
  while (!history->atEnd()) {
    const values::Variant since = history->field("rDate");
    if (!since.isNull() && std::floor(values::toDate(since).serial) <= lookupDate_.serial) {
      figures_[Figure::종업원수] = NzLong(history->field("num_employee"));
      figures_[Figure::좌석수] = NzLong(history->field("num_table"));
      break;
    }
    history->moveNext();
  }

  begin(6, "set_basic3");
  // Without a day: the table holds the till's counts since it was opened.
  takeFirstRow("SELECT * FROM set_basic3 ",
               {{{"hand_amount"}, Figure::시제},
                {{"num_drawer", "num_drawer2", "num_drawer3"}, Figure::돈통열린회수},
                {{"num_paper"}, Figure::전표건수},
                {{"num_cancel"}, Figure::취소건수}});
}

void Computation::readCredit() {
  begin(7, "qryRstCredit");
  // Each row overwrites: the last one of a kind wins.
  const Rows credit = open("SELECT * FROM qryRstCredit " + dateFilter_);
  for (; !credit->atEnd(); credit->moveNext()) {
    const bool byCard = NzText(credit->field("etc")) == "카드";
    figures_[byCard ? Figure::외상카드입금 : Figure::외상현금입금] =
        NzLong(credit->field("price_ins"));
  }

  step_ = 8;
  readTickets();

  begin(9, "qryRstFreeGift");
  sumRows("SELECT * FROM qryRstFreeGift ", {{"nos", Figure::경품건수}});

  begin(10, "Booking");
  const std::string bookedOn = "WHERE indate" + dateFilter_.substr(dateFilter_.find(" = "));
  sumRows("SELECT * FROM booking " + bookedOn, {{"first_payment", Figure::선금금액}});
}

void Computation::readTickets() {
  const bool reachable = !odbcCustomer_ || dependencies_.centralAnswers();
  begin(8, "qryODBCRstRicket Or qryRstTicket");
  if (!reachable) return;
  const std::string query = odbcCustomer_ ? "qryODBCRstTicket " : "qryRstTicket ";
  takeFirstRow("SELECT * FROM " + query + dateFilter_, {{{"price_gets"}, Figure::상품권판매}});
}

void Computation::readCards() {
  const std::string slips = "SELECT * FROM qryCardItem " + cardDayFilter_;
  begin(11, "qryCardItem");
  sumRows(slips + " AND (kind<>3) AND(kind2<>2 AND is_cancel=False) AND s_id>0 AND is_credit=false",
          {{"price_cards", Figure::카드매출}});
  step_ = 12;
  sumRows(slips + " AND (kind<>3) AND (kind2<>2 AND is_cancel=False) AND s_id=0",
          {{"price_cards", Figure::카드지불외}});
  step_ = 13;
  sumRows(slips + " AND (kind<>3) AND (kind2=2 AND is_cancel=False) AND s_id=0",
          {{"price_cards", Figure::카드외부취소}});
}

void Computation::readSales() {
  step_ = 14;
  openDatabase("data.mdb");
  begin(14, "qryRstCreditTerminate");
  takeFirstRow("SELECT * FROM qryRstCreditTerminate " + dateFilter_,
               {{{"prices"}, Figure::외상종료액}});

  begin(15, "Selling");
  if (const Rows sales = open("SELECT * FROM selling " + dateFilter_)) {
    figures_[Figure::주문건수] = sales->recordCount();  // set even when a sum overflows
    sumRows(*sales, {{"price_change", Figure::매가변경}, {"price_trim", Figure::절상절하}});
  }

  begin(16, "Selling_Item");
  figures_[Figure::서비스건수] =
      open("SELECT * FROM selling_item " + dateFilter_ + " AND is_service=True")->recordCount();

  begin(17, "qryRstSellingItemSum");
  sumRows("SELECT * FROM qryRstSellingItemSum " + dateFilter_,
          {{"cost_amounts", Figure::총원가}, {"margin_amounts", Figure::총마진}});

  begin(18, "qryRstSelling");
  sumRows("SELECT * FROM qryRstSelling " + dateFilter_, {{"price_credits", Figure::외상매출},
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
  begin(19, "qryRstSum");
  sumRows("SELECT * FROM qryRstSum " + dateFilter_, {{"sa", Figure::총판매액}});
  database_.reset();
  addServiceCharge(figures_, switches_);
}

void Computation::readOutgo() {
  step_ = 20;
  openDatabase("outgo.mdb");
  begin(20, "outgo_item");
  const auto query = [&](std::string_view sum, std::string_view types) {
    return "SELECT Sum(" + std::string(sum) + " FROM outgo_item " + dateFilter_ + " AND (" +
           std::string(types);
  };
  // Types 2 and 3 are both outlay and cash taken out; the outlay adds the price of type 2 and the
  // amount paid of type 3.
  takeFirstRow(query("price) as JiGeupAekS", "etc_type=1 OR etc_type=2 OR etc_type=4) "),
               {{{"JiGeupAekS"}, Figure::지출액}});
  takeFirstRow(query("JiGeupAek) as JiGeupAekS", "etc_type=3 OR etc_type=5) "),
               {{{"JiGeupAekS"}, Figure::지출액}});
  takeFirstRow(query("JiGeupAek) as JiGeupAekS", "etc_type=2 OR etc_type=3 OR etc_type=6) "),
               {{{"JiGeupAekS"}, Figure::출금}});
  takeFirstRow(query("price) as prices", "etc_type=9)"), {{{"prices"}, Figure::현금입금}});
  database_.reset();
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
