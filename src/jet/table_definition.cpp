#include "jet/table_definition.h"

#include <algorithm>

#include "platform/letter_case.h"

namespace jet {

std::size_t fixedSize(ColumnType type) {
  switch (type) {
    case ColumnType::Byte:
      return 1;
    case ColumnType::Integer:
      return 2;
    case ColumnType::Long:
    case ColumnType::Single:
    case ColumnType::Complex:
      return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::DateTime:
    case ColumnType::BigInt:
      return 8;
    case ColumnType::Guid:
      return 16;
    case ColumnType::Numeric:
      return 17;
    default:
      return 0;
  }
}
std::string foldName(std::string_view name) {
  const bool ascii =
      std::all_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x80; });
  if (!ascii) return platform::lowerCase(name);
  std::string folded(name);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return folded;
}

bool sameName(std::string_view a, std::string_view b) {
  return a == b || foldName(a) == foldName(b);
}

VariantType Column::variantType() const {
  switch (type) {
    case ColumnType::YesNo:
      return VariantType::YesNo;
    case ColumnType::Byte:
      return VariantType::Byte;
    case ColumnType::Integer:
      return VariantType::Integer;
    case ColumnType::Long:
    case ColumnType::Complex:
      return VariantType::Long;
    case ColumnType::Currency:
      return VariantType::Currency;
    case ColumnType::Single:
      return VariantType::Single;
    case ColumnType::Double:
      return VariantType::Double;
    case ColumnType::DateTime:
      return VariantType::DateTime;
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Guid:
      return VariantType::Text;
    case ColumnType::Numeric:
    case ColumnType::BigInt:
      return VariantType::Numeric;
    case ColumnType::Binary:
    case ColumnType::WideBinary:
    case ColumnType::Ole:
    case ColumnType::ExtendedDateTime:
      break;
  }
  return VariantType::Binary;
}

std::optional<std::size_t> TableDefinition::findColumn(std::string_view columnName) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (sameName(columns[i].name, columnName)) return i;
  }
  return std::nullopt;
}

}  // namespace jet
