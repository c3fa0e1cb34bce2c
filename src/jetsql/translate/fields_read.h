// What an expression depends on: whether its values may be computed ahead, for an index.
//
//   columnsRead(Left(k.note, 1) & '.')     {4}: the column note of k and constants
#pragma once

#include <cstddef>
#include <optional>
#include <unordered_set>
#include <vector>

#include "jetsql/translate/typed_expression.h"

namespace jetsql {

// Whether a subquery stands anywhere in the expression.
[[nodiscard]] bool containsQuery(const typed::Expression& expression);

// The relations whose fields the expression reads, those of queries around it included. Nothing
// where it holds more than fields, constants, operators and functions that depend on their
// arguments alone.
using Relations = std::unordered_set<const typed::Relation*>;
[[nodiscard]] std::optional<Relations> relationsRead(const typed::Expression& expression);

// Whether a literal in it is a parameter of the statement, which differs from run to run.
[[nodiscard]] bool hasParameter(const typed::Expression& expression);

// Whether the expression may be computed ahead for the rows of the relation: it is made of nothing
// but fields of it and constants.
[[nodiscard]] bool readsOnly(const typed::Relation& relation, const typed::Expression& expression);

// The columns that such an expression reads.
[[nodiscard]] std::vector<std::size_t> columnsRead(const typed::Expression& expression);

}  // namespace jetsql
