#include "values/variant.h"

#include <cmath>
#include <limits>

#include "text/ascii.h"
#include "values/decimal.h"
#include "values/number_text.h"
#include "values/runtime_error.h"

namespace values {

namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

[[noreturn]] void throwNull() {
  throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null.");
}
[[noreturn]] void throwOverflow() { throw RuntimeError(error::kOverflow, "Overflow."); }
[[noreturn]] void throwMismatch(const std::string& what) {
  throw RuntimeError(error::kTypeMismatch, "Type mismatch: " + what + ".");
}
[[noreturn]] void throwMismatchText(std::string_view text) {
  throwMismatch("'" + std::string(text.substr(0, 40)) + "' cannot be converted");
}

template <typename Whole>
Whole fromMagnitude(bool negative, Uint128 magnitude) {
  const Uint128 limit =
      static_cast<Uint128>(std::numeric_limits<Whole>::max()) + (negative ? 1 : 0);
  if (magnitude > limit) throwOverflow();
  const auto low = static_cast<std::uint64_t>(magnitude);
  return static_cast<Whole>(negative ? 0 - low : low);
}

template <typename Whole>
Whole fromReal(double value) {
  const double rounded = roundHalvesToEven(value);
  const double limit = std::ldexp(1.0, std::numeric_limits<Whole>::digits);
  if (!(rounded >= -limit && rounded < limit)) throwOverflow();
  return static_cast<Whole>(rounded);
}

template <typename Whole>
Whole fromCurrency(Currency value) {
  const std::int64_t rounded = divideHalvesToEven(value.units, kCurrencyScale);
  if (!std::in_range<Whole>(rounded)) throwOverflow();
  return static_cast<Whole>(rounded);
}

double numericValue(const Numeric& value) {
  const double magnitude =
      static_cast<double>(value.magnitude) / static_cast<double>(powerOfTen(value.scale));
  return value.negative ? -magnitude : magnitude;
}

Currency fromNumeric(const Numeric& value) {
  const int surplus = value.scale - kCurrencyPlaces;  // places
  const Uint128 units = surplus > 0 ? divideHalvesToEven(value.magnitude, powerOfTen(surplus))
                                    : value.magnitude * powerOfTen(-surplus);
  return {fromMagnitude<std::int64_t>(value.negative, units)};
}

template <typename Whole>
Whole toWhole(const VariantView& value) {
  if (const auto* currency = value.as<Currency>()) return fromCurrency<Whole>(*currency);
  if (const auto* numeric = value.as<Numeric>()) {
    return fromMagnitude<Whole>(numeric->negative,
                                divideHalvesToEven(numeric->magnitude, powerOfTen(numeric->scale)));
  }
  return fromReal<Whole>(toDouble(value));
}

void appendCurrency(std::string& text, Currency value) {
  if (value.units % kCurrencyScale == 0) {
    appendWhole(text, value.units / kCurrencyScale);
  } else {
    text += decimalText(value.units < 0, magnitudeOf(value.units), kCurrencyPlaces);
  }
}

}  // namespace

VariantView::VariantView(const Variant& value) {
  value.visit(Overloaded{
      [](std::monostate) {},
      [&](const std::string& text) { value_ = std::string_view(text); },
      [&](const Binary& binary) { value_ = Bytes(binary.bytes); },
      [&](const auto& other) { value_ = other; },
  });
}

Variant VariantView::owned() const {
  return visit(Overloaded{
      [](std::monostate) { return Variant(); },
      [](std::string_view text) { return Variant(std::string(text)); },
      [](Bytes bytes) {
        return Variant(Binary{{bytes.begin(), bytes.end()}});
      },
      [](const auto& other) { return Variant(other); },
  });
}

std::string toText(const VariantView& value) {
  std::string text;
  appendText(text, value);
  return text;
}

void appendText(std::string& text, const VariantView& value) {
  value.visit(Overloaded{
      [](std::monostate) { throwNull(); },
      [&](bool v) { text += v ? "True" : "False"; },
      [&](std::uint8_t v) { appendWhole(text, v); },
      [&](std::int16_t v) { appendWhole(text, v); },
      [&](std::int32_t v) { appendWhole(text, v); },
      [&](float v) { text += realText(v); },
      [&](double v) { text += realText(v); },
      [&](Currency v) { appendCurrency(text, v); },
      [&](DateTime v) { appendDateText(text, v); },
      [&](const Numeric& v) { text += decimalText(v.negative, v.magnitude, v.scale); },
      [&](std::string_view v) { text += v; },
      [&](VariantView::Bytes v) { text.append(reinterpret_cast<const char*>(v.data()), v.size()); },
  });
}

double toDouble(const VariantView& value) {
  return value.visit(Overloaded{
      [](std::monostate) -> double { throwNull(); },
      [](bool v) { return v ? -1.0 : 0.0; },
      [](std::uint8_t v) { return static_cast<double>(v); },
      [](std::int16_t v) { return static_cast<double>(v); },
      [](std::int32_t v) { return static_cast<double>(v); },
      [](float v) { return static_cast<double>(v); },
      [](double v) { return v; },
      [](Currency v) { return static_cast<double>(v.units) / kCurrencyScale; },
      [](DateTime v) { return v.serial; },
      [](const Numeric& v) { return numericValue(v); },
      [](std::string_view v) {
        const auto number = parseNumber(v);
        if (!number) throwMismatchText(v);
        if (std::isinf(*number)) throwOverflow();
        return *number;
      },
      [](VariantView::Bytes) -> double { throwMismatch("binary is no number"); },
  });
}

std::int32_t toLong(const VariantView& value) {
  if (const auto* whole = value.as<std::int32_t>()) return *whole;
  return toWhole<std::int32_t>(value);
}

std::int16_t toInteger(const VariantView& value) { return toWhole<std::int16_t>(value); }

Currency toCurrency(const VariantView& value) {
  if (const auto* currency = value.as<Currency>()) return *currency;
  if (const auto* numeric = value.as<Numeric>()) return fromNumeric(*numeric);
  if (const auto* text = value.as<std::string_view>()) {
    if (!plainNumber(*text)) throwMismatchText(*text);  // &H1F, which is a number otherwise
    return fromNumeric(toNumeric(value));
  }
  return {fromReal<std::int64_t>(toDouble(value) * kCurrencyScale)};
}

bool toBool(const VariantView& value) {
  if (const auto* text = value.as<std::string_view>()) {
    const std::string_view word = text::trimBlanks(*text);
    if (text::equalsIgnoringAsciiCase(word, "true")) return true;
    if (text::equalsIgnoringAsciiCase(word, "false")) return false;
  }
  return toDouble(value) != 0;
}

DateTime toDate(const VariantView& value) {
  if (const auto* date = value.as<DateTime>()) return *date;
  if (const auto* text = value.as<std::string_view>()) {
    const auto date = parseDate(*text);
    if (!date) throwMismatchText(*text);
    return *date;
  }
  const DateTime date{toDouble(value)};
  static_cast<void>(toCivil(date));  // error 6 outside the years that exist
  return date;
}

}  // namespace values
