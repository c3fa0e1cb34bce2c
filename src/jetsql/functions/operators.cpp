// The operators that are functions in SQLite; see functions.h.
#include <array>
#include <cmath>
#include <string>

#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/like.h"
#include "jetsql/functions/value_types.h"
#include "values/decimal.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::Currency;
using values::DateTime;
using values::Variant;
using values::VariantType;

template <Arithmetic kOperation>
VariantType arithmetic(ArgumentTypes types) {
  return arithmeticType(kOperation, types[0], types[1]);
}

double checkedReal(double value) {
  if (!std::isfinite(value)) throwOverflow();
  return value;
}

Variant addReal(Arithmetic operation, const Variant& left, const Variant& right) {
  const double a = toDouble(left);
  const double b = toDouble(right);
  if (operation == Arithmetic::kMultiply) return checkedReal(a * b);
  return checkedReal(operation == Arithmetic::kAdd ? a + b : a - b);
}

Variant wholeArithmetic(Arithmetic operation, VariantType type, const Variant& left,
                        const Variant& right) {
  const std::int64_t a = toLong(left);
  const std::int64_t b = toLong(right);
  const std::int64_t result = operation == Arithmetic::kMultiply ? a * b
                              : operation == Arithmetic::kAdd    ? a + b
                                                                 : a - b;
  return wholeResult(result, type);
}

std::int64_t checkedUnits(values::Uint128 magnitude, bool negative) {
  if (magnitude > static_cast<values::Uint128>(INT64_MAX)) throwOverflow();
  const auto units = static_cast<std::int64_t>(magnitude);
  return negative ? -units : units;
}

bool addAmounts(std::int64_t left, std::int64_t right, std::int64_t* sum) {
  return __builtin_add_overflow(left, right, sum);
}

bool subtractAmounts(std::int64_t left, std::int64_t right, std::int64_t* difference) {
  return __builtin_sub_overflow(left, right, difference);
}

Variant currencyArithmetic(Arithmetic operation, const Variant& left, const Variant& right) {
  const std::int64_t a = toCurrency(left).units;
  const std::int64_t b = toCurrency(right).units;
  std::int64_t units = 0;
  if (operation == Arithmetic::kMultiply) {
    // Eight decimals rounded to four.
    const values::Uint128 product =
        values::Uint128{values::magnitudeOf(a)} * values::magnitudeOf(b);
    units =
        checkedUnits(values::divideHalvesToEven<values::Uint128>(product, values::kCurrencyScale),
                     (a < 0) != (b < 0));
  } else if (operation == Arithmetic::kAdd ? addAmounts(a, b, &units)
                                           : subtractAmounts(a, b, &units)) {
    throwOverflow();
  }
  return Currency{units};
}

Variant numericArithmetic(Arithmetic operation, const Variant& left, const Variant& right) {
  const values::Numeric a = values::toNumeric(left);
  const values::Numeric b = values::toNumeric(right);
  if (operation == Arithmetic::kMultiply) return values::multiply(a, b);
  return add(a, operation == Arithmetic::kAdd ? b : values::negated(b));
}

std::string concatenated(std::string_view left, std::string_view right) {
  requireTextSize(left.size() + right.size());
  return std::string(left).append(right);
}

template <Arithmetic kOperation>
Variant compute(Arguments arguments, const Environment&) {
  const Variant& left = arguments[0];
  const Variant& right = arguments[1];
  const VariantType type = arithmeticType(kOperation, left.type(), right.type());
  switch (type) {
    case VariantType::kText:
      return concatenated(*left.as<std::string>(), *right.as<std::string>());
    case VariantType::kByte:
    case VariantType::kInteger:
    case VariantType::kLong:
      return wholeArithmetic(kOperation, type, left, right);
    case VariantType::kCurrency:
      return currencyArithmetic(kOperation, left, right);
    case VariantType::kNumeric:
      return numericArithmetic(kOperation, left, right);
    default:
      return convert(addReal(kOperation, left, right), type);
  }
}

[[noreturn]] void throwDivisionByZero() {
  throw RuntimeError(error::kDivisionByZero, "Division by zero.");
}

Variant divide(Arguments arguments, const Environment&) {
  const VariantType type =
      arithmeticType(Arithmetic::kDivide, arguments[0].type(), arguments[1].type());
  if (type == VariantType::kNumeric) {
    const values::Numeric divisor = values::toNumeric(arguments[1]);
    if (divisor.magnitude == 0) throwDivisionByZero();
    return values::divide(values::toNumeric(arguments[0]), divisor);
  }
  const double divisor = toDouble(arguments[1]);
  if (divisor == 0) throwDivisionByZero();
  return convert(Variant(checkedReal(toDouble(arguments[0]) / divisor)), type);
}

// Operands of \ and Mod are rounded to whole numbers first.
template <Arithmetic kOperation>
Variant divideWhole(Arguments arguments, const Environment&) {
  const std::int64_t dividend = toLong(arguments[0]);
  const std::int64_t divisor = toLong(arguments[1]);
  if (divisor == 0) throwDivisionByZero();
  const std::int64_t result =
      kOperation == Arithmetic::kModulo ? dividend % divisor : dividend / divisor;
  if (result > INT32_MAX) throwOverflow();
  return wholeResult(result, arithmeticType(kOperation, arguments[0].type(), arguments[1].type()));
}

