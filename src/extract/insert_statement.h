// Builds the INSERT statements of one server table from its column table.
//
//   constexpr Column kColumns[] = {group("CS_GROUP"), ..., number("CS_C_ID", "C_ID"),
//                                  text("CS_RDATE", "rDate")};
//   InsertStatement insert({"CustomerSellingTB", kColumns, " ) Values ("}, work.shop);
//   insert.build(rows, {}, work.statement);      // once a row
//
// A column says in what form it is written and where its value comes from: a field of the row, a
// value that the extractor worked out itself ("own", by its place in what build is given), or
// nothing but the shop. Columns are views of constants; the writer keeps references to them.
// Errors: 3265 for a field that the rows do not have, and those of reading a field.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "extract/workspace.h"
#include "localdb/record_set.h"
#include "values/variant.h"

namespace extract {

enum class Written : std::uint8_t {
  kText,           // 'SqlText'
  kUnescapedText,  // 'NzText'
  kNumber,         // NzLong, unquoted
  kFlag,           // '1' for -1, else '0'
  kAbsoluteFlag,   // 'the magnitude of NzLong'
  kZero,           // 0
  kGroup,          // the shop's identity as quoted text
  kTradeName,
  kRepresentative,
};

constexpr int kFromField = -1;

// In the order of reading: what a few bytes of padding cost nobody notices.
struct Column {  // NOLINT(clang-analyzer-optin.performance.Padding)
  std::string_view name;
  Written written;
  std::string_view field = {};
  int own = kFromField;  // place among the own values
};

constexpr Column text(std::string_view name, std::string_view field) {
  return {name, Written::kText, field};
}
constexpr Column unescapedText(std::string_view name, std::string_view field) {
  return {name, Written::kUnescapedText, field};
}
constexpr Column number(std::string_view name, std::string_view field) {
  return {name, Written::kNumber, field};
}
constexpr Column flag(std::string_view name, std::string_view field) {
  return {name, Written::kFlag, field};
}
constexpr Column absoluteFlag(std::string_view name, std::string_view field) {
  return {name, Written::kAbsoluteFlag, field};
}
constexpr Column ownText(std::string_view name, int own) { return {name, Written::kText, {}, own}; }
constexpr Column ownNumber(std::string_view name, int own) {
  return {name, Written::kNumber, {}, own};
}
constexpr Column zero(std::string_view name) { return {name, Written::kZero}; }
constexpr Column group(std::string_view name) { return {name, Written::kGroup}; }
constexpr Column tradeName(std::string_view name) { return {name, Written::kTradeName}; }
constexpr Column representative(std::string_view name) { return {name, Written::kRepresentative}; }

struct InsertShape {
  std::string_view table;
  std::span<const Column> columns;  // in the order of the statement
  std::string_view between;         // what stands between the last column's name and its values
};

class InsertStatement {
 public:
  InsertStatement(const InsertShape& shape, const ShopLiterals& shop);

  // Replaces `statement` by the INSERT of the current row. All rows come from one query: it may be
  // opened again and again, its fields are looked up by name only once.
  void build(const localdb::RecordSet& row, std::span<const values::Variant> own,
             std::string& statement);

 private:
  // A value that differs from row to row, and what stands between it and the one before: the end of
  // that one, constants, its own opening quote.
  struct Piece {
    std::string before;
    const Column* column;
  };

  void findFields(const localdb::RecordSet& row);

  std::vector<Piece> pieces_;
  std::string closing_;
  std::vector<std::size_t> places_;  // of each piece's field
};

// The DELETE of a day range: "Delete FROM SellingTB  Where SL_GROUP = 'A01'   And ...".
struct RangeDelete {
  std::string_view table;
  std::string_view groupColumn;
  std::string_view tradeNameColumn;
  std::string_view dayColumn;
  std::string_view lowerBound = "And";  // the word before the range's first day
};

[[nodiscard]] std::string rangeDelete(const RangeDelete& shape, const ShopLiterals& shop,
                                      std::string_view firstDay, std::string_view lastDay);

}  // namespace extract
