#include "jetcreate/table_spec.h"

#include "jet/format/creation_format.h"
#include "jet/format/layout.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::uint16_t kLongestShort = 255;  // characters of text, bytes of binary
constexpr std::size_t kMaxColumns = 255;
constexpr std::uint8_t kMaxDigits = 28;

std::uint16_t storedLength(const Format& format, const NewColumn& column) {
  const std::uint16_t size = column.size == 0 ? kLongestShort : column.size;
  switch (column.type) {
    case ColumnType::kYesNo:
      return 1;
    case ColumnType::kText:
      return static_cast<std::uint16_t>(size * format.characterSize);
    case ColumnType::kBinary:
      return size;
    default:
      return static_cast<std::uint16_t>(fixedSize(column.type));  // memo, OLE: 0
  }
}

bool isFixed(ColumnType type) {
  return type != ColumnType::kText && type != ColumnType::kMemo && type != ColumnType::kBinary &&
         type != ColumnType::kOle;
}

[[noreturn]] void refuse(const std::string& table, const std::string& reason) {
  throw RuntimeError(error::kInvalidArgument, "Table '" + table + "' cannot be made: " + reason);
}

void checkColumn(const CreationFormat& creation, const std::string& table,
                 const NewColumn& column) {
  if (column.autonumber && column.type != ColumnType::kLong) {
    refuse(table, "the autonumber '" + column.name + "' is no whole number.");
  }
  if (column.size > kLongestShort) refuse(table, "the field '" + column.name + "' is too long.");
  if (column.precision > kMaxDigits || column.scale > column.precision) {
    refuse(table, "the digits of the field '" + column.name + "' are too many.");
  }
  if (column.type > creation.lastType) {
    refuse(table, "the field '" + column.name + "' has a type of later versions.");
  }
}

void addColumn(const Format& format, const NewColumn& from, TableDefinition& definition) {
  Column column;
  column.name = from.name;
  column.type = from.type;
  column.number = column.ordinal = static_cast<std::uint16_t>(definition.columns.size());
  column.fixed = isFixed(from.type);
  column.varIndex = definition.varColumns;
  column.length = storedLength(format, from);
  column.precision = from.precision;
  column.scale = from.scale;
  column.autonumber = from.autonumber;
  column.compressed = from.compressed;
  column.flags = static_cast<std::uint8_t>(kColumnNullable | (column.fixed ? kColumnFixed : 0) |
                                           (from.autonumber ? kColumnAutonumber : 0) |
                                           (definition.system ? kSystemColumn : 0) |
                                           (from.securityId ? kHiddenBytes : 0));
  if (!column.fixed) {
    ++definition.varColumns;
  } else if (from.type != ColumnType::kYesNo) {  // which has no bytes but its bit
    for (const Column& other : definition.columns) {
      if (other.fixed && other.type != ColumnType::kYesNo) {
        column.fixedOffset = static_cast<std::uint16_t>(other.fixedOffset + other.length);
      }
    }
  }
  definition.columns.push_back(std::move(column));
}

void addIndex(const NewIndex& from, TableDefinition& definition) {
  RealIndex real;
  for (const std::string& text : from.columns) {
    const bool ascending = !text.starts_with('-');
    const auto column = definition.findColumn(ascending ? text : text.substr(1));
    if (!column) {
      refuse(definition.name, "index '" + from.name + "' names no field by '" + text + "'.");
    }
    real.columns.push_back({*column, ascending});
  }
  if (real.columns.empty() || real.columns.size() > kIndexColumns) {
    refuse(definition.name, "index '" + from.name + "' has no fields or too many.");
  }
  real.unique = from.unique || from.primary;
  // The engine's own tables have primary keys without this mark.
  real.required = from.primary && !definition.system;
  real.ignoreNulls = from.ignoreNulls;
  Index index;
  index.name = from.name;
  index.realIndex = definition.realIndexes.size();
  index.primary = from.primary;
  definition.realIndexes.push_back(std::move(real));
  definition.indexes.push_back(std::move(index));
}

}  // namespace

TableDefinition planTable(const CreationFormat& creation, const std::string& name, bool system,
                          const std::vector<NewColumn>& columns,
                          const std::vector<NewIndex>& indexes) {
  if (columns.empty() || columns.size() > kMaxColumns) refuse(name, "no fields or too many.");
  TableDefinition definition;
  definition.name = name;
  definition.system = system;
  for (const NewColumn& column : columns) {
    checkColumn(creation, name, column);
    addColumn(formatOf(creation.version), column, definition);
  }
  definition.maxColumns = static_cast<std::uint16_t>(columns.size());
  for (const NewIndex& index : indexes) addIndex(index, definition);
  return definition;
}

}  // namespace jetcreate
