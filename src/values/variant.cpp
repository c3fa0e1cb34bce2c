#include "values/variant.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "values/number_text.h"
#include "values/runtime_error.h"

namespace values {

namespace {

constexpr std::int64_t kCurrencyScale = 10000;

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
[[noreturn]] void throwMismatchText(const std::string& text) {
  throwMismatch("'" + text.substr(0, 40) + "' cannot be converted");
}

Uint128 powerOfTen(int exponent) {
  Uint128 power = 1;
  while (exponent-- > 0) power *= 10;
  return power;
}

Uint128 magnitudeOf(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return value < 0 ? 0 - bits : bits;
}

Uint128 divideHalfEven(Uint128 dividend, Uint128 divisor) {
  const Uint128 quotient = dividend / divisor;
  const Uint128 rest = dividend % divisor;
  const bool up = rest > divisor - rest || (rest == divisor - rest && quotient % 2 != 0);
  return quotient + (up ? 1 : 0);
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
  const double rounded = std::nearbyint(value);  // the default mode: halves to even
  const double limit = std::ldexp(1.0, std::numeric_limits<Whole>::digits);
  if (!(rounded >= -limit && rounded < limit)) throwOverflow();
  return static_cast<Whole>(rounded);
}

template <typename Whole>
Whole fromCurrency(Currency value) {
  const std::int64_t quotient = value.units / kCurrencyScale;
  const std::int64_t rest = std::llabs(value.units % kCurrencyScale);
  const bool away = rest * 2 > kCurrencyScale || (rest * 2 == kCurrencyScale && quotient % 2 != 0);
  const std::int64_t rounded = quotient + (away ? (value.units < 0 ? -1 : 1) : 0);
  if (!std::in_range<Whole>(rounded)) throwOverflow();
  return static_cast<Whole>(rounded);
}

double numericValue(const Numeric& value) {
  const double magnitude =
      static_cast<double>(value.magnitude) / static_cast<double>(powerOfTen(value.scale));
  return value.negative ? -magnitude : magnitude;
}

std::string_view trimBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool equalsNoCase(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if ((c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c) != lower[i]) return false;
  }
  return true;
}

template <typename Whole>
Whole toWhole(const Variant& value) {
  if (const auto* currency = value.as<Currency>()) return fromCurrency<Whole>(*currency);
  if (const auto* numeric = value.as<Numeric>()) {
    return fromMagnitude<Whole>(numeric->negative,
                                divideHalfEven(numeric->magnitude, powerOfTen(numeric->scale)));
  }
  return fromReal<Whole>(toDouble(value));
}

void appendCurrency(std::string& text, Currency value) {
  if (value.units % kCurrencyScale == 0) {
    appendWhole(text, value.units / kCurrencyScale);
  } else {
    text += decimalText(value.units < 0, magnitudeOf(value.units), 4);
  }
}

}  // namespace

std::string toText(const Variant& value) {
  std::string text;
  appendText(text, value);
  return text;
}

void appendText(std::string& text, const Variant& value) {
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
      [&](const std::string& v) { text += v; },
      [&](const Binary& v) {
        text.append(reinterpret_cast<const char*>(v.bytes.data()), v.bytes.size());
      },
  });
}

double toDouble(const Variant& value) {
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
      [](const std::string& v) {
        double number = 0;
        if (!parseNumber(v, number)) throwMismatchText(v);
        return number;
      },
      [](const Binary&) -> double { throwMismatch("binary is no number"); },
  });
}

std::int32_t toLong(const Variant& value) {
  if (const auto* whole = value.as<std::int32_t>()) return *whole;
  return toWhole<std::int32_t>(value);
}

std::int16_t toInteger(const Variant& value) { return toWhole<std::int16_t>(value); }

Currency toCurrency(const Variant& value) {
  if (const auto* currency = value.as<Currency>()) return *currency;
  if (const auto* numeric = value.as<Numeric>()) {
    const Uint128 units = numeric->scale > 4
                              ? divideHalfEven(numeric->magnitude, powerOfTen(numeric->scale - 4))
                              : numeric->magnitude * powerOfTen(4 - numeric->scale);
    return {fromMagnitude<std::int64_t>(numeric->negative, units)};
  }
  return {fromReal<std::int64_t>(toDouble(value) * kCurrencyScale)};
}

bool toBool(const Variant& value) {
  if (const auto* text = value.as<std::string>()) {
    const std::string_view word = trimBlanks(*text);
    if (equalsNoCase(word, "true")) return true;
    if (equalsNoCase(word, "false")) return false;
  }
  return toDouble(value) != 0;
}

DateTime toDate(const Variant& value) {
  if (const auto* date = value.as<DateTime>()) return *date;
  if (const auto* text = value.as<std::string>()) {
    DateTime date;
    if (parseDate(*text, date)) return date;
    throwMismatchText(*text);
  }
  const DateTime date{toDouble(value)};
  static_cast<void>(toCivil(date));  // error 6 outside the years that exist
  return date;
}

bool parseNumber(const std::string& text, double& number) {
  std::string_view rest = trimBlanks(text);
  const bool negative = !rest.empty() && rest.front() == '-';
  if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) rest.remove_prefix(1);
  if (rest.empty() || !((rest.front() >= '0' && rest.front() <= '9') || rest.front() == '.'))
    return false;
  const auto [end, code] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  if (code != std::errc{} || end != rest.data() + rest.size()) return false;
  if (negative) number = -number;
  return true;
}

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Up to three numbers with the same mark between them: "2013-08-02", "7:05".
struct NumberGroup {
  std::array<int, 3> numbers = {0, 0, 0};
  std::size_t count = 0;
  char mark = 0;
};

bool readGroup(std::string_view text, NumberGroup& group) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (group.count == group.numbers.size() || !isDigit(text[at])) return false;
    int& number = group.numbers[group.count++];
    for (; at < text.size() && isDigit(text[at]); ++at) {
      if (number > 9999) return false;
      number = number * 10 + (text[at] - '0');
    }
    if (at == text.size()) return true;
    if (group.mark != 0 && text[at] != group.mark) return false;
    group.mark = text[at];
  }
  return false;  // nothing there, or a mark at the end
}

bool readDay(std::string_view text, CivilTime& civil) {
  NumberGroup group;
  if (!readGroup(text, group) || group.count != 3) return false;
  const auto [first, second, third] = group.numbers;
  const bool yearFirst = first > 31;
  if (group.mark != '/' && !(group.mark == '-' && yearFirst)) return false;
  civil.year = yearFirst ? first : third;
  civil.month = yearFirst ? second : first;
  civil.day = yearFirst ? third : second;
  return civil.year >= 100;
}

bool readTime(std::string_view text, CivilTime& civil) {
  NumberGroup group;
  if (!readGroup(text, group) || group.count < 2 || group.mark != ':') return false;
  civil.hour = group.numbers[0];
  civil.minute = group.numbers[1];
  civil.second = group.numbers[2];
  return true;
}

}  // namespace

bool parseDate(const std::string& text, DateTime& date) {
  const std::string_view whole = trimBlanks(text);
  const std::size_t blank = whole.find(' ');
  CivilTime civil;
  const bool read = blank == std::string_view::npos
                        ? readDay(whole, civil) || readTime(whole, civil)
                        : readDay(whole.substr(0, blank), civil) &&
                              readTime(trimBlanks(whole.substr(blank)), civil);
  if (!read) return false;
  try {
    date = toDateTime(civil);
  } catch (const RuntimeError&) {
    return false;  // a day or time that does not exist
  }
  return true;
}

}  // namespace values
