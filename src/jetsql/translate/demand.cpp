#include "jetsql/translate/demand.h"

#include <algorithm>

#include "jetsql/functions/text_compare.h"
#include "values/error_numbers.h"

namespace jetsql {
namespace {

using Kind = Expression::Kind;

bool isConstant(const Expression& expression) {
  if (expression.kind == Kind::kLiteral) return true;
  return expression.kind == Kind::kUnary && isConstant(*expression.arguments.front());
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

void collect(const Expression& condition, std::vector<DemandShape>& shapes) {
  const auto& operands = condition.arguments;
  if (condition.kind == Kind::kBinary && condition.operation == Operator::kAnd) {
    collect(*operands[0], shapes);
    collect(*operands[1], shapes);
    return;
  }
  const bool compares = condition.kind == Kind::kBinary && condition.operation >= Operator::kEqual &&
                        condition.operation <= Operator::kGreaterOrEqual &&
                        condition.operation != Operator::kNotEqual;
  const bool tests =
      (condition.kind == Kind::kBetween || condition.kind == Kind::kInList) && !condition.negated;
  if (!compares && !tests) return;
  DemandShape shape{operands[0].get(), condition.kind, condition.operation, {}};
  for (std::size_t i = 1; i < operands.size(); ++i) shape.values.push_back(operands[i].get());
  if (compares && operands[0]->kind != Kind::kName) {
    shape = {operands[1].get(), condition.kind, mirrored(condition.operation), {operands[0].get()}};
  }
  if (shape.column->kind == Kind::kName &&
      std::all_of(shape.values.begin(), shape.values.end(),
                  [](const Expression* value) { return isConstant(*value); }))
    shapes.push_back(std::move(shape));
}

bool samePath(const std::vector<std::string>& left, const std::vector<std::string>& right) {
  if (!equalText(left.back(), right.back())) return false;
  return left.size() == 1 || right.size() == 1 ||
         equalText(left[left.size() - 2], right[right.size() - 2]);
}

bool isGroupedBy(const Select& select, const std::vector<std::string>& path) {
  return std::any_of(select.groupBy.begin(), select.groupBy.end(), [&](const auto& group) {
    return group->kind == Kind::kName && samePath(group->path, path);
  });
}

bool hasAggregates(const Select& select) {
  return !select.groupBy.empty() || select.having != nullptr;
}

}  // namespace

std::vector<DemandShape> demandShapes(const Expression* where) {
  std::vector<DemandShape> shapes;
  if (where != nullptr) collect(*where, shapes);
  return shapes;
}

std::vector<std::string> itemNames(const Select& select) {
  std::vector<std::string> names;
  for (const SelectItem& item : select.items) {
    names.push_back(item.alias);
    if (item.alias.empty() && item.expression && item.expression->kind == Kind::kName)
      names.back() = item.expression->path.back();
  }
  return names;
}

std::vector<Demand> handedOn(const Select& select, const std::vector<Demand>& demands) {
  std::vector<Demand> result;
  if (select.top) return result;  // a row less would let another in
  const std::vector<std::string> names = itemNames(select);
  for (const Demand& demand : demands) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const SelectItem& item = select.items[i];
      Demand inner = demand;
      if (!item.expression) {
        inner.path = {demand.path.back()};
        if (!item.starTable.empty()) inner.path.insert(inner.path.begin(), item.starTable);
      } else if (equalText(names[i], demand.path.back()) && item.expression->kind == Kind::kName) {
        inner.path = item.expression->path;
      } else {
        continue;
      }
      if (!hasAggregates(select) || isGroupedBy(select, inner.path))
        result.push_back(std::move(inner));
    }
  }
  return result;
}

std::vector<Demand> renamed(const std::vector<Demand>& demands, const Select& from,
                            const Select& to) {
  std::vector<Demand> result;
  const std::vector<std::string> before = itemNames(from);
  const std::vector<std::string> after = itemNames(to);
  const auto isStar = [](const SelectItem& item) { return !item.expression; };
  if (std::any_of(from.items.begin(), from.items.end(), isStar) ||
      std::any_of(to.items.begin(), to.items.end(), isStar))
    return result;
  for (const Demand& demand : demands)
    for (std::size_t i = 0; i < before.size() && i < after.size(); ++i) {
      if (after[i].empty() || !equalText(before[i], demand.path.back())) continue;
      result.push_back(demand);
      result.back().path = {after[i]};
      break;
    }
  return result;
}

std::string demandText(const Demand& demand, const Sql& value) {
  std::vector<Sql> operands = demand.values;
  operands.insert(operands.begin(), value);
  makeComparable(operands, error::kCriteriaTypeMismatch);
  std::vector<std::string> values;
  for (std::size_t i = 1; i < operands.size(); ++i) values.push_back(operands[i].text);
  const std::string column = collated(operands[0]);
  if (demand.kind == Kind::kBetween)
    return "(" + column + " BETWEEN " + joined(values, " AND ") + ")";
  if (demand.kind == Kind::kInList) return "(" + column + " IN (" + joined(values, ", ") + "))";
  return "(" + column + std::string(comparisonSymbol(demand.operation)) + values.front() + ")";
}

}  // namespace jetsql
