// The parts of format(), one for each kind of pattern, named forms already resolved.
// Private to the room.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jetsql/functions/date_parts.h"
#include "values/variant.h"

namespace jetsql {

// The parts of a pattern between its semicolons, outside quotes and not after a backslash; at least
// one.
[[nodiscard]] std::vector<std::string_view> splitSections(std::string_view pattern);

// Sections by sign: "positive;negative;zero;null". Value: a number of any type, or Null.
[[nodiscard]] std::string formatNumber(const values::Variant& value, std::string_view pattern);

// Sections: "text;empty text and Null". @ a character or a blank, & a character or nothing, < >
// case, ! fills from the left. Characters are placed from the right; more of them than places go
// before the first place.
[[nodiscard]] std::string formatText(std::string_view text, std::string_view pattern);

[[nodiscard]] std::string formatDate(values::DateTime date, std::string_view pattern,
                                     const WeekRule& rule);

}  // namespace jetsql
