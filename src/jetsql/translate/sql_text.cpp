#include "jetsql/translate/sql_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "jetsql/functions/value_types.h"
#include "text/letter_case.h"

namespace jetsql {
namespace {

using values::VariantType;

// With a point or an exponent, so that SQLite takes it for a REAL.
std::string realText(double value) {
  if (!std::isfinite(value)) return value < 0 ? "-9e999" : "9e999";
  std::array<char, 40> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  std::string text(buffer.data(), end);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::string hexText(const char* bytes, std::size_t count) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "x'";
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 15U];
  }
  return text + "'";
}

// All operators group from the left, so a left operand of the same operator is continued.
std::vector<TypedSql> operandsOf(std::string_view chain, const TypedSql& left,
                                 const TypedSql& right) {
  std::vector<TypedSql> operands = left.parts;
  if (left.chain != chain) operands = {left};
  operands.push_back(right);
  return operands;
}

// a & b & c in SQLite's own words, where a literal among them keeps the whole from being Null: Null
// stands for no text. Empty where the operator has to be called.
std::string concatenation(std::span<const TypedSql> operands) {
  constexpr std::size_t kMaxOperands = 100;  // SQLite takes only so deep an expression
  const auto isLiteral = [](const TypedSql& operand) { return operand.literal; };
  if (operands.size() > kMaxOperands || std::none_of(operands.begin(), operands.end(), isLiteral)) {
    return {};
  }
  std::vector<std::string> parts;
  for (const TypedSql& operand : operands) {
    const std::string text = convertTo(operand, VariantType::kText).text;
    parts.push_back(operand.literal ? text : "ifnull(" + text + ", '')");
  }
  return "(" + joined(parts, " || ") + ")";
}

}  // namespace

std::string_view comparisonSymbol(Operator operation) {
  switch (operation) {
    case Operator::kEqual:
      return " = ";
    case Operator::kNotEqual:
      return " <> ";
    case Operator::kLess:
      return " < ";
    case Operator::kLessOrEqual:
      return " <= ";
    case Operator::kGreater:
      return " > ";
    default:
      return " >= ";
  }
}

std::string quotedName(std::string_view name) {
  std::string text = "\"";
  for (const char c : name) text += c == '"' ? std::string("\"\"") : std::string(1, c);
  return text + "\"";
}

std::string quotedText(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    return "CAST(" + hexText(text.data(), text.size()) + " AS TEXT)";
  }
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
  return quoted + "'";
}

std::string joined(std::span<const std::string> parts, std::string_view separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (!text.empty()) text += separator;
    text += part;
  }
  return text;
}

std::string clause(std::string_view keyword, std::string_view text) {
  return text.empty() ? std::string() : " " + std::string(keyword) + " " + std::string(text);
}

TypedSql truth(const std::string& text) { return {"(" + text + ")", VariantType::kYesNo, true}; }

TypedSql constant(const values::Variant& value) {
  TypedSql sql{.text = "NULL", .type = value.type(), .literal = !value.isNull()};
  switch (value.type()) {
    case VariantType::kNull:
      break;
    case VariantType::kYesNo:
    case VariantType::kByte:
    case VariantType::kInteger:
    case VariantType::kLong:
      sql.text = std::to_string(toLong(value));
      break;
    case VariantType::kSingle:
    case VariantType::kDouble:
      sql.text = realText(toDouble(value));
      break;
    case VariantType::kDateTime:
      sql.text = realText(value.as<values::DateTime>()->serial);
      break;
    case VariantType::kCurrency:
      sql.text = std::to_string(value.as<values::Currency>()->units);
      break;
    case VariantType::kNumeric:
      sql.text = "jet_convert('mx', " + quotedText(toText(value)) + ")";
      break;
    case VariantType::kText:
      sql.text = quotedText(*value.as<std::string>());
      break;
    case VariantType::kBinary: {
      const auto& bytes = value.as<values::Binary>()->bytes;
      sql.text = hexText(reinterpret_cast<const char*>(bytes.data()), bytes.size());
      break;
    }
  }
  return sql;
}

std::string valueOf(const TypedSql& sql) { return sql.truth ? "-" + sql.text : sql.text; }

std::string conditionOf(const TypedSql& sql) {
  return sql.type == VariantType::kNumeric ? convertTo(sql, VariantType::kDouble).text : sql.text;
}

std::string collated(const TypedSql& sql) {
  return sql.type == VariantType::kText ? sql.text + " COLLATE JET" : valueOf(sql);
}

TypedSql convertTo(const TypedSql& sql, VariantType type) {
  if (sql.type == type) return sql;
  if (sql.type == VariantType::kNull || type == VariantType::kNull) return {sql.text, type};
  // Whole numbers of more bits, and amounts from whole numbers, need no call.
  if (isWholeNumber(sql.type) && isWholeNumber(type) && sql.type < type &&
      type != VariantType::kByte) {
    return {valueOf(sql), type};
  }
  if (isWholeNumber(sql.type) && type == VariantType::kCurrency) {
    return {"(" + valueOf(sql) + " * 10000)", type};  // 32 bits cannot overflow
  }
  return {callText("convert", type, std::array{sql}), type};
}

std::string callText(std::string_view name, VariantType result,
                     std::span<const TypedSql> arguments) {
  std::string signature(1, letterOf(result));
  std::string values;
  for (const TypedSql& argument : arguments) {
    signature += letterOf(argument.type);
    values += ", " + valueOf(argument);
  }
  return "jet_" + text::lowerCase(name) + "('" + signature + "'" + values + ")";
}

TypedSql unaryCall(std::string_view name, VariantType result, const TypedSql& operand) {
  return {callText("op_" + std::string(name), result, std::array{operand}), result};
}

TypedSql binaryCall(std::string_view name, VariantType result, const TypedSql& left,
                    const TypedSql& right) {
  std::vector<TypedSql> operands = operandsOf(name, left, right);
  std::string text = name == "concat" ? concatenation(operands) : std::string();
  if (text.empty()) text = callText("op_" + std::string(name), result, operands);
  return {std::move(text), result, false, name, std::move(operands)};
}

std::string guardedText(const std::string& value) {
  return "jet_guard(jet_begin(), " + value + ")";
}

TypedSql truthChain(std::string_view keyword, const TypedSql& left, const TypedSql& right) {
  std::vector<TypedSql> operands = operandsOf(keyword, left, right);
  std::vector<std::string> texts;
  texts.reserve(operands.size());
  for (const TypedSql& operand : operands) texts.push_back(operand.text);
  return {"(" + joined(texts, keyword) + ")", VariantType::kYesNo, true, keyword,
          std::move(operands)};
}

}  // namespace jetsql
