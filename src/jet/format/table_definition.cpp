#include "jet/format/table_definition.h"

#include <algorithm>

#include "text/letter_case.h"

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
  if (!ascii) return text::lowerCase(name);
  std::string folded(name);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return folded;
}

bool sameName(std::string_view a, std::string_view b) {
  return a == b || foldName(a) == foldName(b);
}

values::VariantType Column::variantType() const {
  switch (type) {
    case ColumnType::YesNo:
      return values::VariantType::YesNo;
    case ColumnType::Byte:
      return values::VariantType::Byte;
    case ColumnType::Integer:
      return values::VariantType::Integer;
    case ColumnType::Long:
    case ColumnType::Complex:
      return values::VariantType::Long;
    case ColumnType::Currency:
      return values::VariantType::Currency;
    case ColumnType::Single:
      return values::VariantType::Single;
    case ColumnType::Double:
      return values::VariantType::Double;
    case ColumnType::DateTime:
      return values::VariantType::DateTime;
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Guid:
      return values::VariantType::Text;
    case ColumnType::Numeric:
    case ColumnType::BigInt:
      return values::VariantType::Numeric;
    case ColumnType::Binary:
    case ColumnType::WideBinary:
    case ColumnType::Ole:
    case ColumnType::ExtendedDateTime:
      break;
  }
  return values::VariantType::Binary;
}

std::optional<std::size_t> TableDefinition::findColumn(std::string_view columnName) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (sameName(columns[i].name, columnName)) return i;
  }
  return std::nullopt;
}

}  // namespace jet
