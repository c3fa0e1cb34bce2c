// Loans, savings and depreciation. A payment or balance that the caller pays out is negative; `due`
// is 0 for payments at the end of each period, else 1. All in doubles.
#include <algorithm>
#include <cmath>

#include "jetsql/functions/function_tables.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

double real(Arguments arguments, std::size_t index, double otherwise = 0) {
  return index < arguments.size() ? toDouble(arguments[index]) : otherwise;
}

double due(Arguments arguments, std::size_t index) { return real(arguments, index) == 0 ? 0 : 1; }

Variant checked(double value) {
  if (!std::isfinite(value)) throwOverflow();
  return value;
}

// The sum that payments of 1 have grown to after `periods`.
double annuity(double rate, double periods, double due) {
  if (rate == 0) return periods;
  return (1 + rate * due) * (std::pow(1 + rate, periods) - 1) / rate;
}

double futureValue(double rate, double periods, double payment, double present, double due) {
  return -(present * std::pow(1 + rate, periods) + payment * annuity(rate, periods, due));
}

double payment(double rate, double periods, double present, double future, double due) {
  if (periods == 0) throwInvalidCall("Pmt");
  return -(future + present * std::pow(1 + rate, periods)) / annuity(rate, periods, due);
}

// FV(rate, periods, payment [, present [, due]])
Variant fv(Arguments arguments, const Environment&) {
  return checked(futureValue(real(arguments, 0), real(arguments, 1), real(arguments, 2),
                             real(arguments, 3), due(arguments, 4)));
}

// PV(rate, periods, payment [, future [, due]])
Variant pv(Arguments arguments, const Environment&) {
  const double rate = real(arguments, 0);
  const double periods = real(arguments, 1);
  const double grown =
      real(arguments, 3) + real(arguments, 2) * annuity(rate, periods, due(arguments, 4));
  return checked(-grown / std::pow(1 + rate, periods));
}

// Pmt(rate, periods, present [, future [, due]])
Variant pmt(Arguments arguments, const Environment&) {
  return checked(payment(real(arguments, 0), real(arguments, 1), real(arguments, 2),
                         real(arguments, 3), due(arguments, 4)));
}

// The interest part of the payment of one period: IPmt(rate, period, periods, present [, future
// [, due]]).
double interest(Arguments arguments) {
  const double rate = real(arguments, 0);
  const double period = real(arguments, 1);
  const double periods = real(arguments, 2);
  const double present = real(arguments, 3);
  const double atBegin = due(arguments, 5);
  if (period <= 0 || period >= periods + 1) throwInvalidCall("IPmt");
  if (atBegin != 0 && period == 1) return 0;
  const double paid = payment(rate, periods, present, real(arguments, 4), atBegin);
  if (atBegin != 0) return futureValue(rate, period - 2, paid, present + paid, 0) * rate;
  return futureValue(rate, period - 1, paid, present, 0) * rate;
}

Variant ipmt(Arguments arguments, const Environment&) { return checked(interest(arguments)); }

Variant ppmt(Arguments arguments, const Environment&) {
  return checked(payment(real(arguments, 0), real(arguments, 2), real(arguments, 3),
                         real(arguments, 4), due(arguments, 5)) -
                 interest(arguments));
}

// NPer(rate, payment, present [, future [, due]])
Variant nper(Arguments arguments, const Environment&) {
  const double rate = real(arguments, 0);
  const double paid = real(arguments, 1);
  const double present = real(arguments, 2);
  const double future = real(arguments, 3);
  if (rate <= -1) throwInvalidCall("NPer");
  if (rate == 0) {
    if (paid == 0) throwInvalidCall("NPer");
    return checked(-(present + future) / paid);
  }
  const double perPeriod = paid * (1 + rate * due(arguments, 4)) / rate;
  const double grown = (perPeriod - future) / (perPeriod + present);
  if (!(grown > 0)) throwInvalidCall("NPer");
  return checked(std::log(grown) / std::log1p(rate));
}

// Rate(periods, payment, present [, future [, due [, guess]]]): by the secant method; error 5 where
// 20 steps do not reach 1E-7.
Variant rate(Arguments arguments, const Environment&) {
  const double periods = real(arguments, 0);
  if (periods <= 0) throwInvalidCall("Rate");
  const auto balance = [&](double rate) {
    return real(arguments, 3) -
           futureValue(rate, periods, real(arguments, 1), real(arguments, 2), due(arguments, 4));
  };
  constexpr int kMaxSteps = 20;
  constexpr double kPrecision = 1e-7;
  double before = real(arguments, 5, 0.1);
  double valueBefore = balance(before);
  double now = valueBefore > 0 ? before / 2 : before * 2;
  for (int step = 0; step < kMaxSteps; ++step) {
    const double value = balance(now);
    if (std::abs(value) < kPrecision) return checked(now);
    if (value == valueBefore) break;
    const double next = now - value * (now - before) / (value - valueBefore);
    before = now;
    valueBefore = value;
    now = next;
  }
  throwInvalidCall("Rate");
}

// SLN(cost, salvage, life)
Variant sln(Arguments arguments, const Environment&) {
  const double life = real(arguments, 2);
  if (life == 0) throwInvalidCall("SLN");
  return checked((real(arguments, 0) - real(arguments, 1)) / life);
}

// SYD(cost, salvage, life, period)
Variant syd(Arguments arguments, const Environment&) {
  const double life = real(arguments, 2);
  const double period = real(arguments, 3);
  if (real(arguments, 1) < 0 || period <= 0 || period > life) throwInvalidCall("SYD");
  const double years = life * (life + 1) / 2;
  return checked((real(arguments, 0) - real(arguments, 1)) * (life - period + 1) / years);
}

// DDB(cost, salvage, life, period [, factor]): what the declining balance writes off in a period,
// never below the salvage value.
Variant ddb(Arguments arguments, const Environment&) {
  const double cost = real(arguments, 0);
  const double salvage = real(arguments, 1);
  const double life = real(arguments, 2);
  const double period = real(arguments, 3);
  const double factor = real(arguments, 4, 2);
  if (factor <= 0 || salvage < 0 || period <= 0 || period > life) throwInvalidCall("DDB");
  if (cost <= 0) return 0.0;
  const double kept = std::max(1 - factor / life, 0.0);
  const double before = cost * std::pow(kept, period - 1);
  const double after = std::max(cost * std::pow(kept, period), salvage);
  return checked(std::max(before - after, 0.0));
}

constexpr auto kDouble = fixedType<VariantType::kDouble>;

constexpr Function kTable[] = {
    {"FV", 3, 5, kDouble, fv},     {"PV", 3, 5, kDouble, pv},     {"Pmt", 3, 5, kDouble, pmt},
    {"IPmt", 4, 6, kDouble, ipmt}, {"PPmt", 4, 6, kDouble, ppmt}, {"NPer", 3, 5, kDouble, nper},
    {"Rate", 3, 6, kDouble, rate}, {"SLN", 3, 3, kDouble, sln},   {"SYD", 4, 4, kDouble, syd},
    {"DDB", 4, 5, kDouble, ddb},
};

}  // namespace

std::span<const Function> financialFunctions() { return kTable; }

}  // namespace jetsql
