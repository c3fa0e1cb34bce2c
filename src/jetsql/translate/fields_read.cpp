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

// The relations that a query reads, and those of its own FROM and of the queries within.
struct Reads {
  Relations read;
  Relations own;
};

void addReads(const typed::Query& query, Reads& reads);

const typed::Query* queryOf(const typed::Expression& expression) {
  if (const auto* in = expression.as<typed::InQuery>()) return in->query.get();
  if (const auto* test = expression.as<typed::Quantified>()) return test->query.get();
  if (const auto* exists = expression.as<typed::Exists>()) return exists->query.get();
  if (const auto* scalar = expression.as<typed::ScalarQuery>()) return scalar->query.get();
  return nullptr;
}

void addReads(const typed::Expression& expression, Reads& reads) {
  if (!expression) return;
  forEach(expression, [&reads](const auto& part) {
    if (const auto* field = part.template as<typed::Field>()) reads.read.insert(field->relation);
    if (const typed::Query* query = queryOf(part)) addReads(*query, reads);
    return true;
  });
}

void addReads(const typed::FromItem& item, Reads& reads) {
  const auto* join = std::get_if<typed::Join>(&item.node);
  if (join == nullptr) return;
  addReads(*join->left, reads);
  addReads(*join->right, reads);
  addReads(join->on, reads);
}

// What a query of the FROM reads is its own: it sees nothing of the queries around.
void addReads(const typed::Select& select, Reads& reads) {
  for (const auto& relation : select.relations) reads.own.insert(relation.get());
  for (const auto& item : select.from) addReads(item, reads);
  for (const auto& condition : select.conditions) addReads(condition, reads);
  for (const auto& group : select.groups) addReads(group.value, reads);
  for (const auto& output : select.outputs) addReads(output.value, reads);
  for (const auto& order : select.order) addReads(order.value, reads);
  for (const auto& lookup : select.lookups) addReads(lookup.value, reads);
  addReads(select.having, reads);
}

void addReads(const typed::Query& query, Reads& reads) {
  for (const auto& select : query.selects) addReads(select, reads);
  if (!query.crosstab) return;
  addReads(query.crosstab->value, reads);
  for (const auto& cell : query.crosstab->cells) addReads(cell.pivot, reads);
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

bool readsOutside(const typed::Query& query) {
  Reads reads;
  addReads(query, reads);
  return std::ranges::any_of(
      reads.read, [&reads](const auto* relation) { return !reads.own.contains(relation); });
}

bool hasParameter(const typed::Expression& expression) {
  return !forEach(expression, [](const auto& part) {
    const auto* literal = part.template as<typed::Literal>();
    return literal == nullptr || !literal->parameter;
  });
}

std::optional<std::vector<std::size_t>> columnsRead(const typed::Expression& expression,
                                                    const typed::Relation& relation) {
  std::vector<std::size_t> columns;
  const bool known = forEach(expression, [&](const auto& part) {
    const auto* field = part.template as<typed::Field>();
    if (field != nullptr) columns.push_back(field->column);
    return dependsOnOperands(part) && (field == nullptr || field->relation == &relation);
  });
  if (!known || hasParameter(expression)) return std::nullopt;
  return columns;
}

}  // namespace jetsql
