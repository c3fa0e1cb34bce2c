#include "jetsql/translate/typing.h"

#include <array>

#include "jetsql/functions/value_types.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::VariantType;

[[noreturn]] void failMismatch(int number) {
  throw RuntimeError(number, number == error::kJoinTypeMismatch
                                 ? "Type mismatch in JOIN expression."
                                 : "Data type mismatch in criteria expression.");
}

struct Kinds {
  bool text = false;
  bool binary = false;
  bool currency = false;
  bool numeric = false;
  bool floating = false;
  bool whole = false;
};

bool isFloating(VariantType type) {
  return type == VariantType::kSingle || type == VariantType::kDouble ||
         type == VariantType::kDateTime;
}

Kinds kindsOf(std::span<const typed::Expression> operands) {
  Kinds kinds;
  for (const typed::Expression& operand : operands) {
    kinds.text = kinds.text || operand.type() == VariantType::kText;
    kinds.binary = kinds.binary || operand.type() == VariantType::kBinary;
    kinds.currency = kinds.currency || operand.type() == VariantType::kCurrency;
    kinds.numeric = kinds.numeric || operand.type() == VariantType::kNumeric;
    kinds.floating = kinds.floating || isFloating(operand.type());
    kinds.whole = kinds.whole || isWholeNumber(operand.type());
  }
  return kinds;
}

typed::Expression yesNo(auto payload) { return {VariantType::kYesNo, std::move(payload)}; }

}  // namespace

typed::Expression converted(typed::Expression expression, VariantType type) {
  if (expression.type() == type) return expression;
  return {type, typed::Conversion{std::move(expression)}};
}

// Whole numbers and floats compare as they are; Currency counts ten-thousandths and Numeric is a
// blob, so the others are converted to the same.
void makeComparable(std::span<typed::Expression> operands, int mismatch) {
  const Kinds kinds = kindsOf(operands);
  const bool number = kinds.currency || kinds.numeric || kinds.floating || kinds.whole;
  if ((kinds.text && (number || kinds.binary)) || (kinds.binary && number)) failMismatch(mismatch);
  if (!kinds.currency && !kinds.numeric) return;
  for (typed::Expression& operand : operands) {
    const bool scaled =
        operand.type() == VariantType::kCurrency || operand.type() == VariantType::kNumeric;
    if (!kinds.floating) {
      operand = converted(operand, kinds.numeric ? VariantType::kNumeric : VariantType::kCurrency);
    } else if (scaled) {
      operand = converted(operand, VariantType::kDouble);
    }
  }
}

VariantType unifyTypes(std::span<typed::Expression> operands) {
  VariantType type = VariantType::kNull;
  for (const typed::Expression& operand : operands) type = commonType(type, operand.type());
  for (typed::Expression& operand : operands) operand = converted(operand, type);
  return type;
}

bool isComparison(Operator operation) {
  return operation >= Operator::kEqual && operation <= Operator::kGreaterOrEqual;
}

typed::Expression comparison(Operator operation, typed::Expression left, typed::Expression right,
                             int mismatch) {
  std::array operands{std::move(left), std::move(right)};
  makeComparable(operands, mismatch);
  return yesNo(typed::Comparison{operation, operands[0], operands[1]});
}

typed::Expression between(typed::Expression value, typed::Expression low, typed::Expression high,
                          bool negated, int mismatch) {
  std::array operands{std::move(value), std::move(low), std::move(high)};
  makeComparable(operands, mismatch);
  return yesNo(typed::Between{operands[0], operands[1], operands[2], negated});
}

typed::Expression inList(typed::Expression value, std::span<const typed::Expression> items,
                         bool negated, int mismatch) {
  std::vector<typed::Expression> operands{std::move(value)};
  operands.insert(operands.end(), items.begin(), items.end());
  makeComparable(operands, mismatch);
  typed::InList list{operands.front(), {operands.begin() + 1, operands.end()}, negated};
  return yesNo(std::move(list));
}

typed::Expression unconverted(typed::Expression expression) {
  while (const auto* conversion = expression.as<typed::Conversion>()) {
    expression = typed::Expression(conversion->operand);
  }
  return expression;
}

void requireCondition(const typed::Expression& expression) {
  if (expression.type() == VariantType::kText || expression.type() == VariantType::kBinary) {
    failMismatch(error::kCriteriaTypeMismatch);
  }
}

}  // namespace jetsql
