// A value of a field or an expression, with its Jet type.
//
//   Variant v = Currency{125000};        // 12.5
//   if (!v.isNull()) std::string text = toText(v);
//
// Text is UTF-8. Values own what they hold; copying copies. Conversions throw RuntimeError:
// 6 overflow, 13 type mismatch, 94 invalid use of Null.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "values/date_time.h"
#include "values/variant_types.h"

namespace values {

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

// A value that somebody else keeps, for who reads or converts it: what std::string_view is to a
// text. A Variant is one where a view is asked for. Numbers and dates are copied; a text or the
// bytes of a binary must stay alive.
class VariantView {
 public:
  using Bytes = std::span<const std::byte>;

  VariantView() = default;  // Null
  VariantView(bool value) : value_(value) {}
  VariantView(std::uint8_t value) : value_(value) {}
  VariantView(std::int16_t value) : value_(value) {}
  VariantView(std::int32_t value) : value_(value) {}
  VariantView(float value) : value_(value) {}
  VariantView(double value) : value_(value) {}
  VariantView(Currency value) : value_(value) {}
  VariantView(DateTime value) : value_(value) {}
  VariantView(const Numeric& value) : value_(value) {}
  VariantView(std::string_view value) : value_(value) {}
  VariantView(const std::string& value) : value_(std::string_view(value)) {}
  VariantView(const char* value) : value_(std::string_view(value)) {}
  VariantView(Bytes value) : value_(value) {}
  VariantView(const Variant& value);

  [[nodiscard]] VariantType type() const { return static_cast<VariantType>(value_.index()); }
  [[nodiscard]] bool isNull() const { return value_.index() == 0; }
  // As Variant's; a text is a std::string_view here, a binary Bytes.
  template <typename T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&value_);
  }
  template <typename Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), value_);
  }

  // A copy that keeps its text or bytes.
  [[nodiscard]] Variant owned() const;

 private:
  std::variant<std::monostate, bool, std::uint8_t, std::int16_t, std::int32_t, float, double,
               Currency, DateTime, Numeric, std::string_view, Bytes>
      value_;
};

// The platform's default text of a value: whole numbers plain, fractions in their shortest form
// with a full stop, dates as dateText, Yes/No as "True"/"False", binary as its bytes taken for
// text. Null: error 94.
[[nodiscard]] std::string toText(const VariantView& value);
// The same, appended to `text`; with an error `text` stays as it was.
void appendText(std::string& text, const VariantView& value);

// A number from a number, a date, a Yes/No (-1 or 0) or a text that reads as a number.
// Null: error 94; a text that is no number: 13.
[[nodiscard]] double toDouble(const VariantView& value);

// Whole numbers round halves to even (2.5 gives 2, 3.5 gives 4); Currency and Numeric are rounded
// exactly, not by way of a double. Out of range: error 6.
[[nodiscard]] std::int32_t toLong(const VariantView& value);
[[nodiscard]] std::int16_t toInteger(const VariantView& value);
[[nodiscard]] Currency toCurrency(const VariantView& value);

// Non-zero numbers and "True" are true; a text that is neither number nor True/False: error 13.
[[nodiscard]] bool toBool(const VariantView& value);

// From a date, a number (a serial) or a text in one of the forms of parseDate. Error 13 otherwise.
[[nodiscard]] DateTime toDate(const VariantView& value);

}  // namespace values
