#include "jetsql/translate/resolver_expression.h"

#include <algorithm>
#include <array>

#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/syntax/parser.h"
#include "jetsql/translate/typing.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::VariantType;

struct OperatorName {
  Operator operation;
  std::string_view function;
};
constexpr OperatorName kOperatorNames[] = {
    {Operator::kOr, "or"},
    {Operator::kAnd, "and"},
    {Operator::kXor, "xor"},
    {Operator::kEqv, "eqv"},
    {Operator::kImp, "imp"},
    {Operator::kNot, "not"},
    {Operator::kLike, "like"},
    {Operator::kALike, "alike"},
    {Operator::kAdd, "add"},
    {Operator::kSubtract, "sub"},
    {Operator::kMultiply, "mul"},
    {Operator::kDivide, "div"},
    {Operator::kIntDivide, "intdiv"},
    {Operator::kMod, "mod"},
    {Operator::kPower, "pow"},
    {Operator::kConcat, "concat"},
    {Operator::kNegate, "neg"},
};

typed::Expression yesNo(auto payload) { return {VariantType::kYesNo, std::move(payload)}; }

typed::Expression constant(values::Variant value) {
  const VariantType type = value.type();
  return {type, typed::Literal{std::move(value), std::nullopt}};
}

typed::Expression operation(Operator operation, std::vector<typed::Expression> operands) {
  const auto* name = std::ranges::find(kOperatorNames, operation, &OperatorName::operation);
  const Function* function = findOperator(name->function);
  std::vector<VariantType> types;
  types.reserve(operands.size());
  for (const typed::Expression& operand : operands) types.push_back(operand.type());
  return {function->resultType(types), typed::Operation{function, std::move(operands)}};
}

bool isTruth(const typed::Expression& expression) {
  return expression.type() == VariantType::kYesNo || expression.type() == VariantType::kNull;
}

// An aggregate over all rows.
bool givesOneRow(const Query& query) {
  if (query.selects.size() != 1 || query.crosstab) return false;
  const Select& select = query.selects.front();
  const auto& item = select.items.front().expression;
  return select.groupBy.empty() && item && containsAggregate(*item);
}

}  // namespace

// What is computed from groups may be a whole group, or made of groups and aggregates.
typed::Expression ExpressionResolver::resolve(const Expression& expression) const {
  if (context_.groups != nullptr && expression.as<Literal>() == nullptr &&
      expression.as<ScalarQuery>() == nullptr && !containsAggregate(expression)) {
    ExpressionContext plain = context_;
    plain.groups = nullptr;
    typed::Expression whole = ExpressionResolver(resolver_, plain).ungrouped(expression);
    for (const typed::Group& group : *context_.groups) {
      if (group.value == whole) return whole;
    }
  }
  return ungrouped(expression);
}

typed::Expression ExpressionResolver::ungrouped(const Expression& expression) const {
  return std::visit([&](const auto& node) { return this->node(node, expression); },
                    expression.node);
}

typed::Expression ExpressionResolver::node(const Literal& literal, const Expression&) const {
  const auto parameter = resolver_.parameterizes() ? literal.number : std::nullopt;
  return {literal.value.type(), typed::Literal{literal.value, parameter}};
}

// A field; else an alias of the select list; else Yes or No; else a parameter without a value.
typed::Expression ExpressionResolver::node(const Name& name, const Expression& expression) const {
  if (auto value = domainValue(name)) return value;
  const auto found = findColumn(*context_.scope, name.path);
  const bool local = found && found->scope == context_.scope;
  if (found && !(local && context_.groups != nullptr)) {
    found->relation->read = true;
    return {found->relation->columns()[found->column].type,
            typed::Field{found->relation, found->column}};
  }
  if (auto value = aliased(name)) return value;
  if (found) {
    throw RuntimeError(error::kNotGrouped,
                       "You tried to execute a query that does not include the specified "
                       "expression '" +
                           expression.source + "' as part of an aggregate function.");
  }
  const std::string word = text::lowerCase(expression.source);
  if (word == "yes" || word == "on") return constant(true);
  if (word == "no" || word == "off") return constant(false);
  resolver_.addUnknown(parameterName(name.path));
  return constant({});
}

