#include <string>
#include <utility>

#include "jetsql/functions/text_compare.h"
#include "jetsql/sqlite/row_expression.h"
#include "jetsql/sqlite/whole_expression.h"
#include "jetsql/translate/fields_read.h"
#include "text/utf8.h"

namespace jetsql {
namespace {

using values::VariantType;

// SQLite says what a count below zero or Null means.
std::size_t countOf(const WholeExpression& expression, const JoinedRow& row, std::int64_t least) {
  const WholeValue value = expression(row);
  if (value.isNull || value.number < least) throw NotWhole();
  return static_cast<std::size_t>(value.number);
}

TextExpression textOfField(const TableField& field) {
  return [field](const JoinedRow& row, std::string& scratch) {
    const jet::Row* from = row.rows[field.table];
    if (from == nullptr || from->isNull(field.column)) return std::optional<std::string_view>();
    return std::optional(from->text(field.column, scratch));
  };
}

TextExpression textOfRow(RowText text) {
  return [text = std::move(text)](const JoinedRow& row, std::string& scratch) {
    scratch.clear();
    return text.append(*row.rows[0], scratch) ? std::optional<std::string_view>(scratch)
                                              : std::nullopt;
  };
}

}  // namespace

WholeExpression WholeCompiler::textEquality(const typed::Comparison& test) {
  const bool equal = test.operation == Operator::kEqual;
  if (!equal && test.operation != Operator::kNotEqual) return {};
  // The analyzer loses sight of functions that functions own.
  // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
  TextExpression left = compileText(test.left);
  TextExpression right = compileText(test.right);
  // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
  if (!left || !right) return {};
  return [equal, left = std::move(left), right = std::move(right)](const JoinedRow& row) {
    std::string leftText;
    std::string rightText;
    const auto a = left(row, leftText);
    const auto b = right(row, rightText);
    return a && b ? WholeValue{equalText(*a, *b) == equal ? -1 : 0, false} : WholeValue();
  };
}

TextExpression WholeCompiler::compileText(const typed::Expression& expression) {
  const typed::Expression seen = seenThrough(expression);
  if (seen.type() != VariantType::kText) return {};
  if (const auto field = fieldOf(seen)) return textOfField(*field);
  if (const auto* literal = seen.as<typed::Literal>()) return textLiteral(*literal);
  if (from_.tables.size() == 1 && readsOnly(*from_.tables.front(), seen)) {
    if (auto text = RowText::of(seen)) return textOfRow(std::move(*text));
  }
  if (const auto* operation = seen.as<typed::Operation>()) return concatenation(*operation);
  const auto* call = seen.as<typed::Call>();
  return call == nullptr ? TextExpression() : partOfText(*call);
}

TextExpression WholeCompiler::textLiteral(const typed::Literal& literal) {
  if (literal.parameter) {
    return [place = placeOf(*literal.parameter)](const JoinedRow& row, std::string&) {
      const EncodedValue& value = row.parameters[place];
      if (value.kind != EncodedValue::Kind::kText) throw NotWhole();
      return std::optional(value.bytes);
    };
  }
  const auto* text = literal.value.as<std::string>();
  if (text == nullptr) return {};
  return [constant = *text](const JoinedRow&, std::string& scratch) {
    scratch = constant;
    return std::optional<std::string_view>(scratch);
  };
}

// a & b & c; Null where all of them are.
TextExpression WholeCompiler::concatenation(const typed::Operation& operation) {
  if (operation.operation->name != "concat") return {};
  std::vector<TextExpression> parts;
  for (const typed::Expression& operand : operation.operands) {
    parts.push_back(compileText(operand));
    if (!parts.back()) return {};
  }
  return [parts = std::move(parts)](const JoinedRow& row, std::string& scratch) {
    std::string text;
    std::string part;
    bool any = false;
    for (const TextExpression& expression : parts) {
      const auto value = expression(row, part);
      any = any || value;
      text += value.value_or("");
    }
    scratch = std::move(text);
    return any ? std::optional<std::string_view>(scratch) : std::nullopt;
  };
}

// Left(text, n) and Mid(text, start, n).
TextExpression WholeCompiler::partOfText(const typed::Call& call) {
  const bool isMid = call.function->name == "Mid" && call.arguments.size() == 3;
  if (!isMid && !(call.function->name == "Left" && call.arguments.size() == 2)) return {};
  TextExpression text = compileText(call.arguments.front());
  WholeExpression start = isMid ? compile(call.arguments[1]) : [](const JoinedRow&) {
    return WholeValue{1, false};
  };
  WholeExpression count = compile(call.arguments.back());
  if (!text || !start || !count) return {};
  return [text = std::move(text), start = std::move(start), count = std::move(count)](
             const JoinedRow& row, std::string& scratch) -> std::optional<std::string_view> {
    const std::size_t first = countOf(start, row, 1);
    const std::size_t characters = countOf(count, row, 0);
    const auto all = text(row, scratch);
    if (!all) return std::nullopt;
    return text::middle(*all, first - 1, characters);
  };
}

}  // namespace jetsql
