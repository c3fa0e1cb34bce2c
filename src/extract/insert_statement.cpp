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

std::string_view InsertStatement::build(const localdb::RecordSet& row,
                                        std::span<const values::Variant> computed) {
  if (!foundFields_) findFields(row);
  for (std::size_t table = 0; table < rows_.size(); ++table) rows_[table] = row.tableRow(table);
  statement_.clear();
  for (Piece& piece : pieces_) {
    statement_.append(piece.before);
    if (piece.computed == kFromField) {
      appendField(piece, row);
    } else {
      appendValue(piece.format, computed[static_cast<std::size_t>(piece.computed)]);
    }
  }
  statement_.append(closing_);
  return statement_.text();
}

void InsertStatement::appendField(Piece& piece, const localdb::RecordSet& row) {
  if (!piece.stored) return appendValue(piece.format, row.view(piece.field, field_));
  const jet::Row* stored = rows_[piece.stored->table];
  if (stored == nullptr) return appendValue(piece.format, {});
  appendColumn(piece, *stored, piece.stored->column);
}

// The types that most columns have go without a VariantView.
void InsertStatement::appendColumn(Piece& piece, const jet::Row& row, std::size_t column) {
  const ValueFormat format = piece.format;
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
      if (!isText) return appendWhole(format, NzLong(amount));
      if (amount.units % values::kCurrencyScale != 0) break;
      return statement_.appendWhole(amount.units / values::kCurrencyScale);
    }
    case jet::ColumnType::kDouble:
      if (!isText) break;
      return statement_.append(values::realText(row.realNumber(column)));
    case jet::ColumnType::kDateTime:
      if (!isText) break;
      return appendDate(piece, {row.realNumber(column)});
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
  text_.clear();
  row.appendText(column, codePage_, text_);
  if (format == ValueFormat::kText) {
    // As SqlText, which is asked only where the text may be too long for it. No second byte of a
    // character is an apostrophe.
    const std::size_t apostrophe = text_.find('\'');
    if (apostrophe != std::string::npos) {
      if (apostrophe >= kMostTextBytes) return appendText(format, row.view(column, field_));
      text_.insert(apostrophe, 1, '\\');
    }
  }
  statement_.append(text_);
}

void InsertStatement::appendDate(Piece& piece, values::DateTime date) {
  if (piece.date != date.serial) {
    piece.date = date.serial;
    piece.dateText = piece.format == ValueFormat::kText ? SqlText(date) : NzText(date);
  }
  statement_.append(piece.dateText);
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
      return statement_.append(value == -1 ? '1' : '0');
    case ValueFormat::kAbsoluteFlag:
      return statement_.appendWhole(std::llabs(value));
    default:
      return statement_.appendWhole(value);
  }
}

void InsertStatement::appendText(ValueFormat format, const values::VariantView& value) {
  text_.clear();
  if (format == ValueFormat::kText) {
    appendSqlText(text_, value);
  } else {
    appendNzText(text_, value);
  }
  if (text::asciiPrefix(text_) == text_.size()) return statement_.append(text_);
  encoded_.clear();
  codePage_.appendFromUtf8(text_, encoded_);
  statement_.append(encoded_);
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
