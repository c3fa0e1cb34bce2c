// The two engines behind format(): one pattern of each kind, named forms resolved. Private to the
// room.
#pragma once

#include <string>
#include <string_view>

#include "jet/variant.h"
#include "jetsql/date_parts.h"

namespace jetsql {

// Sections by sign: "positive;negative;zero;null". Value: a number of any type, or Null.
[[nodiscard]] std::string formatNumber(const jet::Variant& value, std::string_view pattern);

[[nodiscard]] std::string formatDate(jet::DateTime date, std::string_view pattern,
                                     const WeekRule& rule);

}  // namespace jetsql
