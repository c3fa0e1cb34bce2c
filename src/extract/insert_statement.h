// Builds the INSERT statements of one server table from its column table.
//
//   constexpr Column kColumns[] = {group("CS_GROUP"), ..., number("CS_C_ID", "C_ID"),
//                                  text("CS_RDATE", "rDate")};
//   InsertStatement insert({"CustomerSellingTB", kColumns, " ) Values ("}, work.shop,
//                          work.codePage);
//   work.writeEncoded(insert.build(row));      // once a row
//
// A column says in what format it is written and where its value comes from: a field of the row, a
// value that the extractor computed (by its index in the span given to build), or nothing but the
// shop. Columns are views of constants; InsertStatement keeps references to them.
// Errors: 3265 for a field that the rows do not have, and those of reading a field.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "extract/statement_buffer.h"
#include "extract/workspace.h"
#include "localdb/record_set.h"
#include "platform/code_page.h"
#include "values/variant.h"

namespace extract {

enum class ValueFormat : std::uint8_t {
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

// Members in the order in which a column table is read; the padding does not matter.
struct Column {  // NOLINT(clang-analyzer-optin.performance.Padding)
  std::string_view name;
  ValueFormat format;
  std::string_view field = {};
  int computed = kFromField;  // index of the computed value
};

constexpr Column text(std::string_view name, std::string_view field) {
  return {name, ValueFormat::kText, field};
}
constexpr Column unescapedText(std::string_view name, std::string_view field) {
  return {name, ValueFormat::kUnescapedText, field};
}
constexpr Column number(std::string_view name, std::string_view field) {
  return {name, ValueFormat::kNumber, field};
}
constexpr Column flag(std::string_view name, std::string_view field) {
  return {name, ValueFormat::kFlag, field};
}
constexpr Column absoluteFlag(std::string_view name, std::string_view field) {
  return {name, ValueFormat::kAbsoluteFlag, field};
}
constexpr Column computedText(std::string_view name, int index) {
  return {name, ValueFormat::kText, {}, index};
}
constexpr Column computedNumber(std::string_view name, int index) {
  return {name, ValueFormat::kNumber, {}, index};
}
constexpr Column zero(std::string_view name) { return {name, ValueFormat::kZero}; }
constexpr Column group(std::string_view name) { return {name, ValueFormat::kGroup}; }
constexpr Column tradeName(std::string_view name) { return {name, ValueFormat::kTradeName}; }
constexpr Column representative(std::string_view name) {
  return {name, ValueFormat::kRepresentative};
}

struct InsertTemplate {
  std::string_view table;
  std::span<const Column> columns;  // in the order of the statement
  std::string_view separator;       // between the last column's name and the first value
};

class InsertStatement {
 public:
  // Keeps a reference to the code page of the statement file.
  InsertStatement(const InsertTemplate& insert, const ShopLiterals& shop, CodePage& codePage);

  // The INSERT of the current row in the code page, valid until the next call. All rows come from
  // one query: it may be opened again, its fields are looked up only once.
  std::string_view build(const localdb::RecordSet& row,
                         std::span<const values::Variant> computed = {});

 private:
  // A value that differs from row to row, and the constant text between it and the one before, in
  // the code page: the end of that one, constants, its own opening quote.
  struct Piece {
    std::string before;
    ValueFormat format;
    int computed;  // index of the computed value, or kFromField
    std::string_view name;
    // Of a field, once it was looked up; a column of a table is read from the table's row.
    std::size_t field = 0;
    std::optional<localdb::StoredField> stored = {};
    // The last row's date and its text: a day's rows have one day.
    double date = std::numeric_limits<double>::quiet_NaN();
    std::string dateText = {};
  };

  void findFields(const localdb::RecordSet& row);
  void appendField(Piece& piece, const localdb::RecordSet& row);
  void appendColumn(Piece& piece, const jet::Row& row, std::size_t column);
  void appendStoredText(ValueFormat format, const jet::Row& row, std::size_t column);
  void appendDate(Piece& piece, values::DateTime date);
  void appendValue(ValueFormat format, const values::VariantView& value);
  void appendWhole(ValueFormat format, std::int32_t value);
  void appendText(ValueFormat format, const values::VariantView& value);

  CodePage& codePage_;
  std::vector<Piece> pieces_;
  std::string closing_;
  bool foundFields_ = false;
  std::vector<const jet::Row*> rows_;  // current ones, of the tables whose columns pieces_ name
  StatementBuffer statement_;          // the storage of these four is used again
  std::string field_;
  std::string text_;
  std::string encoded_;
};

// The DELETE of a day range: "Delete FROM SellingTB  Where SL_GROUP = 'A01'   And ...".
struct RangeDelete {
  std::string_view table;
  std::string_view groupColumn;
  std::string_view tradeNameColumn;
  std::string_view dayColumn;
  std::string_view lowerBound = "And";  // the word before the range's first day
};

[[nodiscard]] std::string rangeDelete(const RangeDelete& target, const ShopLiterals& shop,
                                      std::string_view firstDay, std::string_view lastDay);

}  // namespace extract
