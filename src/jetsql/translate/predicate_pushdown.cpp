#include "jetsql/translate/predicate_pushdown.h"

#include <algorithm>
#include <utility>

#include "jetsql/functions/value_types.h"
#include "jetsql/translate/fields_read.h"
#include "jetsql/translate/typing.h"
#include "values/error_numbers.h"

namespace jetsql {
namespace {

using typed::Expression;

// column <operation> values[0], column Between values[0] And values[1] or column In (values), with
// constants as the query has them, not yet converted.
struct Predicate {
  enum class Form { kComparison, kBetween, kInList };

  Form form = Form::kComparison;
  Operator operation = Operator::kEqual;
  std::vector<Expression> values;

  [[nodiscard]] bool isEquality() const {
    return form == Form::kComparison && operation == Operator::kEqual;
  }
  [[nodiscard]] Expression on(const Expression& value) const {
    constexpr int kMismatch = error::kCriteriaTypeMismatch;
    if (form == Form::kBetween) return between(value, values[0], values[1], false, kMismatch);
    if (form == Form::kInList) return inList(value, values, false, kMismatch);
    return comparison(operation, value, values[0], kMismatch);
  }
};

struct FieldPredicate {
  typed::Field field;
  Predicate predicate;
};

bool isConstant(const Expression& expression) {
  if (expression.as<typed::Literal>() != nullptr) return true;
  const auto* operation = expression.as<typed::Operation>();  // a sign
  const bool unary = operation != nullptr && operation->operands.size() == 1;
  return (unary || expression.as<typed::Not>() != nullptr) &&
         isConstant(typed::operandsOf(expression).front());
}

Operator mirrored(Operator operation) {
  switch (operation) {
    case Operator::kLess:
      return Operator::kGreater;
    case Operator::kLessOrEqual:
      return Operator::kGreaterOrEqual;
    case Operator::kGreater:
      return Operator::kLess;
    case Operator::kGreaterOrEqual:
      return Operator::kLessOrEqual;
    default:
      return operation;
  }
}

std::optional<FieldPredicate> predicateOf(const Expression& conjunct) {
  std::vector<Expression> operands;
  for (const Expression& operand : typed::operandsOf(conjunct)) {
    operands.push_back(unconverted(operand));
  }
  Predicate predicate;
  if (const auto* test = conjunct.as<typed::Comparison>()) {
    if (test->operation == Operator::kNotEqual) return std::nullopt;
    predicate.operation = test->operation;
    if (operands[0].as<typed::Field>() == nullptr) {
      std::swap(operands[0], operands[1]);
      predicate.operation = mirrored(test->operation);
    }
  } else if (const auto* range = conjunct.as<typed::Between>(); range && !range->negated) {
    predicate.form = Predicate::Form::kBetween;
  } else if (const auto* list = conjunct.as<typed::InList>(); list && !list->negated) {
    predicate.form = Predicate::Form::kInList;
  } else {
    return std::nullopt;
  }
  const auto* field = operands[0].as<typed::Field>();
  predicate.values.assign(operands.begin() + 1, operands.end());
  if (field == nullptr || !std::ranges::all_of(predicate.values, isConstant)) return std::nullopt;
  return FieldPredicate{*field, std::move(predicate)};
}

void collectConjuncts(const Expression& condition, std::vector<FieldPredicate>& found) {
  const auto* junction = condition.as<typed::Junction>();
  if (junction != nullptr && junction->operation == Operator::kAnd) {
    collectConjuncts(junction->left, found);
    collectConjuncts(junction->right, found);
  } else if (auto predicate = predicateOf(condition)) {
    found.push_back(std::move(*predicate));
  }
}

// Types of which values that compare equal are the same, whatever they are compared with.
bool hasOneFormEach(values::VariantType type) {
  return isWholeNumber(type) || type == values::VariantType::kSingle ||
         type == values::VariantType::kDouble || type == values::VariantType::kDateTime;
}

void pushInto(typed::Query& query, std::size_t column, const Predicate& predicate);

void pushThrough(typed::Select& select, const typed::Field& field, const Predicate& predicate) {
  for (const auto& relation : select.relations) {
    if (relation.get() == field.relation && relation->query != nullptr) {
      pushInto(*relation->query, field.column, predicate);
    }
  }
}

// Rows of a computed value may be found by an index of the expression. The missing side of an outer
// join has no row to be found.
void addLookup(typed::Select& select, const Expression& value, const Predicate& predicate) {
  if (!predicate.isEquality() || select.relations.size() != 1) return;
  const typed::Relation& relation = *select.relations.front();
  if (relation.table == nullptr || !readsOnly(relation, value)) return;
  const Expression test = predicate.on(value);
  const auto* equality = test.as<typed::Comparison>();
  if (!(equality->left == value)) return;  // the index holds values that are not converted
  select.lookups.push_back({value, equality->right});
}

void pushInto(typed::Select& select, std::size_t column, const Predicate& predicate) {
  if (select.top) return;  // a row less would let another in
  const Expression& value = select.outputs[column].value;
  if (select.grouped) {
    const auto group = std::ranges::find(select.groups, value, &typed::Group::value);
    if (group == select.groups.end()) return;
    select.conditions.push_back(predicate.on(value));
    if (predicate.isEquality() && hasOneFormEach(value.type())) group->isFixed = true;
  }
  if (const auto* field = value.as<typed::Field>()) {
    pushThrough(select, *field, predicate);
  } else {
    addLookup(select, value, predicate);
  }
}

// A column of a union compares like that of a part unless its values become texts or dates.
bool comparesAlike(values::VariantType part, values::VariantType whole) {
  return part == whole || (isNumber(part) && isNumber(whole));
}

void pushInto(typed::Query& query, std::size_t column, const Predicate& predicate) {
  if (query.crosstab) return;
  for (typed::Select& select : query.selects) {
    if (comparesAlike(select.outputs[column].value.type(), query.columns[column].type)) {
      pushInto(select, column, predicate);
    }
  }
}

}  // namespace

void pushDown(typed::Select& select) {
  std::vector<FieldPredicate> predicates;
  for (const typed::Expression& condition : select.conditions) {
    collectConjuncts(condition, predicates);
  }
  for (const FieldPredicate& found : predicates) pushThrough(select, found.field, found.predicate);
}

}  // namespace jetsql
