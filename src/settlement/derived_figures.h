// The figures of a day that are computed from others, after the sums.
//
//   addServiceCharge(day, switches);       // 총판매액
//   deriveCashAndVat(day, switches);
//   deriveAverages(day, switches);
//
// Whole numbers of 32 bits, checked; a quotient is rounded to a whole number, halves to even.
// Errors: 6 overflow; figures computed before it stay.
#pragma once

#include <cstdint>

#include "settlement/daily_settlement.h"

namespace lib_결산 {

// The shop's settings that the arithmetic depends on.
struct Switches {
  std::int16_t vatRate = 0;  // in percent; 0 when VAT is off
  bool vatIncluded = false;
  bool serviceRateEnabled = false;
  bool serviceRateIncluded = false;
  bool serviceChargeOffNetSales = false;  // ApplyDCinRO
};

[[nodiscard]] std::int32_t checkedAdd(std::int32_t left, std::int32_t right);
[[nodiscard]] std::int32_t checkedSubtract(std::int32_t left, std::int32_t right);

void addServiceCharge(DailySettlement& day, const Switches& switches);
void deriveCashAndVat(DailySettlement& day, const Switches& switches);
void deriveAverages(DailySettlement& day, const Switches& switches);

}  // namespace lib_결산