typed::Expression ExpressionResolver::aliased(const Name& name) const {
  if (context_.aliases == nullptr || name.path.size() != 1) return {};
  for (const SelectItem& item : context_.aliases->items) {
    if (!item.expression || !equalText(item.alias, name.path.front())) continue;
    resolver_.enterAlias(*item.expression, item.alias);
    typed::Expression value = resolve(*item.expression);
    resolver_.leaveAlias();
    return value;
  }
  return {};
}

typed::Expression ExpressionResolver::node(const Star&, const Expression&) const {
  throw RuntimeError(error::kExpressionSyntax,
                     "Syntax error (missing operator) in query expression '*'.");
}

typed::Expression ExpressionResolver::node(const Unary& unary, const Expression&) const {
  typed::Expression operand = resolve(*unary.operand);
  if (unary.operation == Operator::kNot && isTruth(operand)) {
    return yesNo(typed::Not{std::move(operand)});
  }
  return operation(unary.operation, {std::move(operand)});
}

// Whole numbers are combined by And and Or bit by bit, which a function does; truth values by
// SQLite itself, so that the conditions within reach the tables.
typed::Expression ExpressionResolver::node(const Binary& binary, const Expression&) const {
  typed::Expression left = resolve(*binary.left);
  typed::Expression right = resolve(*binary.right);
  if (isComparison(binary.operation)) {
    return comparison(binary.operation, std::move(left), std::move(right), context_.mismatch);
  }
  const bool junction = binary.operation == Operator::kAnd || binary.operation == Operator::kOr;
  if (junction && isTruth(left) && isTruth(right)) {
    return yesNo(typed::Junction{binary.operation, std::move(left), std::move(right)});
  }
  return operation(binary.operation, {std::move(left), std::move(right)});
}

typed::Expression ExpressionResolver::node(const Between& test, const Expression&) const {
  typed::Expression value = resolve(*test.value);
  typed::Expression low = resolve(*test.low);
  return between(std::move(value), std::move(low), resolve(*test.high), test.negated,
                 context_.mismatch);
}

typed::Expression ExpressionResolver::node(const InList& test, const Expression&) const {
  typed::Expression value = resolve(*test.value);
  return inList(std::move(value), list(test.items), test.negated, context_.mismatch);
}

typed::Expression ExpressionResolver::node(const IsNull& test, const Expression&) const {
  return yesNo(typed::IsNull{resolve(*test.value), test.negated});
}

typed::Expression ExpressionResolver::node(const InQuery& test, const Expression&) const {
  typed::Expression value = resolve(*test.value);
  const typed::QueryPtr query = oneColumn(*test.query);
  std::array<typed::Expression, 2> operands{
      std::move(value), {query->columns.front().type, typed::SubqueryColumn{query.get()}}};
  makeComparable(operands, context_.mismatch);
  return yesNo(typed::InQuery{operands[0], operands[1], query, test.negated});
}

typed::Expression ExpressionResolver::node(const Exists& test, const Expression&) const {
  return yesNo(typed::Exists{std::make_shared<const typed::Query>(
      resolver_.query(*test.query, {.outer = context_.scope}))});
}

typed::Expression ExpressionResolver::node(const ScalarQuery& scalar, const Expression&) const {
  typed::QueryPtr query = oneColumn(*scalar.query);
  const VariantType type = query->columns.front().type;
  return {type, typed::ScalarQuery{std::move(query), givesOneRow(*scalar.query)}};
}

typed::Expression ExpressionResolver::node(const Quantified& test, const Expression&) const {
  typed::Expression value = resolve(*test.value);
  typed::QueryPtr query = oneColumn(*test.query);
  const typed::Expression column{query->columns.front().type, typed::SubqueryColumn{query.get()}};
  return yesNo(
      typed::Quantified{comparison(test.operation, std::move(value), column, context_.mismatch),
                        test.all, std::move(query)});
}

std::vector<typed::Expression> ExpressionResolver::list(
    std::span<const ExpressionPtr> items) const {
  std::vector<typed::Expression> result;
  result.reserve(items.size());
  for (const ExpressionPtr& item : items) result.push_back(resolve(*item));
  return result;
}

typed::QueryPtr ExpressionResolver::oneColumn(const Query& query) const {
  auto result = std::make_shared<const typed::Query>(
      resolver_.query(query, {.outer = context_.scope, .keepsOrder = true}));
  if (result->columns.size() != 1) {
    throw RuntimeError(error::kSubqueryFields,
                       "You have written a subquery that can return more than one field without "
                       "using the EXISTS reserved word.");
  }
  return result;
}

}  // namespace jetsql
