#include <algorithm>
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

std::optional<std::string_view> textOf(const TableField& field, const JoinedRow& row,
                                       std::string& scratch) {
  const jet::Row* from = row.rows[field.table];
  if (from == nullptr || from->isNull(field.column)) return std::nullopt;
  return from->text(field.column, scratch);
}

TextExpression textOfField(const TableField& field) {
  return
      [field](const JoinedRow& row, std::string& scratch) { return textOf(field, row, scratch); };
}

TextExpression textOfRow(RowText text) {
  return [text = std::move(text)](const JoinedRow& row, std::string& scratch) {
    scratch.clear();
    return text.append(*row.rows[0], scratch) ? std::optional<std::string_view>(scratch)
                                              : std::nullopt;
  };
}

// Puts parts together as & does: Null where all of them are. A field that several of them are taken
// from is decoded once.
std::optional<std::string_view> joined(const std::vector<TextPart>& parts, const JoinedRow& row,
                                       std::string& to) {
  std::string fieldScratch;
  std::string scratch;
  std::optional<TableField> field;
  std::optional<std::string_view> fieldText;
  std::string text;
  bool any = false;
  for (const TextPart& part : parts) {
    if (part.field && part.field != field) {
      field = part.field;
      fieldText = textOf(*field, row, fieldScratch);
    }
    const auto value = part.field ? fieldText : part.text(row, scratch);
    any = any || value;
    if (!part.count) {
      text += value.value_or("");
      continue;
    }
    const std::size_t first = countOf(part.start, row, 1);
    text += text::middle(value.value_or(""), first - 1, countOf(part.count, row, 0));
  }
  to = std::move(text);
  return any ? std::optional<std::string_view>(to) : std::nullopt;
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
  const bool isMade = seen.as<typed::Operation>() != nullptr || seen.as<typed::Call>() != nullptr;
  std::vector<TextPart> parts;
  if (!isMade || !addParts(seen, parts)) return {};
  return [parts = std::move(parts)](const JoinedRow& row, std::string& scratch) {
    return joined(parts, row, scratch);
  };
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

bool WholeCompiler::addParts(const typed::Expression& seen, std::vector<TextPart>& parts) {
  const auto* operation = seen.as<typed::Operation>();
  if (operation == nullptr) {
    auto part = textPart(seen);
    if (part) parts.push_back(std::move(*part));
    return part.has_value();
  }
  return seen.type() == VariantType::kText && operation->operation->name == "concat" &&
         std::ranges::all_of(operation->operands, [&](const typed::Expression& operand) {
           return addParts(seenThrough(operand), parts);
         });
}

std::optional<TextPart> WholeCompiler::textPart(const typed::Expression& seen) {
  TextPart part;
  const typed::Expression* text = &seen;
  if (const auto* call = seen.as<typed::Call>()) {
    const bool isMid = call->function->name == "Mid" && call->arguments.size() == 3;
    if (!isMid && !(call->function->name == "Left" && call->arguments.size() == 2)) return {};
    part.start = isMid ? compile(call->arguments[1]) : [](const JoinedRow&) {
      return WholeValue{1, false};
    };
    part.count = compile(call->arguments.back());
    if (!part.start || !part.count) return {};
    text = &call->arguments.front();
  }
  if (seenThrough(*text).type() == VariantType::kText) part.field = fieldOf(*text);
  if (!part.field) part.text = compileText(*text);
  if (!part.field && !part.text) return {};
  return part;
}

}  // namespace jetsql
