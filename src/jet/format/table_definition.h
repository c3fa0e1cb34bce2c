// What a table's definition pages say: columns, indexes, and where the rows are.
//
//   const TableDefinition& d = table.definition();
//   if (auto c = d.findColumn("c_upload")) use(d.columns[*c]);
//
// Columns stand in their order of display and are named everywhere by their position in that order.
// Plain values; nothing refers to the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/text_weights.h"
#include "values/variant.h"

namespace jet {

enum class ColumnType : std::uint8_t {
  kYesNo = 1,
  kByte = 2,
  kInteger = 3,
  kLong = 4,
  kCurrency = 5,
  kSingle = 6,
  kDouble = 7,
  kDateTime = 8,
  kBinary = 9,
  kText = 10,
  kOle = 11,
  kMemo = 12,
  kGuid = 15,
  kNumeric = 16,
  kWideBinary = 17,        // found in system tables of Access 2000: up to a page's bytes
  kComplex = 18,           // Access 2007 and later: the number of a multi-valued field's rows
  kBigInt = 19,            // Access 2016 and later
  kExtendedDateTime = 20,  // Access 2019 and later; read as its bytes
};

// Bytes of a value of the type; 0 where the length is the column's own, and for Yes/No, which lives
// in the null mask.
[[nodiscard]] std::size_t fixedSize(ColumnType type);

struct Column {
  std::string name;
  ColumnType type = ColumnType::kLong;
  std::uint16_t number = 0;   // bit in a row's null mask
  std::uint16_t ordinal = 0;  // order of display
  bool fixed = false;         // stands at fixedOffset; otherwise in the variable part at varIndex
  std::uint16_t fixedOffset = 0;  // from the end of the row's column count
  std::uint16_t varIndex = 0;
  std::uint16_t length = 0;    // bytes; 0 for memo and OLE
  std::uint8_t precision = 0;  // of Numeric
  std::uint8_t scale = 0;
  std::uint8_t flags = 0;  // kColumnFixed ... as stored
  bool autonumber = false;
  bool compressed = false;               // Jet 4: new texts may be stored compressed
  const TextWeights* weights = nullptr;  // of its keys; none: no text, or another sort order

  // Type of the values that the column gives. BigInt gives Numeric, GUID and memo give Text.
  [[nodiscard]] values::VariantType variantType() const;
  [[nodiscard]] bool isLongValue() const {
    return type == ColumnType::kMemo || type == ColumnType::kOle;
  }
};

struct IndexColumn {
  std::size_t column = 0;  // position in TableDefinition::columns
  bool ascending = true;
};

// The tree that one or more (logical) indexes share.
struct RealIndex {
  std::vector<IndexColumn> columns;
  std::uint32_t rootPage = 0;
  RowId usageMap;
  bool unique = false;
  bool ignoreNulls = false;  // rows whose key is Null are not in the tree
  bool required = false;
};

struct Index {
  std::string name;
  std::size_t realIndex = 0;  // position in TableDefinition::realIndexes
  bool primary = false;
  bool foreign = false;  // made by a relation
};

struct TableDefinition {
  std::string name;
  std::uint32_t page = 0;  // first definition page: the owner that data and index pages name
  bool system = false;
  std::uint32_t rowCount = 0;  // as the definition says; not relied on
  std::uint32_t autonumber = 0;
  std::uint16_t maxColumns = 0;  // columns that a row may have, deleted ones included
  std::uint16_t varColumns = 0;  // entries of a new row's variable-column table
  RowId ownedPages;              // usage maps
  RowId freePages;
  std::vector<Column> columns;
  std::vector<RealIndex> realIndexes;
  std::vector<Index> indexes;

  // Position of a column; names match without regard to case.
  [[nodiscard]] std::optional<std::size_t> findColumn(std::string_view name) const;
};

// Names of tables, columns and indexes are equal when they differ in the case of letters only.
[[nodiscard]] bool sameName(std::string_view a, std::string_view b);

// The form in which equal names are the same bytes: a key for maps of names.
[[nodiscard]] std::string foldName(std::string_view name);

}  // namespace jet
