// Calls of functions and aggregates.
#include <algorithm>

#include "jetsql/functions/value_types.h"
#include "jetsql/translate/domain_query.h"
#include "jetsql/translate/resolver_expression.h"
#include "jetsql/translate/typing.h"
#include "text/letter_case.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::VariantType;

std::optional<typed::AggregateKind> aggregateOf(const Call& call) {
  std::string name = text::lowerCase(call.function);
  if (name.ends_with('$')) name.pop_back();
  const auto found = std::ranges::find(typed::kAggregateNames, name);
  if (found == typed::kAggregateNames.end()) return std::nullopt;
  return static_cast<typed::AggregateKind>(found - typed::kAggregateNames.begin());
}

[[noreturn]] void failArgumentCount(const Call& call) {
  throw RuntimeError(
      error::kExpressionSyntax,
      "Wrong number of arguments used with function in query expression '" + call.function + "'.");
}

typed::Expression iif(std::vector<typed::Expression>& values) {
  requireCondition(values[0]);
  const VariantType type = unifyTypes(std::span(values).subspan(1));
  return {type, typed::Case{{}, {{values[0], values[1]}}, values[2]}};
}

typed::Expression switchCase(std::vector<typed::Expression>& values) {
  std::vector<typed::Expression> results;
  for (std::size_t i = 1; i < values.size(); i += 2) results.push_back(values[i]);
  const VariantType type = unifyTypes(results);
  typed::Case made;
  for (std::size_t i = 0; i < results.size(); ++i) {
    requireCondition(values[2 * i]);
    made.branches.push_back({values[2 * i], results[i]});
  }
  return {type, std::move(made)};
}

typed::Expression choose(std::vector<typed::Expression>& values) {
  const VariantType type = unifyTypes(std::span(values).subspan(1));
  typed::Case made{converted(values[0], VariantType::kLong), {}, {}};
  for (std::size_t i = 1; i < values.size(); ++i) {
    made.branches.push_back(
        {{VariantType::kLong, typed::Literal{static_cast<std::int32_t>(i), std::nullopt}},
         values[i]});
  }
  return {type, std::move(made)};
}

// The type of the aggregate of values of a type. Whole numbers of 32 bits are summed up as Double,
// as the engine does.
VariantType typeOfAggregate(typed::AggregateKind kind, VariantType type) {
  using Kind = typed::AggregateKind;
  const bool exact = type == VariantType::kCurrency || type == VariantType::kNumeric;
  switch (kind) {
    case Kind::kCount:
      return VariantType::kLong;
    case Kind::kMin:
    case Kind::kMax:
    case Kind::kFirst:
    case Kind::kLast:
      return type;
    case Kind::kSum:
      if (isWholeNumber(type) && type != VariantType::kLong) return VariantType::kLong;
      return exact ? type : VariantType::kDouble;
    case Kind::kAvg:
      return exact ? type : VariantType::kDouble;
    default:
      return VariantType::kDouble;
  }
}

bool takesAnyType(typed::AggregateKind kind) {
  using Kind = typed::AggregateKind;
  return kind == Kind::kCount || kind == Kind::kMin || kind == Kind::kMax || kind == Kind::kFirst ||
         kind == Kind::kLast;
}

// The operands of an expression, without those inside its subqueries.
struct Operands {
  std::vector<const Expression*> operator()(const Unary& node) const {
    return {node.operand.get()};
  }
  std::vector<const Expression*> operator()(const Binary& node) const {
    return {node.left.get(), node.right.get()};
  }
  std::vector<const Expression*> operator()(const Between& node) const {
    return {node.value.get(), node.low.get(), node.high.get()};
  }
  std::vector<const Expression*> operator()(const IsNull& node) const { return {node.value.get()}; }
  std::vector<const Expression*> operator()(const InQuery& node) const {
    return {node.value.get()};
  }
  std::vector<const Expression*> operator()(const Quantified& node) const {
    return {node.value.get()};
  }
  std::vector<const Expression*> operator()(const InList& node) const {
    std::vector<const Expression*> operands{node.value.get()};
    for (const ExpressionPtr& item : node.items) operands.push_back(item.get());
    return operands;
  }
  std::vector<const Expression*> operator()(const Call& node) const {
    std::vector<const Expression*> operands;
    for (const ExpressionPtr& argument : node.arguments) operands.push_back(argument.get());
    return operands;
  }
  std::vector<const Expression*> operator()(const auto&) const { return {}; }
};

}  // namespace