Variant power(Arguments arguments, const Environment&) {
  const double base = toDouble(arguments[0]);
  const double exponent = toDouble(arguments[1]);
  if (base < 0 && exponent != std::trunc(exponent)) throwInvalidCall("^");
  if (base == 0 && exponent < 0) throwDivisionByZero();
  return checkedReal(std::pow(base, exponent));
}

VariantType negatedType(ArgumentTypes types) {
  return arithmeticType(Arithmetic::kSubtract, VariantType::kYesNo,
                        types[0] == VariantType::kDateTime ? VariantType::kDouble : types[0]);
}

Variant negate(Arguments arguments, const Environment& environment) {
  const Variant zero(false);
  const std::array<Variant, 2> operands{zero, arguments[0].type() == VariantType::kDateTime
                                                  ? Variant(toDouble(arguments[0]))
                                                  : arguments[0]};
  return compute<Arithmetic::kSubtract>(operands, environment);
}

// & takes Null for an empty text unless both are Null.
Variant concatenate(Arguments arguments, const Environment&) {
  if (arguments[0].isNull() && arguments[1].isNull()) return {};
  if (arguments[0].isNull()) return convert(arguments[1], VariantType::kText);
  if (arguments[1].isNull()) return convert(arguments[0], VariantType::kText);
  return concatenated(TextArgument(arguments[0]).view(), TextArgument(arguments[1]).view());
}

Variant matches(Arguments arguments, const Environment&) {
  return like(TextArgument(arguments[0]).view(), TextArgument(arguments[1]).view());
}

Variant matchesAnsi(Arguments arguments, const Environment&) {
  return like(TextArgument(arguments[0]).view(), jetPattern(TextArgument(arguments[1]).view()));
}

// The logical operators work on Yes/No, and bit by bit on numbers.
VariantType logicalType(ArgumentTypes types) {
  for (const VariantType type : types) {
    if (type != VariantType::kYesNo && type != VariantType::kNull) return VariantType::kLong;
  }
  return VariantType::kYesNo;
}

Variant logical(Arguments arguments, std::int32_t bits) {
  for (const Variant& argument : arguments) {
    if (!argument.isNull() && argument.type() != VariantType::kYesNo) return bits;
  }
  return bits != 0;
}

// What decides over And and Imp whatever the other operand is.
bool isAll(const Variant& value, std::int32_t bits) {
  return !value.isNull() && toLong(value) == bits;
}

Variant both(Arguments arguments, const Environment&) {
  if (isAll(arguments[0], 0) || isAll(arguments[1], 0)) return logical(arguments, 0);
  if (arguments[0].isNull() || arguments[1].isNull()) return {};
  return logical(arguments, toLong(arguments[0]) & toLong(arguments[1]));
}

Variant either(Arguments arguments, const Environment&) {
  std::int32_t bits = 0;
  for (const Variant& argument : arguments) bits |= argument.isNull() ? 0 : toLong(argument);
  // Beside Null any number but 0 decides, as what is true does.
  if (bits == 0 && (arguments[0].isNull() || arguments[1].isNull())) return {};
  return logical(arguments, bits);
}

Variant implies(Arguments arguments, const Environment&) {
  if (isAll(arguments[0], 0) || isAll(arguments[1], -1)) return logical(arguments, -1);
  if (arguments[0].isNull() || arguments[1].isNull()) return {};
  return logical(arguments, ~toLong(arguments[0]) | toLong(arguments[1]));
}

Variant complement(Arguments arguments, const Environment&) {
  return logical(arguments, ~toLong(arguments[0]));
}

Variant exclusive(Arguments arguments, const Environment&) {
  return logical(arguments, toLong(arguments[0]) ^ toLong(arguments[1]));
}

Variant equivalent(Arguments arguments, const Environment&) {
  return logical(arguments, ~(toLong(arguments[0]) ^ toLong(arguments[1])));
}

constexpr auto kDouble = fixedType<VariantType::kDouble>;

constexpr Function kTable[] = {
    {"add", 2, 2, arithmetic<Arithmetic::kAdd>, compute<Arithmetic::kAdd>, false, true, addAmounts},
    {"sub", 2, 2, arithmetic<Arithmetic::kSubtract>, compute<Arithmetic::kSubtract>, false, true,
     subtractAmounts},
    {"mul", 2, 2, arithmetic<Arithmetic::kMultiply>, compute<Arithmetic::kMultiply>},
    {"div", 2, 2, arithmetic<Arithmetic::kDivide>, divide},
    {"intdiv", 2, 2, arithmetic<Arithmetic::kDivideWhole>, divideWhole<Arithmetic::kDivideWhole>},
    {"mod", 2, 2, arithmetic<Arithmetic::kModulo>, divideWhole<Arithmetic::kModulo>},
    {"pow", 2, 2, kDouble, power},
    {"neg", 1, 1, negatedType, negate},
    {"concat", 2, 2, fixedType<VariantType::kText>, concatenate, true},
    {"like", 2, 2, fixedType<VariantType::kYesNo>, matches},
    {"alike", 2, 2, fixedType<VariantType::kYesNo>, matchesAnsi},
    {"and", 2, 2, logicalType, both, true},
    {"or", 2, 2, logicalType, either, true},
    {"not", 1, 1, logicalType, complement},
    {"xor", 2, 2, logicalType, exclusive},
    {"eqv", 2, 2, logicalType, equivalent},
    {"imp", 2, 2, logicalType, implies, true},
};

}  // namespace

std::span<const Function> allOperators() { return kTable; }

}  // namespace jetsql
