// A value of a field or an expression, with its Jet type.
//
//   Variant v = Currency{125000};        // 12.5
//   if (!v.isNull()) std::string text = toText(v);
//
// Text is UTF-8. Values own what they hold; copying copies. Conversions throw RuntimeError:
// 6 overflow, 13 type mismatch, 94 invalid use of Null.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "values/date_time.h"

namespace values {

constexpr std::uint8_t kCurrencyPlaces = 4;
constexpr std::int64_t kCurrencyScale = 10000;  // units in 1

// Exact amounts with four decimals; `units` counts ten-thousandths.
struct Currency {
  std::int64_t units = 0;
  friend auto operator<=>(Currency, Currency) = default;
};

__extension__ typedef unsigned __int128 Uint128;

// Exact decimal of up to 28 digits: the value is magnitude / 10^scale, negated when `negative`.
struct Numeric {
  bool negative = false;
  std::uint8_t scale = 0;  // digits after the point, 0 to 28
  Uint128 magnitude = 0;   // at most 10^28 - 1
  friend bool operator==(const Numeric&, const Numeric&) = default;
};

// The bytes of a binary or OLE field.
struct Binary {
  std::vector<std::byte> bytes;
  friend bool operator==(const Binary&, const Binary&) = default;
};

// In the order of Variant's alternatives.
enum class VariantType : std::uint8_t {
  kNull,
  kYesNo,
  kByte,
  kInteger,  // 16 bits
  kLong,     // 32 bits
  kSingle,
  kDouble,
  kCurrency,
  kDateTime,
  kNumeric,
  kText,
  kBinary,
};

class Variant {
 public:
  Variant() = default;  // Null
  Variant(bool value) : value_(value) {}
  Variant(std::uint8_t value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(float value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(Currency value) : value_(value) {}
  Variant(DateTime value) : value_(value) {}
  Variant(Numeric value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(Binary value) : value_(std::move(value)) {}

  [[nodiscard]] VariantType type() const { return static_cast<VariantType>(value_.index()); }
  [[nodiscard]] bool isNull() const { return value_.index() == 0; }

  // The held value when it has exactly this type, else nullptr:
  // if (auto* text = v.as<std::string>()) …
  template <typename T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&value_);
  }

  // Calls the visitor with the held value, std::monostate for Null; for conversions.
  template <typename Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), value_);
  }

  // The same value of the same type; Null equals Null.
  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  std::variant<std::monostate, bool, std::uint8_t, std::int16_t, std::int32_t, float, double,
               Currency, DateTime, Numeric, std::string, Binary>
      value_;
};

// The platform's default text of a value: whole numbers plain, fractions in their shortest form
// with a full stop, dates as dateText, Yes/No as "True"/"False", binary as its bytes taken for
// text. Null: error 94.
[[nodiscard]] std::string toText(const Variant& value);
// The same, appended to `text`; with an error `text` stays as it was.
void appendText(std::string& text, const Variant& value);

// A number from a number, a date, a Yes/No (-1 or 0) or a text that reads as a number.
// Null: error 94; a text that is no number: 13.
[[nodiscard]] double toDouble(const Variant& value);

// Whole numbers round halves to even (2.5 gives 2, 3.5 gives 4); Currency and Numeric are rounded
// exactly, not by way of a double. Out of range: error 6.
[[nodiscard]] std::int32_t toLong(const Variant& value);
[[nodiscard]] std::int16_t toInteger(const Variant& value);
[[nodiscard]] Currency toCurrency(const Variant& value);

// Non-zero numbers and "True" are true; a text that is neither number nor True/False: error 13.
[[nodiscard]] bool toBool(const Variant& value);

// From a date, a number (a serial) or a text in one of the forms of parseDate. Error 13 otherwise.
[[nodiscard]] DateTime toDate(const Variant& value);

}  // namespace values
