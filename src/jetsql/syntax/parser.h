// A query text made into its tree.
//
//   auto query = parseQuery(normalize("SELECT TOP 3 * FROM Selling ORDER BY price DESC"));
//
// Errors: 3075 in an expression, 3131 to 3145 in a clause, 3219 for a statement that gives no rows,
// 3129 for a text that is no statement, 3360 for one nested too deeply.
#pragma once

#include <memory>
#include <string_view>

#include "jetsql/syntax/ast.h"
#include "jetsql/syntax/normalized_query.h"

namespace jetsql {

[[nodiscard]] std::unique_ptr<Query> parseQuery(const NormalizedQuery& query);

// Whether the text begins as a query or another statement does; else it can only be a name.
[[nodiscard]] bool beginsStatement(std::string_view text);

// SELECT * FROM name.
[[nodiscard]] std::unique_ptr<Query> selectAll(std::string_view table);

// The name by which a parameter is known and counted: its path without brackets, "Forms!a!b".
[[nodiscard]] std::string parameterName(const std::vector<std::string>& path);

}  // namespace jetsql
