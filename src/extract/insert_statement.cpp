#include "extract/insert_statement.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "extract/conversions.h"
#include "text/ascii.h"

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
    pieces_.push_back({codePage_.fromUtf8(text.append(quote)), &column});
    text = quote;
  }
  closing_ = codePage_.fromUtf8(text + ");");
}

void InsertStatement::findFields(const localdb::RecordSet& row) {
  std::vector<std::size_t> indexes;
  for (const Piece& piece : pieces_) {
    const bool hasField = piece.column->computed == kFromField;
    indexes.push_back(hasField ? row.fieldIndex(piece.column->field) : 0);
  }
  fieldIndexes_ = std::move(indexes);
}

const std::string& InsertStatement::build(const localdb::RecordSet& row,
                                          std::span<const values::Variant> computed) {
  if (fieldIndexes_.empty()) findFields(row);
  statement_.clear();
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Column& column = *pieces_[i].column;
    statement_ += pieces_[i].before;
    appendValue(column.format, column.computed == kFromField
                                   ? row.view(fieldIndexes_[i], field_)
                                   : computed[static_cast<std::size_t>(column.computed)]);
  }
  statement_ += closing_;
  return statement_;
}

// Without the quotes around it.
void InsertStatement::appendValue(ValueFormat format, const values::VariantView& value) {
  const std::size_t start = statement_.size();
  switch (format) {
    case ValueFormat::kText:
      appendSqlText(statement_, value);
      return encodeFrom(start);
    case ValueFormat::kUnescapedText:
      appendNzText(statement_, value);
      return encodeFrom(start);
    case ValueFormat::kNumber:
      return appendNumber(statement_, NzLong(value));
    case ValueFormat::kFlag:
      statement_ += NzLong(value) == -1 ? '1' : '0';
      return;
    case ValueFormat::kAbsoluteFlag:
      return appendNumber(statement_, std::llabs(NzLong(value)));
    default:
      return;  // constants are part of Piece::before
  }
}

void InsertStatement::encodeFrom(std::size_t start) {
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
