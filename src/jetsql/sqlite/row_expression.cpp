#include "jetsql/sqlite/row_expression.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "jetsql/functions/value_types.h"
#include "text/utf8.h"

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

// The literal whole number, where it is one.
std::optional<std::int32_t> wholeLiteral(const Expression& expression) {
  const auto* literal = expression.as<typed::Literal>();
  if (literal == nullptr || !isWholeNumber(literal->value.type())) return {};
  return values::toLong(literal->value);
}

// Left(text, n) and Mid(text, start, n), which most keys are made of.
struct Part {
  std::size_t start = 0;  // characters
  std::size_t count = 0;
};

std::optional<Part> partOf(const typed::Call& call) {
  const bool isLeft = call.function->name == "Left" && call.arguments.size() == 2;
  const bool isMid = call.function->name == "Mid" && call.arguments.size() == 3;
  if (!isLeft && !isMid) return {};
  const auto start = isLeft ? 1 : wholeLiteral(call.arguments[1]);
  const auto count = wholeLiteral(call.arguments.back());
  if (!start || !count || *start < 1 || *count < 0) return {};
  return Part{static_cast<std::size_t>(*start - 1), static_cast<std::size_t>(*count)};
}

class Evaluation {
 public:
  Evaluation(const jet::Row& row, const Environment& environment)
      : row_(row), environment_(environment) {}

  // Appends a text; false for Null. The common forms need no values of their own.
  [[nodiscard]] bool append(const Expression& expression, std::string& text) const {
    if (expression.type() != VariantType::kText) return appendValue(expression, text);
    if (const auto* field = expression.as<typed::Field>()) {
      if (row_.isNull(field->column)) return false;
      std::string scratch;
      text += row_.text(field->column, scratch);
      return true;
    }
    if (const auto* operation = expression.as<typed::Operation>()) {
      const bool left = append(operation->operands.front(), text);
      const bool right = append(operation->operands.back(), text);
      return left || right;
    }
    const auto* call = expression.as<typed::Call>();
    const auto part = call == nullptr ? std::nullopt : partOf(*call);
    if (!part || call->arguments.front().type() != VariantType::kText) {
      return appendValue(expression, text);
    }
    std::string whole;
    if (!append(call->arguments.front(), whole)) return false;
    text += text::middle(whole, part->start, part->count);
    return true;
  }

  [[nodiscard]] Variant value(const Expression& expression) const {
    if (const auto* field = expression.as<typed::Field>()) return row_.value(field->column);
    if (const auto* literal = expression.as<typed::Literal>()) return literal->value;
    if (const auto* conversion = expression.as<typed::Conversion>()) {
      return convert(value(conversion->operand), expression.type());
    }
    if (const auto* operation = expression.as<typed::Operation>()) {
      return result(*operation->operation, operation->operands, expression.type());
    }
    const auto* call = expression.as<typed::Call>();
    assert(call != nullptr);
    return result(*call->function, call->arguments, expression.type());
  }

 private:
  [[nodiscard]] bool appendValue(const Expression& expression, std::string& text) const {
    const Variant found = convert(value(expression), VariantType::kText);
    if (found.isNull()) return false;
    text += *found.as<std::string>();
    return true;
  }

  [[nodiscard]] Variant result(const Function& function, std::span<const Expression> operands,
                               VariantType type) const {
    std::array<Variant, kMaxArguments> arguments;
    std::ranges::transform(operands, arguments.begin(),
                           [this](const Expression& operand) { return value(operand); });
    return convertResult(call(function, Arguments(arguments).first(operands.size()), environment_),
                         type);
  }

  const jet::Row& row_;
  const Environment& environment_;
};

}  // namespace

bool RowExpression::canCompute(const typed::Expression& expression) {
  return expression.type() == VariantType::kText && isComputed(expression);
}

Variant RowExpression::value(const jet::Row& row) const {
  std::string text;
  if (!Evaluation(row, environment_).append(expression_, text)) return {};
  return text;
}

}  // namespace jetsql
