#include "jetsql/translate/fields_read.h"

#include <algorithm>

#include "jetsql/translate/typed_tree.h"

namespace jetsql {
namespace {

bool isQuery(const typed::Expression& expression) {
  return expression.as<typed::InQuery>() != nullptr ||
         expression.as<typed::Quantified>() != nullptr ||
         expression.as<typed::Exists>() != nullptr ||
         expression.as<typed::ScalarQuery>() != nullptr;
}

// Calls the function for the expression and all that it is made of, until one gives false.
template <typename Visit>
bool forEach(const typed::Expression& expression, const Visit& visit) {
  if (!visit(expression)) return false;
  const std::vector<typed::Expression> operands = typed::operandsOf(expression);
  return std::ranges::all_of(operands,
                             [&](const auto& operand) { return forEach(operand, visit); });
}

bool dependsOnOperands(const typed::Expression& expression) {
  const auto* call = expression.as<typed::Call>();
  return (call == nullptr || call->function->deterministic) && !isQuery(expression) &&
         expression.as<typed::Aggregate>() == nullptr;
}

}  // namespace

bool containsQuery(const typed::Expression& expression) {
  return !forEach(expression, [](const auto& part) { return !isQuery(part); });
}

std::optional<Relations> relationsRead(const typed::Expression& expression) {
  Relations read;
  const bool known = forEach(expression, [&](const auto& part) {
    if (const auto* field = part.template as<typed::Field>()) read.insert(field->relation);
    return dependsOnOperands(part);
  });
  if (!known) return std::nullopt;
  return read;
}

bool hasParameter(const typed::Expression& expression) {
  return !forEach(expression, [](const auto& part) {
    const auto* literal = part.template as<typed::Literal>();
    return literal == nullptr || !literal->parameter;
  });
}

bool readsOnly(const typed::Relation& relation, const typed::Expression& expression) {
  const auto read = relationsRead(expression);
  return read && *read == Relations{&relation} && !hasParameter(expression);
}

std::vector<std::size_t> columnsRead(const typed::Expression& expression) {
  std::vector<std::size_t> columns;
  forEach(expression, [&columns](const auto& part) {
    if (const auto* field = part.template as<typed::Field>()) columns.push_back(field->column);
    return true;
  });
  return columns;
}

}  // namespace jetsql
