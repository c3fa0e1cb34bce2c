#include "jetsql/sqlite/whole_expression.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "jetsql/functions/value_types.h"

namespace jetsql {
namespace {

using values::VariantType;

constexpr std::int64_t kCurrencyUnits = 10000;

WholeValue whole(std::int64_t number) { return {number, false}; }
WholeValue truth(bool value) { return whole(value ? -1 : 0); }

WholeExpression scaled(WholeExpression operand) {
  if (!operand) return {};
  return [operand = std::move(operand)](const JoinedRow& row) {
    WholeValue value = operand(row);
    value.number *= kCurrencyUnits;  // of 32 bits before
    return value;
  };
}

WholeExpression constant(const values::Variant& value) {
  if (value.isNull()) return WholeExpression(WholeValue());
  const auto* amount = value.as<values::Currency>();
  const std::int64_t number = amount != nullptr ? amount->units : toLong(value);
  return WholeExpression(whole(number));
}

bool isReal(VariantType type) {
  return type == VariantType::kSingle || type == VariantType::kDouble ||
         type == VariantType::kDateTime;
}

template <typename Value>
bool passes(Operator operation, Value left, Value right) {
  switch (operation) {
    case Operator::kEqual:
      return left == right;
    case Operator::kNotEqual:
      return left != right;
    case Operator::kLess:
      return left < right;
    case Operator::kLessOrEqual:
      return left <= right;
    case Operator::kGreater:
      return left > right;
    default:
      return left >= right;
  }
}

}  // namespace

bool isWholeType(VariantType type) { return isWholeNumber(type) || type == VariantType::kCurrency; }

typed::Expression WholeCompiler::seenThrough(const typed::Expression& expression) const {
  typed::Expression seen = expression;
  while (const auto* field = seen.as<typed::Field>()) {
    if (std::ranges::find(from_.queries, field->relation) == from_.queries.end()) break;
    seen = typed::Expression(field->relation->query->selects.front().outputs[field->column].value);
  }
  return seen;
}

std::optional<TableField> WholeCompiler::fieldOf(const typed::Expression& expression) const {
  const typed::Expression seen = seenThrough(expression);
  const auto* field = seen.as<typed::Field>();
  if (field == nullptr) return std::nullopt;
  const auto table = std::ranges::find(from_.tables, field->relation);
  if (table == from_.tables.end()) return std::nullopt;
  return TableField{static_cast<std::size_t>(table - from_.tables.begin()), field->column};
}

std::optional<std::size_t> WholeCompiler::outputOf(const typed::Expression& expression) const {
  if (from_.grouped == nullptr) return std::nullopt;
  const typed::Expression seen = seenThrough(expression);
  const auto* field = seen.as<typed::Field>();
  const bool isOutput = field != nullptr && field->relation == from_.grouped;
  return isOutput ? std::optional(field->column) : std::nullopt;
}

std::size_t WholeCompiler::placeOf(std::size_t parameter) {
  const auto known = std::ranges::find(parameters_, parameter);
  const auto place = static_cast<std::size_t>(known - parameters_.begin());
  if (known == parameters_.end()) parameters_.push_back(parameter);
  return place;
}

WholeExpression WholeCompiler::compile(const typed::Expression& expression) {
  const typed::Expression seen = seenThrough(expression);
  if (!isWholeType(seen.type()) && seen.type() != VariantType::kNull) return {};
  return std::visit([&](const auto& payload) { return node(payload, seen.type()); },
                    (*seen).payload);
}

WholeExpression WholeCompiler::operand(const typed::Expression& expression, VariantType type) {
  const VariantType from = expression.type();
  if (from == type || (isWholeNumber(from) && isWholeNumber(type))) return compile(expression);
  if (isWholeNumber(from) && type == VariantType::kCurrency) return scaled(compile(expression));
  return {};
}

WholeExpression WholeCompiler::node(const typed::Literal& literal, VariantType) {
  if (!literal.parameter) return constant(literal.value);
  return [place = placeOf(*literal.parameter)](const JoinedRow& row) {
    const EncodedValue& value = row.parameters[place];
    if (value.kind != EncodedValue::Kind::kWhole) throw NotWhole();
    return whole(value.whole);
  };
}

WholeExpression WholeCompiler::node(const typed::Field& field, VariantType type) {
  const typed::Expression expression(type, field);
  if (const auto output = outputOf(expression)) {
    return [output = *output](const JoinedRow& row) {
      const EncodedValue& value = row.grouped[output];
      return value.kind == EncodedValue::Kind::kNull ? WholeValue() : whole(value.whole);
    };
  }
  const auto found = fieldOf(expression);
  return found ? WholeExpression(*found) : WholeExpression();
}

// Other conversions are calls of a function, as in convertTo.
WholeExpression WholeCompiler::node(const typed::Conversion& conversion, VariantType type) {
  const VariantType from = conversion.operand.type();
  if (from == VariantType::kNull) return compile(conversion.operand);
  if (type == VariantType::kCurrency) return operand(conversion.operand, type);
  const bool widens = isWholeNumber(from) && from < type && type != VariantType::kByte;
  return widens && isWholeNumber(type) ? compile(conversion.operand) : WholeExpression();
}

WholeExpression WholeCompiler::node(const typed::Operation& operation, VariantType type) {
  const bool adds = operation.operation->name == "add";
  if ((!adds && operation.operation->name != "sub") || operation.operands.size() != 2) return {};
  WholeExpression left = operand(operation.operands[0], type);
  WholeExpression right = operand(operation.operands[1], type);
  if (!left || !right) return {};
  const bool isAmount = type == VariantType::kCurrency;
  return [=, left = std::move(left), right = std::move(right)](const JoinedRow& row) {
    const WholeValue a = left(row);
    const WholeValue b = right(row);
    if (a.isNull || b.isNull) return WholeValue();
    std::int64_t result = 0;
    const bool overflows = adds ? __builtin_add_overflow(a.number, b.number, &result)
                                : __builtin_sub_overflow(a.number, b.number, &result);
    // A whole number beyond 32 bits goes on as a Double.
    if (overflows || (!isAmount && result != static_cast<std::int32_t>(result))) throw NotWhole();
    return whole(result);
  };
}

WholeExpression WholeCompiler::node(const typed::Not& negation, VariantType) {
  WholeExpression operand = compile(negation.operand);
  if (!operand) return {};
  return [operand = std::move(operand)](const JoinedRow& row) {
    const WholeValue value = operand(row);
    return value.isNull ? value : truth(value.number == 0);
  };
}

WholeExpression WholeCompiler::node(const typed::Junction& junction, VariantType) {
  if (junction.operation != Operator::kAnd && junction.operation != Operator::kOr) return {};
  WholeExpression left = compile(junction.left);
  WholeExpression right = compile(junction.right);
  if (!left || !right) return {};
  const bool deciding = junction.operation == Operator::kOr;  // whatever the other side is
  return [=, left = std::move(left), right = std::move(right)](const JoinedRow& row) {
    const auto decides = [&](const WholeValue& value) {
      return !value.isNull && (value.number != 0) == deciding;
    };
    const WholeValue a = left(row);
    if (decides(a)) return truth(deciding);
    const WholeValue b = right(row);
    if (decides(b)) return truth(deciding);
    return a.isNull || b.isNull ? WholeValue() : truth(!deciding);
  };
}

WholeExpression WholeCompiler::node(const typed::Comparison& test, VariantType) {
  const bool amounts = test.left.type() == VariantType::kCurrency;
  if (isReal(test.left.type()) && isReal(test.right.type())) {
    RealExpression left = compileReal(test.left);
    RealExpression right = compileReal(test.right);
    if (!left || !right) return {};
    return [operation = test.operation, left = std::move(left),
            right = std::move(right)](const JoinedRow& row) {
      const auto a = left(row);
      const auto b = right(row);
      return a && b ? truth(passes(operation, *a, *b)) : WholeValue();
    };
  }
  if (test.left.type() == VariantType::kText) return textEquality(test);
  if (amounts != (test.right.type() == VariantType::kCurrency)) return {};
  WholeExpression left = compile(test.left);
  WholeExpression right = compile(test.right);
  if (!left || !right) return {};
  return [operation = test.operation, left = std::move(left),
          right = std::move(right)](const JoinedRow& row) {
    const WholeValue a = left(row);
    const WholeValue b = right(row);
    return a.isNull || b.isNull ? WholeValue() : truth(passes(operation, a.number, b.number));
  };
}

WholeExpression WholeCompiler::node(const typed::IsNull& test, VariantType) {
  WholeExpression value = compile(test.value);
  if (!value) return {};
  return [negated = test.negated, value = std::move(value)](const JoinedRow& row) {
    return truth(value(row).isNull != negated);
  };
}

WholeExpression WholeCompiler::node(const typed::Case& choice, VariantType type) {
  if (choice.selector) return {};
  std::vector<std::pair<WholeExpression, WholeExpression>> branches;
  for (const typed::Case::Branch& branch : choice.branches) {
    branches.emplace_back(compile(branch.when), operand(branch.then, type));
    if (!branches.back().first || !branches.back().second) return {};
  }
  // Taken where no other is.
  branches.emplace_back(WholeExpression(truth(true)), choice.otherwise
                                                          ? operand(choice.otherwise, type)
                                                          : constant(values::Variant()));
  if (!branches.back().second) return {};
  return [branches = std::move(branches)](const JoinedRow& row) {
    const auto taken = std::find_if(branches.begin(), branches.end(),
                                    [&](const auto& branch) { return branch.first(row).isTrue(); });
    return taken->second(row);
  };
}

RealExpression WholeCompiler::compileReal(const typed::Expression& expression) {
  const typed::Expression seen = seenThrough(expression);
  if (!isReal(seen.type())) return {};
  if (const auto* literal = seen.as<typed::Literal>(); literal != nullptr && literal->parameter) {
    return [place = placeOf(*literal->parameter)](const JoinedRow& row) -> std::optional<double> {
      const EncodedValue& value = row.parameters[place];
      if (value.kind != EncodedValue::Kind::kReal) throw NotWhole();
      return value.real;
    };
  }
  if (const auto output = outputOf(seen)) {
    return [output = *output](const JoinedRow& row) {
      const EncodedValue& value = row.grouped[output];
      return value.kind == EncodedValue::Kind::kNull ? std::nullopt : std::optional(value.real);
    };
  }
  const auto field = fieldOf(seen);
  if (!field) return {};
  return [table = field->table, column = field->column](const JoinedRow& row) {
    const jet::Row* from = row.rows[table];
    if (from == nullptr || from->isNull(column)) return std::optional<double>();
    const double number = from->realNumber(column);
    return std::isnan(number) ? std::nullopt : std::optional(number);  // SQLite's Null
  };
}

}  // namespace jetsql
