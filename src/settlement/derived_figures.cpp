#include "settlement/derived_figures.h"

#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>

#include "values/runtime_error.h"
#include "values/variant.h"

namespace lib_결산 {

namespace {

// A surcharge on sales without VAT, always 0; the step that applies it is kept.
constexpr float kSurchargeFactor = 0;

std::int32_t checked(std::int64_t result) {
  if (result < std::numeric_limits<std::int32_t>::min() ||
      result > std::numeric_limits<std::int32_t>::max()) {
    throw RuntimeError(error::kOverflow, "Overflow: a figure reached " + std::to_string(result));
  }
  return static_cast<std::int32_t>(result);
}

std::int32_t sum(const DailySettlement& day, std::initializer_list<Figure> figures) {
  std::int32_t total = 0;
  for (const Figure figure : figures) total = checkedAdd(total, day[figure]);
  return total;
}

std::int32_t less(const DailySettlement& day, std::int32_t from,
                  std::initializer_list<Figure> figures) {
  for (const Figure figure : figures) from = checkedSubtract(from, day[figure]);
  return from;
}

// `factor` times the quotient, in double precision; 0 for a divisor of 0.
std::int32_t average(std::int32_t dividend, std::int32_t divisor, int factor = 1) {
  if (divisor == 0) return 0;
  return values::toLong(static_cast<double>(dividend) / divisor * factor);
}

}  // namespace

std::int32_t checkedAdd(std::int32_t left, std::int32_t right) {
  return checked(static_cast<std::int64_t>(left) + right);
}

std::int32_t checkedSubtract(std::int32_t left, std::int32_t right) {
  return checked(static_cast<std::int64_t>(left) - right);
}

void addServiceCharge(DailySettlement& day, const Switches& switches) {
  std::int32_t& total = day[Figure::총판매액];
  const std::int32_t charge = day[Figure::봉사료];
  total = checkedAdd(total, day[Figure::반품]);
  if (charge > 0 && !switches.serviceRateEnabled) total = checkedAdd(total, charge);
  if (switches.vatRate != 0 && !switches.vatIncluded) {
    total = values::toLong(static_cast<double>(kSurchargeFactor) * total + total);
  }
  if (switches.serviceRateEnabled && !switches.serviceRateIncluded) {
    total = checkedAdd(total, charge);
  }
}

void deriveCashAndVat(DailySettlement& day, const Switches& switches) {
  const std::int32_t total = day[Figure::총판매액];
  const std::int32_t otherMeans =
      sum(day, {Figure::외상매출, Figure::할인, Figure::카드매출, Figure::쿠폰사용,
                Figure::상품권사용, Figure::경품현금지급});
  day[Figure::현금매출] = checkedAdd(checkedSubtract(total, otherMeans), day[Figure::현금입금]);
  if (switches.vatRate == 0) return;
  // VAT of 10 % included in the price, independent of the rate.
  const std::int32_t taxed =
      less(day, total, {Figure::할인, Figure::쿠폰사용, Figure::경품현금지급, Figure::상품권사용});
  day[Figure::부가세] = values::toLong(std::floor(taxed / 1.1 * 0.1 + 0.5));
}

void deriveAverages(DailySettlement& day, const Switches& switches) {
  const std::int32_t total = day[Figure::총판매액];
  const std::int32_t visitors = day[Figure::손님수];
  const std::int32_t employees = day[Figure::종업원수];
  std::int32_t net =
      less(day, checkedAdd(total, day[Figure::절상절하]), {Figure::할인, Figure::쿠폰사용});
  if (switches.serviceChargeOffNetSales) net = checkedSubtract(net, day[Figure::봉사료]);
  day[Figure::실판매액] = net;
  day[Figure::객단가] = average(total, visitors);
  day[Figure::테이블단가] = average(total, day[Figure::테이블수]);
  day[Figure::직원당손님수] = average(visitors, employees);
  day[Figure::직원당판매액] = average(total, employees);
  day[Figure::좌석회전율] = average(visitors, day[Figure::좌석수], 100);
}

}  // namespace lib_결산
