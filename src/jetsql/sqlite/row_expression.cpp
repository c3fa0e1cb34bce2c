#include "jetsql/sqlite/row_expression.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <span>

#include "jetsql/functions/value_types.h"

namespace jetsql {
namespace {

using typed::Expression;
using values::Variant;
using values::VariantType;

constexpr std::size_t kMaxArguments = 4;

bool isComputed(const Expression& expression);

bool areComputed(std::span<const Expression> operands) {
  return operands.size() <= kMaxArguments && std::ranges::all_of(operands, isComputed);
}

// The other operators follow SQLite where they are written as SQL.
bool isComputed(const Expression& expression) {
  if (expression.as<typed::Field>() != nullptr || expression.as<typed::Literal>() != nullptr) {
    return true;
  }
  if (const auto* conversion = expression.as<typed::Conversion>()) {
    return isComputed(conversion->operand);
  }
  if (const auto* operation = expression.as<typed::Operation>()) {
    return operation->operation->name == "concat" && areComputed(operation->operands);
  }
  const auto* call = expression.as<typed::Call>();
  return call != nullptr && call->function->deterministic && areComputed(call->arguments);
}

struct Evaluation {
  const jet::Row& row;
  const Environment& environment;

  [[nodiscard]] Variant of(const Expression& expression) const {
    if (const auto* field = expression.as<typed::Field>()) return row.value(field->column);
    if (const auto* literal = expression.as<typed::Literal>()) return literal->value;
    if (const auto* conversion = expression.as<typed::Conversion>()) {
      return convert(of(conversion->operand), expression.type());
    }
    if (const auto* operation = expression.as<typed::Operation>()) {
      return of(*operation->operation, operation->operands, expression.type());
    }
    const auto* call = expression.as<typed::Call>();
    assert(call != nullptr);
    return of(*call->function, call->arguments, expression.type());
  }

  [[nodiscard]] Variant of(const Function& function, std::span<const Expression> operands,
                           VariantType type) const {
    std::array<Variant, kMaxArguments> arguments;
    std::ranges::transform(operands, arguments.begin(),
                           [this](const Expression& e) { return of(e); });
    return convertResult(call(function, Arguments(arguments).first(operands.size()), environment),
                         type);
  }
};

}  // namespace

bool RowExpression::canCompute(const typed::Expression& expression) {
  return expression.type() == VariantType::kText && isComputed(expression);
}

Variant RowExpression::value(const jet::Row& row) const {
  return Evaluation{row, environment_}.of(expression_);
}

}  // namespace jetsql
