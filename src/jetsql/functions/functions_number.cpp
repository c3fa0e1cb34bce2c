#include <cmath>

#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/value_types.h"
#include "values/decimal.h"

namespace jetsql {
namespace {

using values::Currency;
using values::Numeric;
using values::Variant;
using values::VariantType;

// What a number function makes of each representation. Whole numbers pass `whole` as a 32-bit
// number; texts and dates go as doubles, the date staying a date.
template <typename Whole, typename Real, typename Amount, typename Exact>
Variant apply(const Variant& value, Whole whole, Real real, Amount amount, Exact exact) {
  switch (value.type()) {
    case VariantType::kCurrency:
      return Currency{amount(value.as<Currency>()->units)};
    case VariantType::kNumeric:
      return exact(*value.as<Numeric>());
    case VariantType::kSingle:
      return convert(real(toDouble(value)), VariantType::kSingle);
    case VariantType::kDateTime:
      return values::DateTime{real(value.as<values::DateTime>()->serial)};
    case VariantType::kDouble:
    case VariantType::kText:
    case VariantType::kBinary:
      return real(toDouble(value));
    default:
      return whole(toLong(value));
  }
}

VariantType likeFirst(ArgumentTypes types) {
  switch (types[0]) {
    case VariantType::kText:
    case VariantType::kBinary:
    case VariantType::kNull:
      return VariantType::kDouble;
    case VariantType::kYesNo:
    case VariantType::kByte:
    case VariantType::kInteger:
      return VariantType::kLong;
    default:
      return types[0];
  }
}

std::int32_t same(std::int32_t value) { return value; }

Numeric truncated(Numeric value) {
  value.magnitude /= values::powerOfTen(value.scale);
  value.scale = 0;
  return values::normalized(value);
}

// The largest whole number that is not above the value.
Variant floorOf(Arguments arguments, const Environment&) {
  return apply(
      arguments[0], same, [](double value) { return std::floor(value); },
      [](std::int64_t units) {
        const std::int64_t whole = units - units % values::kCurrencyScale;
        return units % values::kCurrencyScale < 0 ? whole - values::kCurrencyScale : whole;
      },
      [](const Numeric& value) {
        const Numeric whole = truncated(value);
        const bool cut = value.magnitude % values::powerOfTen(value.scale) != 0;
        return value.negative && cut ? add(whole, Numeric{true, 0, 1}) : whole;
      });
}

// The whole part.
Variant fix(Arguments arguments, const Environment&) {
  return apply(
      arguments[0], same, [](double value) { return std::trunc(value); },
      [](std::int64_t units) { return units - units % values::kCurrencyScale; }, truncated);
}

Variant absolute(Arguments arguments, const Environment&) {
  return apply(
      arguments[0],
      [](std::int32_t value) {
        if (value == INT32_MIN) throwOverflow();
        return std::abs(value);
      },
      [](double value) { return std::abs(value); },
      [](std::int64_t units) {
        if (units == INT64_MIN) throwOverflow();
        return units < 0 ? -units : units;
      },
      [](Numeric value) {
        value.negative = false;
        return value;
      });
}

double roundReal(double value, int places) {
  const double scale = std::pow(10.0, places);
  const double scaled = value * scale;
  return std::isfinite(scaled) ? values::roundHalvesToEven(scaled) / scale : value;
}

// Round(number [, places]): halves to even.
Variant round(Arguments arguments, const Environment&) {
  const std::int32_t places = longArgument(arguments, 1, 0);
  if (places < 0) throwInvalidCall("Round");
  return apply(
      arguments[0], same, [places](double value) { return roundReal(value, places); },
      [places](std::int64_t units) {
        std::int64_t step = values::kCurrencyScale;
        for (int i = 0; i < places && step > 1; ++i) step /= 10;
        return values::divideHalvesToEven(units, step) * step;
      },
      [places](const Numeric& value) { return values::rounded(value, places); });
}

Variant sign(Arguments arguments, const Environment&) {
  const double value = toDouble(arguments[0]);
  return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

double finite(double value) {
  if (!std::isfinite(value)) throwOverflow();
  return value;
}

Variant squareRoot(Arguments arguments, const Environment&) {
  const double value = toDouble(arguments[0]);
  if (value < 0) throwInvalidCall("Sqr");
  return std::sqrt(value);
}

Variant logarithm(Arguments arguments, const Environment&) {
  const double value = toDouble(arguments[0]);
  if (value <= 0) throwInvalidCall("Log");
  return std::log(value);
}

template <double (*kFunction)(double)>
Variant real(Arguments arguments, const Environment&) {
  return finite(kFunction(toDouble(arguments[0])));
}

constexpr auto kDouble = fixedType<VariantType::kDouble>;

constexpr Function kTable[] = {
    {"Int", 1, 1, likeFirst, floorOf},
    {"Fix", 1, 1, likeFirst, fix},
    {"Abs", 1, 1, likeFirst, absolute},
    {"Round", 1, 2, likeFirst, round},
    {"Sgn", 1, 1, fixedType<VariantType::kInteger>, sign},
    {"Sqr", 1, 1, kDouble, squareRoot},
    {"Log", 1, 1, kDouble, logarithm},
    {"Exp", 1, 1, kDouble, real<std::exp>},
    {"Sin", 1, 1, kDouble, real<std::sin>},
    {"Cos", 1, 1, kDouble, real<std::cos>},
    {"Tan", 1, 1, kDouble, real<std::tan>},
    {"Atn", 1, 1, kDouble, real<std::atan>},
};

}  // namespace

std::span<const Function> numberFunctions() { return kTable; }

}  // namespace jetsql
