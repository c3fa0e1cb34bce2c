#include "values/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "text/ascii.h"

namespace values {

namespace {

// Digits and a decimal exponent: the value is 0.d1d2d3... times 10^point.
std::string placePoint(std::string_view digits, int point) {
  if (point <= 0) {
    return "0." + std::string(static_cast<std::size_t>(-point), '0') + std::string(digits);
  }
  const auto whole = static_cast<std::size_t>(point);
  std::string text(digits.substr(0, whole));
  if (digits.size() <= whole) return text.append(whole - digits.size(), '0');
  return text.append(1, '.').append(digits.substr(whole));
}

// The platform keeps 15 digits of a double and 7 of a single, so 0.1 + 0.2 reads 0.3. The
// form 1.5E+15 is for whole parts of more digits than that and for numbers below 0.0001.
template <typename Real>
std::string formatReal(Real value) {
  constexpr int kDigits = sizeof(Real) == sizeof(float) ? 7 : 15;
  constexpr int kLeastPlainExponent = -4;
  constexpr Real kFirstNotPlain = sizeof(Real) == sizeof(float) ? 1e7F : 1e15;  // 10^kDigits
  if (!std::isfinite(value)) return value != value ? "NaN" : value < 0 ? "-Inf" : "Inf";
  if (std::fabs(value) < kFirstNotPlain) {
    const auto whole = static_cast<std::int64_t>(value);
    if (static_cast<Real>(whole) == value) return std::to_string(whole);
  }
  std::array<char, 40> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                 std::chars_format::scientific, kDigits - 1)
                       .ptr;
  const std::string_view form(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t mark = form.find('e');
  int exponent = 0;
  const char* from = form.data() + mark + (form[mark + 1] == '+' ? 2 : 1);
  std::from_chars(from, end, exponent);
  std::string digits(1, form[0]);
  digits += form.substr(2, mark - 2);
  digits.resize(digits.find_last_not_of('0') + 1);
  if (digits.empty()) return "0";
  const std::string sign = value < 0 ? "-" : "";
  if (exponent < kDigits && exponent >= kLeastPlainExponent) {
    return sign + placePoint(digits, exponent + 1);
  }
  std::string text = sign + digits[0];
  if (digits.size() > 1) text.append(1, '.').append(digits, 1);
  return text + (exponent < 0 ? "E-" : "E+") + (std::abs(exponent) < 10 ? "0" : "") +
         std::to_string(std::abs(exponent));
}

}  // namespace

void appendWhole(std::string& text, std::int64_t value) {
  if (value >= 0 && value < 10) {  // most amounts of a sale are zero
    text += static_cast<char>('0' + value);
    return;
  }
  std::array<char, 24> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  text.append(buffer.data(), end);
}

std::string realText(float value) { return formatReal(value); }

std::string realText(double value) { return formatReal(value); }

std::string decimalText(bool negative, Uint128 magnitude, int scale) {
  std::array<char, 40> buffer;
  auto at = buffer.end();
  for (; magnitude > UINT64_MAX; magnitude /= 10) {
    *--at = static_cast<char>('0' + static_cast<int>(magnitude % 10));
  }
  for (auto rest = static_cast<std::uint64_t>(magnitude); rest != 0; rest /= 10) {
    *--at = static_cast<char>('0' + static_cast<int>(rest % 10));
  }
  std::string_view digits(at, static_cast<std::size_t>(buffer.end() - at));
  const int point = static_cast<int>(digits.size()) - scale;
  const std::size_t last = digits.find_last_not_of('0');
  if (last == std::string_view::npos) return "0";
  return (negative ? "-" : "") + placePoint(digits.substr(0, last + 1), point);
}

}  // namespace values
