// The context in which a query or an expression is resolved: what its names may refer to.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/typed_tree.h"
#include "values/error_numbers.h"

namespace jetsql {

// The relations of a FROM, whose fields can be named.
struct Scope {
  std::vector<typed::Relation*> relations;
  const Scope* outer = nullptr;  // of the query around a subquery
  // Of a domain function's subquery: what the names [~0], [~1], ... stand for.
  const std::vector<typed::Expression>* values = nullptr;
};

struct QueryContext {
  const Scope* outer = nullptr;  // of a subquery in an expression
  bool keepsOrder = false;       // the order of its rows matters to the query around
};

struct ExpressionContext {
  const Scope* scope = nullptr;
  const Select* aliases = nullptr;                    // whose select list's aliases may be used
  const std::vector<typed::Group>* groups = nullptr;  // set: fields must be grouped or aggregated
  int aggregateError = error::kAggregateInWhere;      // 0: aggregates may stand here
  int mismatch = error::kCriteriaTypeMismatch;
};

struct FoundColumn {
  const Scope* scope = nullptr;
  typed::Relation* relation = nullptr;
  std::size_t column = 0;
};

// The field that a path names, in the innermost scope that has one. Error 3079 when one scope has
// several.
[[nodiscard]] std::optional<FoundColumn> findColumn(const Scope& scope,
                                                    const std::vector<std::string>& path);

}  // namespace jetsql
