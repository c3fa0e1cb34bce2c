#include "settlement/get_daily.h"

#include <array>
#include <cmath>

#include "extract/conversions.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace settlement {

namespace {

using lib_결산::DailySettlement;
using lib_결산::Figure;

constexpr double kMaxDays = 32767;

// The statement's own order of the figures.
constexpr std::array<Figure, lib_결산::kFigureCount> kColumnOrder = {
    Figure::현금입금,     Figure::현금매출,     Figure::할인,         Figure::실판매액,
    Figure::외상매출,     Figure::외상종료액,   Figure::외상카드입금, Figure::외상현금입금,
    Figure::총마진,       Figure::총원가,       Figure::총판매액,     Figure::카드,
    Figure::카드매출,     Figure::카드외부취소, Figure::카드지불외,   Figure::페이아웃,
    Figure::테이블수,     Figure::테이블단가,   Figure::쿠폰건수,     Figure::쿠폰사용,
    Figure::취소건수,     Figure::출금,         Figure::지출액,       Figure::반품,
    Figure::봉사료,       Figure::부가세,       Figure::상품권사용,   Figure::상품권판매,
    Figure::경품건수,     Figure::경품현금지급, Figure::서비스,       Figure::서비스건수,
    Figure::선금금액,     Figure::손님수,       Figure::손님수남,     Figure::손님수여,
    Figure::객단가,       Figure::시제,         Figure::전표건수,     Figure::절상절하,
    Figure::종업원수,     Figure::좌석수,       Figure::좌석회전율,   Figure::주문건수,
    Figure::직원당손님수, Figure::직원당판매액, Figure::돈통열린회수, Figure::매가변경,
};

std::string deleteDay(const extract::ShopLiterals& shop, std::string_view day) {
  return "Delete From DailyDataTB  Where DD_GROUP = '" + shop.group + "'   And DD_SANGHO = '" +
         shop.tradeName + "'   And DD_RDATE = '" + std::string(day) + "';";
}

std::string insertDay(const extract::ShopLiterals& shop, std::string_view day,
                      const DailySettlement& settlement) {
  std::string statement = "Insert Into DailyDataTB (DD_GROUP, DD_SANGHO, DD_CHAIRMAN, DD_RDATE";
  for (const Figure figure : kColumnOrder) {
    statement.append(", ").append(lib_결산::figureInfo(figure).column);
  }
  statement += ") Values ( '" + shop.group + "', '" + shop.tradeName + "', '" +
               shop.representative + "', '" + std::string(day) + "'";
  for (const Figure figure : kColumnOrder) {
    statement += ", ";
    values::appendWhole(statement, settlement[figure]);
  }
  return statement + ");";
}

// The day's figures are written nevertheless.
void noteFailure(extract::Workspace& work, values::DateTime day,
                 const DailySettlement& settlement) {
  const auto failure = settlement.failure.value_or(lib_결산::DayFailure{});
  work.addFailure({"결산 " + values::dateText(day), failure.number,
                   std::to_string(failure.step) + "단계: " + failure.description,
                   "구하지 못한 숫자는 0으로 보냅니다."});
}

}  // namespace

bool GetDaily(extract::Workspace& work, const lib_결산::Dependencies& dependencies,
              values::DateTime LastDate, values::DateTime LookDate) {
  joblog::Progress& progress = work.dependencies.progress;
  const auto show = [&](const std::string& text) {
    joblog::tryReport(
        progress, dependencies.jobLog,
        text + ".." + values::formatTime(dependencies.clock.now(), values::kStampFormat));
  };
  show("Daily Data Load -- GetDaily In.." + values::dateText(LastDate) + ".." +
       values::dateText(LookDate));
  const double days = std::floor(LookDate.serial) - std::floor(LastDate.serial) + 1;
  if (std::fabs(days) > kMaxDays) {
    throw RuntimeError(error::kOverflow, "Overflow: a settlement of more than 32767 days.");
  }
  const int count = static_cast<int>(days);
  for (int i = 0; i < count; ++i) {
    const values::DateTime day{LastDate.serial + i};
    show("Daily Data Load -- GetDailyData Call 연결 Start " + values::dateText(day));
    DailySettlement settlement;
    if (!lib_결산::GetDailyData(dependencies, day, settlement)) noteFailure(work, day, settlement);
    const std::string dayText = extract::SqlText(day);
    work.write(deleteDay(work.shop, dayText));
    progress.yield();
    work.write(insertDay(work.shop, dayText, settlement));
    work.addRecords(1);
    progress.yield();
    progress.yield();
  }
  return false;
}

}  // namespace settlement
