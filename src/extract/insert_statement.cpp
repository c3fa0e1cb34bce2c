#include "extract/insert_statement.h"

#include <cstdlib>
#include <utility>

#include "extract/conversions.h"

namespace extract {

namespace {

bool hasField(const Column& column) { return !column.field.empty(); }

void appendQuoted(std::string& statement, std::string_view literal) {
  statement += '\'';
  statement += literal;
  statement += '\'';
}

void appendText(std::string& statement, const jet::Variant& value,
                void (*append)(std::string&, const jet::Variant&)) {
  statement += '\'';
  append(statement, value);
  statement += '\'';
}

void appendAbsoluteFlag(std::string& statement, const jet::Variant& value) {
  statement += '\'';
  appendNumber(statement, std::llabs(NzLong(value)));
  statement += '\'';
}

void appendValue(std::string& statement, Written written, const jet::Variant& value,
                 const ShopLiterals& shop) {
  switch (written) {
    case Written::Text:
      return appendText(statement, value, appendSqlText);
    case Written::UnescapedText:
      return appendText(statement, value, appendNzText);
    case Written::Number:
      return appendNumber(statement, NzLong(value));
    case Written::Flag:
      return appendQuoted(statement, NzLong(value) == -1 ? "1" : "0");
    case Written::AbsoluteFlag:
      return appendAbsoluteFlag(statement, value);
    case Written::Zero:
      return appendNumber(statement, 0);
    case Written::Group:
      return appendQuoted(statement, shop.group);
    case Written::TradeName:
      return appendQuoted(statement, shop.tradeName);
    case Written::Representative:
      return appendQuoted(statement, shop.representative);
  }
}

}  // namespace

InsertStatement::InsertStatement(const InsertShape& shape, const ShopLiterals& shop)
    : columns_(shape.columns), shop_(shop) {
  opening_.append("Insert Into ").append(shape.table).append(" (");
  for (const Column& column : columns_) opening_.append(column.name).append(", ");
  opening_.resize(opening_.size() - 2);
  opening_.append(shape.between);
}

void InsertStatement::findFields(const localdb::RecordSet& row) {
  std::vector<std::size_t> places;
  for (const Column& column : columns_) {
    places.push_back(hasField(column) ? row.fieldIndex(column.field) : 0);
  }
  places_ = std::move(places);
}

void InsertStatement::build(const localdb::RecordSet& row, std::span<const jet::Variant> own,
                            std::string& statement) {
  if (places_.empty()) findFields(row);
  const jet::Variant none;
  statement = opening_;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const Column& column = columns_[i];
    if (i > 0) statement += ", ";
    if (hasField(column)) {
      appendValue(statement, column.written, row.field(places_[i]), shop_);
    } else {
      const bool isOwn = column.own != kFromField;
      appendValue(statement, column.written,
                  isOwn ? own[static_cast<std::size_t>(column.own)] : none, shop_);
    }
  }
  statement += ");";
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
