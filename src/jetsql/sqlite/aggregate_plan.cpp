#include "jetsql/sqlite/aggregate_plan.h"

#include <sqlite3.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/flat_from.h"

namespace jetsql {
namespace {

using typed::Expression;
using values::VariantType;

class Planner {
 public:
  Planner(const FlatFrom& from, const TableOf& tableOf)
      : from_(from), tableOf_(tableOf), compiler_(from) {}

  // False where a part of the select is not of the kind that is computed here.
  [[nodiscard]] bool plan(const typed::Select& select) {
    return addSource() && (from_.join == nullptr || addJoin(*from_.join)) &&
           std::ranges::all_of(from_.conditions, [&](const auto& c) { return addCondition(c); }) &&
           std::ranges::all_of(select.groups, [&](const auto& g) { return addGroup(g); }) &&
           std::ranges::all_of(select.outputs,
                               [&](const auto& output) { return addOutput(select, output); });
  }

  [[nodiscard]] AggregatePlan take() {
    plan_.parameters = compiler_.parameters();
    if (plan_.inside) {
      std::ranges::copy(plan_.inside->parameters, std::back_inserter(plan_.parameters));
    } else {
      chooseAccess();
    }
    return std::move(plan_);
  }

 private:
  struct Equality {
    std::size_t column = 0;     // of the first table
    std::size_t parameter = 0;  // place
  };

  [[nodiscard]] bool addSource();
  [[nodiscard]] bool addJoin(const typed::Join& join);
  [[nodiscard]] bool addCondition(const Expression& condition);
  [[nodiscard]] bool addGroup(const typed::Group& group);
  [[nodiscard]] bool addOutput(const typed::Select& select, const typed::Output& output);
  [[nodiscard]] bool addSum(const typed::Aggregate& aggregate, VariantType type);
  void addEquality(const typed::Comparison& test);
  [[nodiscard]] bool readsOnly(const Expression& expression, std::size_t table) const;
  void chooseAccess();

