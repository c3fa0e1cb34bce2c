// A query text without its literals: what a prepared statement can be found again by.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "values/variant.h"

namespace jetsql {

// The text with each literal replaced by a mark of its type and blanks evened out, and the
// literals in order. Quick: one pass, no tree. A text that does not scan gives itself.
struct QueryShape {
  std::string key;
  std::vector<values::Variant> literals;
};
[[nodiscard]] QueryShape queryShape(std::string_view text);

}  // namespace jetsql
