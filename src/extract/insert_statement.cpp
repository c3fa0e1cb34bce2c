#include "extract/insert_statement.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "extract/conversions.h"
#include "text/ascii.h"
#include "values/number_text.h"

namespace extract {

namespace {

// Of fewer bytes in the code page no text has an apostrophe too far from its start: a pair of units
// may be one byte.
constexpr std::size_t kMostTextBytes = 32767 / 2;

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
    pieces_.push_back(
        {codePage_.fromUtf8(text.append(quote)), column.format, column.computed, column.field});
    text = quote;
  }
  closing_ = codePage_.fromUtf8(text + ");");
}

void InsertStatement::findFields(const localdb::RecordSet& row) {
  std::size_t tables = 0;
  for (Piece& piece : pieces_) {
    if (piece.computed != kFromField) continue;
    piece.field = row.fieldIndex(piece.name);
    piece.stored = row.stored(piece.field);
    if (piece.stored) tables = std::max(tables, piece.stored->table + 1);
  }
  rows_.resize(tables);
  foundFields_ = true;
}

const std::string& InsertStatement::build(const localdb::RecordSet& row,
                                          std::span<const values::Variant> computed) {
  if (!foundFields_) findFields(row);
  for (std::size_t table = 0; table < rows_.size(); ++table) rows_[table] = row.tableRow(table);
  statement_.clear();
  for (const Piece& piece : pieces_) {
    statement_ += piece.before;
    if (piece.computed == kFromField) {
      appendField(piece, row);
    } else {
      appendValue(piece.format, computed[static_cast<std::size_t>(piece.computed)]);
    }
  }
  statement_ += closing_;
  return statement_;
}

void InsertStatement::appendField(const Piece& piece, const localdb::RecordSet& row) {
  if (!piece.stored) return appendValue(piece.format, row.view(piece.field, field_));
  const jet::Row* stored = rows_[piece.stored->table];
  if (stored == nullptr) return appendValue(piece.format, {});
  appendColumn(piece.format, *stored, piece.stored->column);
}

// The types that most columns have go without a VariantView.
void InsertStatement::appendColumn(ValueFormat format, const jet::Row& row, std::size_t column) {
  const bool isText = format == ValueFormat::kText || format == ValueFormat::kUnescapedText;
  if (row.isNull(column)) {
    if (!isText) appendWhole(format, 0);
    return;
  }
  switch (row.type(column)) {
    case jet::ColumnType::kYesNo:
      if (isText) break;
      [[fallthrough]];
    case jet::ColumnType::kByte:
    case jet::ColumnType::kInteger:
    case jet::ColumnType::kLong:
      return appendWhole(format, static_cast<std::int32_t>(row.wholeNumber(column)));
    case jet::ColumnType::kCurrency: {
      const values::Currency amount{row.wholeNumber(column)};
      return isText ? values::appendCurrency(statement_, amount)
                    : appendWhole(format, NzLong(amount));
    }
    case jet::ColumnType::kDouble:
      if (!isText) break;
      statement_ += values::realText(row.realNumber(column));
      return;
    case jet::ColumnType::kText:
    case jet::ColumnType::kMemo:
      if (!isText) break;
      return appendStoredText(format, row, column);
    default:
      break;
  }
  appendValue(format, row.view(column, field_));
}

void InsertStatement::appendStoredText(ValueFormat format, const jet::Row& row,
                                       std::size_t column) {
  const std::size_t start = statement_.size();
  row.appendText(column, codePage_, statement_);
  if (format != ValueFormat::kText) return;
  // As SqlText, which is asked only where the text may be too long for it. No second byte of a
  // character is an apostrophe.
  const std::size_t apostrophe = statement_.find('\'', start);
  if (apostrophe == std::string::npos) return;
  if (apostrophe - start < kMostTextBytes) {
    statement_.insert(apostrophe, 1, '\\');
  } else {
    statement_.resize(start);
    appendText(format, row.view(column, field_));
  }
}

// Without the quotes around it.
void InsertStatement::appendValue(ValueFormat format, const values::VariantView& value) {
  switch (format) {
    case ValueFormat::kText:
    case ValueFormat::kUnescapedText:
      return appendText(format, value);
    default:
      return appendWhole(format, NzLong(value));
  }
}

void InsertStatement::appendWhole(ValueFormat format, std::int32_t value) {
  switch (format) {
    case ValueFormat::kFlag:
      statement_ += value == -1 ? '1' : '0';
      return;
    case ValueFormat::kAbsoluteFlag:
      return values::appendWhole(statement_, std::llabs(value));
    default:
      return values::appendWhole(statement_, value);
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
