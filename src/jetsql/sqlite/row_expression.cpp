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

// Of Left(text, n) and Mid(text, start, n), which most keys are made of.
std::optional<RowText::Part> partOf(const typed::Call& call) {
  const bool isLeft = call.function->name == "Left" && call.arguments.size() == 2;
  const bool isMid = call.function->name == "Mid" && call.arguments.size() == 3;
  if (!isLeft && !isMid) return {};
  const auto start = isLeft ? 1 : wholeLiteral(call.arguments[1]);
  const auto count = wholeLiteral(call.arguments.back());
  if (!start || !count || *start < 1 || *count < 0) return {};
  return RowText::Part{static_cast<std::size_t>(*start - 1), static_cast<std::size_t>(*count)};
}

// Adds what the expression appends; false where a part is none of those that RowText has.
bool addPieces(const Expression& expression, std::vector<RowText::Piece>& pieces) {
  if (expression.type() != VariantType::kText) return false;
  if (const auto* literal = expression.as<typed::Literal>()) {
    const auto* text = literal->value.as<std::string>();
    if (text != nullptr) pieces.push_back({.text = *text});
    return text != nullptr;
  }
  if (const auto* field = expression.as<typed::Field>()) {
    pieces.push_back({.column = field->column});
    return true;
  }
  if (const auto* operation = expression.as<typed::Operation>()) {
    return std::ranges::all_of(operation->operands,
                               [&](const Expression& part) { return addPieces(part, pieces); });
  }
  const auto* call = expression.as<typed::Call>();
  const auto part = call == nullptr ? std::nullopt : partOf(*call);
  const auto* field = part ? call->arguments.front().as<typed::Field>() : nullptr;
  if (field == nullptr || call->arguments.front().type() != VariantType::kText) return false;
  pieces.push_back({.column = field->column, .part = part});
  return true;
}

class Evaluation {
 public:
  Evaluation(const jet::Row& row, const Environment& environment)
      : row_(row), environment_(environment) {}

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

std::optional<RowText> RowText::of(const typed::Expression& expression) {
  std::vector<Piece> pieces;
  if (!addPieces(expression, pieces)) return {};
  return RowText(std::move(pieces));
}

bool RowText::append(const jet::Row& row, std::string& to) const {
  std::string scratch;
  std::string_view text;
  std::optional<std::size_t> decoded;
  bool any = false;
  for (const Piece& piece : pieces_) {
    if (!piece.column) {
      to += piece.text;
      any = true;
      continue;
    }
    if (row.isNull(*piece.column)) continue;
    any = true;
    if (decoded != piece.column) text = row.text(*piece.column, scratch);
    decoded = piece.column;
    to += piece.part ? text::middle(text, piece.part->start, piece.part->count) : text;
  }
  return any;
}

Variant RowExpression::value(const jet::Row& row) const {
  if (!text_) return convert(Evaluation(row, environment_).value(expression_), VariantType::kText);
  std::string text;
  if (!text_->append(row, text)) return {};
  return text;
}

}  // namespace jetsql
