// How a local value gets into the text of a statement. The four conversions never fail: each has
// its own trap and gives its fallback instead.
//
//   SqlText("O'Neil")        // O\'Neil: the first apostrophe only
//   NzLong(2.5)              // 2: halves to even
//   "'" + SqlText(formatDay(time)) + "'"
//
// Errors of the format functions: 94 where a Null is made a text, 6 outside the years that exist.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "values/variant.h"

namespace extract {

// The inside of a quoted literal: Null is the empty text; a backslash goes before the first
// apostrophe, once, and nothing else changes. "NULL" when the value has no text form, or when its
// first apostrophe stands after character 32767 (counted in UTF-16 units, as the platform does).
[[nodiscard]] std::string SqlText(const values::VariantView& value);

// The text form as it stands; the empty text for Null and for a value without a text form.
[[nodiscard]] std::string NzText(const values::VariantView& value);

// 0 for Null, for a text that is no number and outside 32 bits.
[[nodiscard]] std::int32_t NzLong(const values::VariantView& value);

[[nodiscard]] std::int32_t NzLong(values::Currency amount);  // the same for less

// Only -1 is true.
[[nodiscard]] bool NzBool(const values::VariantView& value);

// Append SqlText and NzText to a statement, without a temporary string for each value.
void appendSqlText(std::string& statement, const values::VariantView& value);
void appendNzText(std::string& statement, const values::VariantView& value);

// "yyyy-MM-dd", "hh:nn:ss" and "hh:nn" of a date, or of a text that reads as one; any other text
// stays as it is. Null stays Null.
[[nodiscard]] values::Variant formatDay(const values::Variant& value);
[[nodiscard]] values::Variant formatTime(const values::Variant& value);
[[nodiscard]] values::Variant formatHourMinute(const values::Variant& value);

// "일" Sunday to "토" Saturday. Error 13 for what is no date, 94 for Null.
[[nodiscard]] std::string_view weekdayLetter(const values::Variant& day);

// "#yyyy-MM-dd#", a day as a query of a local database takes it.
[[nodiscard]] std::string dayLiteral(values::DateTime day);

// "1,204" and "22.7", as the progress caption shows them.
[[nodiscard]] std::string groupedText(std::int32_t number);
[[nodiscard]] std::string oneDecimalText(double number);

}  // namespace extract
