#include "extract/insert_statement.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "extract/conversions.h"
#include "text/ascii.h"
#include "values/number_text.h"

namespace extract {

namespace {

std::string inQuotes(std::string_view literal) { return "'" + std::string(literal) + "'"; }

// The literal that all rows have in the column; nothing where it depends on the row.
std::optional<std::string> constant(ValueFormat format, const ShopLiterals& shop) {
  switch (format) {
    case ValueFormat::kZero:
      return "0";
    case ValueFormat::kGroup:
      return inQuotes(shop.group);
    case ValueFormat::kTradeName:
      return inQuotes(shop.tradeName);
    case ValueFormat::kRepresentative:
      return inQuotes(shop.representative);
    default:
      return std::nullopt;
  }
}

}  // namespace

InsertStatement::InsertStatement(const InsertTemplate& insert, const ShopLiterals& shop,
                                 CodePage& codePage)
    : codePage_(codePage) {
  std::vector<std::string_view> fields;
  std::string text = "Insert Into " + std::string(insert.table) + " (";
  for (const Column& column : insert.columns) text.append(column.name).append(", ");
  text.resize(text.size() - 2);
  text.append(insert.separator);
  for (const Column& column : insert.columns) {
    if (&column != insert.columns.data()) text += ", ";
    if (const auto always = constant(column.format, shop)) {
      text += *always;
      continue;
    }
    const std::string_view quote = column.format == ValueFormat::kNumber ? "" : "'";
    const bool isComputed = column.computed != kFromField;
    if (!isComputed) fields.push_back(column.field);
    pieces_.push_back({codePage_.fromUtf8(text.append(quote)), column.format, isComputed,
                       isComputed ? static_cast<std::size_t>(column.computed) : fields.size() - 1});
    text = quote;
  }
  closing_ = codePage_.fromUtf8(text + ");");
  fields_ = RowFields(fields);
}

const std::string& InsertStatement::build(const localdb::RecordSet& row,
                                          std::span<const values::Variant> computed) {
  statement_.clear();
  for (const Piece& piece : pieces_) {
    statement_ += piece.before;
    appendValue(piece.format,
                piece.isComputed ? computed[piece.place] : fields_.view(row, piece.place, field_));
  }
  statement_ += closing_;
  return statement_;
}

// Without the quotes around it.
void InsertStatement::appendValue(ValueFormat format, const values::VariantView& value) {
  switch (format) {
    case ValueFormat::kText:
    case ValueFormat::kUnescapedText:
      return appendText(format, value);
    case ValueFormat::kNumber:
      return values::appendWhole(statement_, NzLong(value));
    case ValueFormat::kFlag:
      statement_ += NzLong(value) == -1 ? '1' : '0';
      return;
    case ValueFormat::kAbsoluteFlag:
      return values::appendWhole(statement_, std::llabs(NzLong(value)));
    default:
      return;  // constants are part of Piece::before
  }
}

void InsertStatement::appendText(ValueFormat format, const values::VariantView& value) {
  const std::size_t start = statement_.size();
  if (format == ValueFormat::kText) {
    appendSqlText(statement_, value);
  } else {
    appendNzText(statement_, value);
  }
  const std::string_view text = std::string_view(statement_).substr(start);
  if (text::asciiPrefix(text) == text.size()) return;
  utf8_ = text;
  statement_.resize(start);
  codePage_.appendFromUtf8(utf8_, statement_);
}

std::string rangeDelete(const RangeDelete& target, const ShopLiterals& shop,
                        std::string_view firstDay, std::string_view lastDay) {
  std::string statement;
  statement.append("Delete FROM ").append(target.table).append("  Where ");
  statement.append(target.groupColumn).append(" = '").append(shop.group).append("'   And ");
  statement.append(target.tradeNameColumn).append(" = '").append(shop.tradeName).append("'   ");
  statement.append(target.lowerBound).append(" ").append(target.dayColumn);
  statement.append(" >= '").append(firstDay).append("'   And ").append(target.dayColumn);
  return statement.append(" <= '").append(lastDay).append("';");
}

}  // namespace extract
