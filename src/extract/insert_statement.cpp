#include "extract/insert_statement.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "extract/conversions.h"

namespace extract {

namespace {

std::string inQuotes(std::string_view literal) { return "'" + std::string(literal) + "'"; }

// What every row has in the column; nothing where it depends on the row.
std::optional<std::string> constant(Written written, const ShopLiterals& shop) {
  switch (written) {
    case Written::kZero:
      return "0";
    case Written::kGroup:
      return inQuotes(shop.group);
    case Written::kTradeName:
      return inQuotes(shop.tradeName);
    case Written::kRepresentative:
      return inQuotes(shop.representative);
    default:
      return std::nullopt;
  }
}

// Without the quotes around it.
void appendValue(std::string& statement, Written written, const values::Variant& value) {
  switch (written) {
    case Written::kText:
      return appendSqlText(statement, value);
    case Written::kUnescapedText:
      return appendNzText(statement, value);
    case Written::kNumber:
      return appendNumber(statement, NzLong(value));
    case Written::kFlag:
      statement += NzLong(value) == -1 ? '1' : '0';
      return;
    case Written::kAbsoluteFlag:
      return appendNumber(statement, std::llabs(NzLong(value)));
    default:
      return;  // constants are part of the pieces
  }
}

}  // namespace

InsertStatement::InsertStatement(const InsertShape& shape, const ShopLiterals& shop) {
  std::string text = "Insert Into " + std::string(shape.table) + " (";
  for (const Column& column : shape.columns) text.append(column.name).append(", ");
  text.resize(text.size() - 2);
  text.append(shape.between);
  for (const Column& column : shape.columns) {
    if (&column != shape.columns.data()) text += ", ";
    if (const auto always = constant(column.written, shop)) {
      text += *always;
      continue;
    }
    const std::string_view quote = column.written == Written::kNumber ? "" : "'";
    pieces_.push_back({text.append(quote), &column});
    text = quote;
  }
  closing_ = text + ");";
}

void InsertStatement::findFields(const localdb::RecordSet& row) {
  std::vector<std::size_t> places;
  for (const Piece& piece : pieces_) {
    const bool hasField = piece.column->own == kFromField;
    places.push_back(hasField ? row.fieldIndex(piece.column->field) : 0);
  }
  places_ = std::move(places);
}

void InsertStatement::build(const localdb::RecordSet& row, std::span<const values::Variant> own,
                            std::string& statement) {
  if (places_.empty()) findFields(row);
  statement.clear();
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Column& column = *pieces_[i].column;
    statement += pieces_[i].before;
    if (column.own == kFromField) {
      appendValue(statement, column.written, row.field(places_[i]));
    } else {
      appendValue(statement, column.written, own[static_cast<std::size_t>(column.own)]);
    }
  }
  statement += closing_;
}

std::string rangeDelete(const RangeDelete& shape, const ShopLiterals& shop,
                        std::string_view firstDay, std::string_view lastDay) {
  std::string statement;
  statement.append("Delete FROM ").append(shape.table).append("  Where ");
  statement.append(shape.groupColumn).append(" = '").append(shop.group).append("'   And ");
  statement.append(shape.tradeNameColumn).append(" = '").append(shop.tradeName).append("'   ");
  statement.append(shape.lowerBound).append(" ").append(shape.dayColumn);
  statement.append(" >= '").append(firstDay).append("'   And ").append(shape.dayColumn);
  return statement.append(" <= '").append(lastDay).append("';");
}

}  // namespace extract
