#include "jet/format/table_definition.h"

#include <algorithm>

#include "text/letter_case.h"

namespace jet {

std::size_t fixedSize(ColumnType type) {
  switch (type) {
    case ColumnType::kByte:
      return 1;
    case ColumnType::kInteger:
      return 2;
    case ColumnType::kLong:
    case ColumnType::kSingle:
    case ColumnType::kComplex:
      return 4;
    case ColumnType::kCurrency:
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
    case ColumnType::kBigInt:
      return 8;
    case ColumnType::kGuid:
      return 16;
    case ColumnType::kNumeric:
      return 17;
    default:
      return 0;
  }
}

std::string foldName(std::string_view name) { return text::lowerCase(name); }

bool sameName(std::string_view a, std::string_view b) {
  return a == b || foldName(a) == foldName(b);
}

values::VariantType Column::variantType() const {
  switch (type) {
    case ColumnType::kYesNo:
      return values::VariantType::kYesNo;
    case ColumnType::kByte:
      return values::VariantType::kByte;
    case ColumnType::kInteger:
      return values::VariantType::kInteger;
    case ColumnType::kLong:
    case ColumnType::kComplex:
      return values::VariantType::kLong;
    case ColumnType::kCurrency:
      return values::VariantType::kCurrency;
    case ColumnType::kSingle:
      return values::VariantType::kSingle;
    case ColumnType::kDouble:
      return values::VariantType::kDouble;
    case ColumnType::kDateTime:
      return values::VariantType::kDateTime;
    case ColumnType::kText:
    case ColumnType::kMemo:
    case ColumnType::kGuid:
      return values::VariantType::kText;
    case ColumnType::kNumeric:
    case ColumnType::kBigInt:
      return values::VariantType::kNumeric;
    case ColumnType::kBinary:
    case ColumnType::kWideBinary:
    case ColumnType::kOle:
    case ColumnType::kExtendedDateTime:
      break;
  }
  return values::VariantType::kBinary;
}

std::optional<std::size_t> TableDefinition::findColumn(std::string_view columnName) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (sameName(columns[i].name, columnName)) return i;
  }
  return std::nullopt;
}

}  // namespace jet