  const FlatFrom& from_;
  const TableOf& tableOf_;
  WholeCompiler compiler_;
  AggregatePlan plan_;
  std::vector<Equality> equalities_;
};

bool Planner::addSource() {
  if (from_.grouped == nullptr) {
    plan_.table = tableOf_(from_.tables.front()->table);
    return plan_.table != nullptr;
  }
  auto inside = planAggregate(*from_.grouped->query, tableOf_);
  if (!inside) return false;
  plan_.table = inside->table;
  plan_.inside = std::make_unique<AggregatePlan>(std::move(*inside));
  return true;
}

bool Planner::addJoin(const typed::Join& join) {
  const auto* on = join.on.as<typed::Comparison>();
  if (join.type == Join::Type::kRight || on == nullptr || on->operation != Operator::kEqual) {
    return false;
  }
  auto first = compiler_.fieldOf(on->left);
  auto second = compiler_.fieldOf(on->right);
  if (!first || !second) return false;
  if (first->table != 0) std::swap(first, second);
  if (first->table != 0 || second->table != 1) return false;
  JetTable* joined = tableOf_(from_.tables[1]->table);
  const auto isWholeKey = [](const JetTable& table, std::size_t column) {
    const VariantType type = table.schema().columns[column].type;
    return isWholeNumber(type) && type != VariantType::kYesNo;
  };
  if (joined == nullptr || !isWholeKey(*joined, second->column) ||
      !isWholeKey(*plan_.table, first->column)) {
    return false;
  }
  const bool swapped = compiler_.fieldOf(on->left)->table != 0;
  plan_.joined = {joined, second->column, compiler_.compile(swapped ? on->right : on->left),
                  join.type == Join::Type::kLeft};
  return static_cast<bool>(plan_.joined->key);
}

bool Planner::addCondition(const Expression& condition) {
  const auto* junction = condition.as<typed::Junction>();
  if (junction != nullptr && junction->operation == Operator::kAnd) {
    return addCondition(junction->left) && addCondition(junction->right);
  }
  WholeExpression compiled = compiler_.compile(condition);
  if (!compiled) return false;
  if (const auto* test = condition.as<typed::Comparison>()) addEquality(*test);
  (readsOnly(condition, 0) ? plan_.conditions : plan_.joinedConditions)
      .push_back(std::move(compiled));
  return true;
}

void Planner::addEquality(const typed::Comparison& test) {
  if (test.operation != Operator::kEqual) return;
  for (const auto& [side, other] : {std::pair(test.left, test.right), {test.right, test.left}}) {
    const auto field = compiler_.fieldOf(side);
    const auto* literal = other.as<typed::Literal>();
    if (!field || field->table != 0 || literal == nullptr || !literal->parameter) continue;
    equalities_.push_back({field->column, compiler_.placeOf(*literal->parameter)});
  }
}

bool Planner::readsOnly(const Expression& expression, std::size_t table) const {
  if (const auto field = compiler_.fieldOf(expression)) return field->table == table;
  return std::ranges::all_of(typed::operandsOf(compiler_.seenThrough(expression)),
                             [&](const Expression& operand) { return readsOnly(operand, table); });
}

bool Planner::addGroup(const typed::Group& group) {
  using Kind = AggregatePlan::Group::Kind;
  AggregatePlan::Group added;
  added.isFixed = group.isFixed;
  plan_.groupsReadFirstTableOnly = plan_.groupsReadFirstTableOnly && readsOnly(group.value, 0);
  plan_.groupsReadJoinedOnly =
      plan_.groupsReadJoinedOnly && (group.isFixed || readsOnly(group.value, 1));
  added.whole = compiler_.compile(group.value);
  if (!added.whole) {
    const bool isDate = group.value.type() == VariantType::kDateTime;
    if (isDate && group.isFixed) added.real = compiler_.compileReal(group.value);
    const auto field = compiler_.fieldOf(group.value);
    const bool isText = field && group.value.type() == VariantType::kText;
    if (!added.real && !isText) return false;
    added.kind = isText ? Kind::kText : Kind::kFixedReal;
    if (isText) added.field = *field;
  }
  plan_.groups.push_back(std::move(added));
  return true;
}

bool Planner::addOutput(const typed::Select& select, const typed::Output& output) {
  const VariantType type = output.value.type();
  plan_.columns.push_back({output.name, type});
  if (const auto* aggregate = output.value.as<typed::Aggregate>()) return addSum(*aggregate, type);
  const auto group = std::ranges::find(select.groups, output.value, &typed::Group::value);
  plan_.outputs.push_back({true, static_cast<std::size_t>(group - select.groups.begin())});
  return group != select.groups.end();
}

bool Planner::addSum(const typed::Aggregate& aggregate, VariantType type) {
  using Kind = AggregatePlan::Sum::Kind;
  AggregatePlan::Sum sum;
  if (aggregate.argument) {
    sum.argument = compiler_.compile(aggregate.argument);
    if (!sum.argument) sum.field = compiler_.fieldOf(aggregate.argument);
    if (!sum.argument && !sum.field) return false;
  }
  if (aggregate.kind == typed::AggregateKind::kSum) {
    if (!sum.argument) return false;
    const bool ofAmounts = aggregate.argument.type() == VariantType::kCurrency;
    if (ofAmounts != (type == VariantType::kCurrency)) return false;
    sum.kind = ofAmounts                      ? Kind::kCurrency
               : type == VariantType::kDouble ? Kind::kDouble
                                              : Kind::kLong;
  } else if (aggregate.kind != typed::AggregateKind::kCount) {
    return false;
  }
  plan_.outputs.push_back({false, plan_.sums.size()});
  plan_.sums.push_back(std::move(sum));
  return true;
}

// Asks as SQLite would for a table with these equalities.
void Planner::chooseAccess() {
  std::vector<sqlite3_index_info::sqlite3_index_constraint> constraints;
  for (const Equality& equality : equalities_) {
    constraints.push_back({static_cast<int>(equality.column), SQLITE_INDEX_CONSTRAINT_EQ, 1, 0});
  }
  std::vector<sqlite3_index_info::sqlite3_index_constraint_usage> usage(constraints.size());
  sqlite3_index_info info{};
  info.nConstraint = static_cast<int>(constraints.size());
  info.aConstraint = constraints.data();
  info.aConstraintUsage = usage.data();
  info.colUsed = ~sqlite3_uint64{0};
  plan_.table->chooseAccessPath(info);
  plan_.access.path = info.idxNum;
  for (std::size_t i = 0; i < usage.size(); ++i) {
    if (usage[i].argvIndex == 0) continue;
    const auto place = static_cast<std::size_t>(usage[i].argvIndex - 1);
    plan_.access.parameters.resize(std::max(plan_.access.parameters.size(), place + 1));
    plan_.access.parameters[place] = equalities_[i].parameter;
  }
}

}  // namespace

std::optional<AggregatePlan> planAggregate(const typed::Query& query, const TableOf& tableOf) {
  const typed::Select* select = onlySelect(query);
  if (select == nullptr || select->groups.empty() || !select->order.empty()) return std::nullopt;
  const auto from = flatFrom(*select);
  if (!from || !from->lookups.empty()) return std::nullopt;
  Planner planner(*from, tableOf);
  if (!planner.plan(*select)) return std::nullopt;
  return planner.take();
}

}  // namespace jetsql
