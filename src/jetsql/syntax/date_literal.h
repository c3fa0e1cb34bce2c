// The text between the two # of a date literal. The order of day and month is the American one
// whatever the region, unless the year comes first or the first number can only be a day.
//
//   8/2/2013   8/2/13   2013-08-02   2-Aug-2013   Aug 2, 2013   14:30   8/2/2013 2:30:15 PM
//
// Years of two digits: 00 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999.
#pragma once

#include <optional>
#include <string_view>

#include "values/date_time.h"

namespace jetsql {

// Nothing when it is no date or no time of day that exists.
[[nodiscard]] std::optional<values::DateTime> parseDateLiteral(std::string_view text);

}  // namespace jetsql
