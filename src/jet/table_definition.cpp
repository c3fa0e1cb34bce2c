#include "jet/table_definition.h"

namespace jet {
namespace {

// Lower case of the Latin letters of ASCII and, in their two bytes of UTF-8, of U+00C0 to U+00DE.
char foldedByte(char c, char before) {
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c + ('a' - 'A'));
  const auto byte = static_cast<unsigned char>(c);
  if (before == '\xC3' && byte >= 0x80 && byte <= 0x9E && byte != 0x97) {
    return static_cast<char>(byte + 0x20);
  }
  return c;
}

}  // namespace

std::string foldName(std::string_view name) {
  std::string folded;
  folded.reserve(name.size());
  char before = 0;
  for (const char c : name) {
    folded.push_back(foldedByte(c, before));
    before = c;
  }
  return folded;
}

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && (a == b || foldName(a) == foldName(b));
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
