// The platform's Format function.
//
//   format(Variant(1234567), "#,##0")                     // 1,234,567
//   format(date, "yyyy-mm-dd hh:nn:ss")                   // 2013-08-02 19:42:10
//   format(Variant(-3.5), "0.0;(0.0);zero")               // (3.5)
//   format(Variant(0.5), "Percent")                       // 50.00%
//
// Which kind of pattern it is follows from its characters: 0 # of a number, d m y h n s of a date,
// @ & < > of a text. Digits are rounded from 15 significant ones, halves away from zero. Names of
// days and months, the currency sign and the named date forms are those of a Korean system. A text
// that is no number or date goes through a pattern for those unchanged; Null gives "" unless the
// pattern has a fourth section.
#pragma once

#include <string>
#include <string_view>

#include "jetsql/functions/date_parts.h"
#include "values/variant.h"

namespace jetsql {

[[nodiscard]] std::string format(const values::Variant& value, std::string_view pattern,
                                 const WeekRule& rule = {});

// 1 January to 12, 1 Sunday to 7.
[[nodiscard]] std::string monthName(int month, bool abbreviated);
[[nodiscard]] std::string weekdayName(int day, bool abbreviated);

}  // namespace jetsql