bool containsAggregate(const Expression& expression) {
  const auto* call = expression.as<Call>();
  return (call != nullptr && aggregateOf(*call)) ||
         std::ranges::any_of(std::visit(Operands(), expression.node),
                             [](const Expression* operand) { return containsAggregate(*operand); });
}

typed::Expression ExpressionResolver::node(const Call& call, const Expression&) const {
  if (aggregateOf(call)) return aggregate(call);
  if (const DomainFunction* function = findDomainFunction(call.function)) {
    return domain(*function, call);
  }
  const Function* function = findFunction(call.function);
  if (function == nullptr) {
    throw RuntimeError(error::kUnknownFunction,
                       "Undefined function '" + call.function + "' in expression.");
  }
  const int count = static_cast<int>(call.arguments.size());
  if (count < function->minArguments || count > function->maxArguments) failArgumentCount(call);
  std::vector<typed::Expression> values = list(call.arguments);
  const std::string name = text::lowerCase(function->name);
  if (name == "isnull") return {VariantType::kYesNo, typed::IsNull{std::move(values[0]), false}};
  if (name == "iif") return iif(values);
  if (name == "choose") return choose(values);
  if (name == "switch") {
    if (values.size() % 2 != 0) failArgumentCount(call);
    return switchCase(values);
  }
  std::vector<VariantType> types;
  types.reserve(values.size());
  for (const typed::Expression& value : values) types.push_back(value.type());
  return {function->resultType(types), typed::Call{function, std::move(values)}};
}

// A subquery whose text the arguments give. Values of the query around are found there, so that a
// field of the domain with the same name does not hide them.
typed::Expression ExpressionResolver::domain(const DomainFunction& function,
                                             const Call& call) const {
  const DomainQuery domain = domainQuery(function, call);
  std::vector<typed::Expression> values;
  for (const Expression* value : domain.values) values.push_back(resolve(*value));
  const Scope scope{.relations = {}, .outer = context_.scope, .values = &values};
  auto query = std::make_shared<const typed::Query>(resolver_.domainQuery(domain.text, scope));
  const VariantType type = query->columns.front().type;
  return {type, typed::ScalarQuery{std::move(query), true}};
}

typed::Expression ExpressionResolver::domainValue(const Name& name) const {
  const auto number = domainValueNumber(name);
  for (const Scope* scope = context_.scope; number && scope != nullptr; scope = scope->outer) {
    if (scope->values != nullptr && *number < scope->values->size()) {
      return (*scope->values)[*number];
    }
  }
  return {};
}

typed::Expression ExpressionResolver::aggregate(const Call& call) const {
  const typed::AggregateKind kind = *aggregateOf(call);
  if (context_.aggregateError != 0) {
    throw RuntimeError(context_.aggregateError,
                       "Cannot have aggregate function in this place (" + call.function + ").");
  }
  if (call.arguments.size() != 1) failArgumentCount(call);
  if (call.arguments.front()->as<Star>() != nullptr) {
    if (kind != typed::AggregateKind::kCount) failArgumentCount(call);
    return {VariantType::kLong, typed::Aggregate{kind, {}}};
  }
  ExpressionContext inside = context_;
  inside.groups = nullptr;
  inside.aggregateError = error::kAggregateInAggregate;
  typed::Expression argument =
      ExpressionResolver(resolver_, inside).resolve(*call.arguments.front());
  if (!takesAnyType(kind)) requireCondition(argument);
  const VariantType type = typeOfAggregate(kind, argument.type());
  return {type, typed::Aggregate{kind, std::move(argument)}};
}

}  // namespace jetsql
