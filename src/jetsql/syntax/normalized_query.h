// A query text scanned once: its tokens for the parser, its literals, and the key by which a
// prepared statement for a text that differs only in its literals is found again.
//
//   const NormalizedQuery query = normalize("SELECT * FROM t  WHERE day = #8/2/2013#");
//   query.key:       SELECT * FROM t WHERE day = \1t      query.literals: {2013-08-02}
//   parseQuery(query)
//
// Tokens refer to the text, which outlives the result.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/syntax/scanner.h"
#include "values/runtime_error.h"
#include "values/variant.h"

namespace jetsql {

struct NormalizedQuery {
  std::string_view text;
  // The text with each literal replaced by a mark and its type's letter, and blanks evened out.
  std::string key;
  std::vector<Token> tokens;  // the last is kEnd
  std::vector<values::Variant> literals;
  // Why the text cannot be scanned, which the parser throws. The key is then the text itself: it
  // may still be the name of a table.
  std::optional<RuntimeError> fault;
};

[[nodiscard]] NormalizedQuery normalize(std::string_view text);

}  // namespace jetsql
