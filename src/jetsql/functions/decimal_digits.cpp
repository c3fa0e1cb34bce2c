#include "jetsql/functions/decimal_digits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>

#include "jetsql/functions/function_tables.h"
#include "values/decimal.h"
#include "values/number_text.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

// One more at the last kept place; none kept means the place before the first digit.
void increment(Digits& number) {
  for (std::size_t i = number.digits.size(); i-- > 0;) {
    if (number.digits[i] != '9') {
      ++number.digits[i];
      return;
    }
    number.digits[i] = '0';
  }
  number.digits.insert(0, "1");
  ++number.exponent;
}

}  // namespace

char Digits::at(int place) const {  // place 0: after the point; -1: units
  const int index = exponent + place;
  return index < 0 || index >= static_cast<int>(digits.size())
             ? '0'
             : digits[static_cast<std::size_t>(index)];
}

void Digits::strip() {
  const std::size_t lead = std::min(digits.find_first_not_of('0'), digits.size());
  digits.erase(0, lead);
  exponent -= static_cast<int>(lead);
  while (!digits.empty() && digits.back() == '0') digits.pop_back();
  if (digits.empty()) exponent = 0;
}

void Digits::round(int places) {
  const int kept = exponent + places;
  if (kept >= static_cast<int>(digits.size())) return;
  const bool up = kept >= 0 && digits[static_cast<std::size_t>(kept)] >= '5';
  digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
  if (up) increment(*this);
  strip();
}

Digits digitsOf(const Variant& value) {
  Digits result;
  if (value.type() == VariantType::kCurrency || value.type() == VariantType::kNumeric) {
    const values::Numeric number = values::toNumeric(value);
    result.negative = number.negative;
    result.digits = values::decimalText(false, number.magnitude, 0);
    result.exponent = static_cast<int>(result.digits.size()) - number.scale;
  } else {
    const double number = toDouble(value);
    if (!std::isfinite(number)) throwOverflow();
    std::array<char, 32> text{};
    const char* end = std::to_chars(text.data(), text.data() + text.size(), std::abs(number),
                                    std::chars_format::scientific, 14)
                          .ptr;
    const char* mark = std::find(text.data(), const_cast<char*>(end), 'e');
    std::copy_if(static_cast<const char*>(text.data()), mark, std::back_inserter(result.digits),
                 [](char c) { return c != '.'; });
    std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, result.exponent);
    ++result.exponent;
    result.negative = number < 0;
  }
  result.strip();
  return result;
}

}  // namespace jetsql
