// The two halves of format(), for patterns of numbers and of dates, named forms already resolved.
// Private to the room.
#pragma once

#include <string>
#include <string_view>

#include "jetsql/functions/date_parts.h"
#include "values/variant.h"

namespace jetsql {

// Sections by sign: "positive;negative;zero;null". Value: a number of any type, or Null.
[[nodiscard]] std::string formatNumber(const values::Variant& value, std::string_view pattern);

[[nodiscard]] std::string formatDate(values::DateTime date, std::string_view pattern,
                                     const WeekRule& rule);

}  // namespace jetsql
