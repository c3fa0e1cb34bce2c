// A table of a sample database as a table in the code: each column with the function that gives its
// value for a record.
//
//   const std::vector<Field<Menu>> kFields = {
//       {number("sm1_id"), [](const Menu& m) -> Variant { return m.id; }}, …
//   RecordTable<Menu> menus(builder, "Set_Menu1", kFields, {primaryKey("sm1_id")});
//   menus.add(menu);
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "jetcreate/file_builder.h"
#include "values/variant.h"

namespace makeshop {

template <typename Record>
struct Field {
  jetcreate::NewColumn column;
  values::Variant (*value)(const Record& record);
};

template <typename Record>
class RecordTable {
 public:
  RecordTable(jetcreate::FileBuilder& builder, const std::string& name,
              const std::vector<Field<Record>>& fields,
              const std::vector<jetcreate::NewIndex>& indexes, bool wholeAmounts = false)
      : fields_(fields),
        wholeAmounts_(wholeAmounts),
        table_(builder.addTable(name, columns(fields, wholeAmounts), indexes)) {}

  // `lateColumns`: the columns at the end that did not exist yet when the row was written.
  void add(const Record& record, std::size_t lateColumns = 0) {
    std::vector<values::Variant> values;
    values.reserve(fields_.size());
    for (std::size_t i = 0; i + lateColumns < fields_.size(); ++i) {
      values.push_back(fields_[i].value(record));
      const auto* amount = values.back().template as<values::Currency>();
      if (wholeAmounts_ && amount != nullptr) values.back() = values::toLong(values.back());
    }
    table_.add(std::move(values));
  }

 private:
  static std::vector<jetcreate::NewColumn> columns(const std::vector<Field<Record>>& fields,
                                                   bool wholeAmounts) {
    std::vector<jetcreate::NewColumn> columns;
    columns.reserve(fields.size());
    for (const auto& field : fields) {
      columns.push_back(field.column);
      const bool isAmount = field.column.type == jet::ColumnType::kCurrency;
      if (wholeAmounts && isAmount) columns.back().type = jet::ColumnType::kLong;
    }
    return columns;
  }

  const std::vector<Field<Record>>& fields_;  // static storage
  bool wholeAmounts_;                         // Long instead of Currency
  jetcreate::TableBuilder& table_;
};

// Shorthands for columns and indexes.
inline jetcreate::NewColumn column(const char* name, jet::ColumnType type) {
  return {.name = name, .type = type};
}
inline jetcreate::NewColumn number(const char* name) {
  return column(name, jet::ColumnType::kLong);
}
inline jetcreate::NewColumn smallNumber(const char* name) {
  return column(name, jet::ColumnType::kInteger);
}
inline jetcreate::NewColumn money(const char* name) {
  return column(name, jet::ColumnType::kCurrency);
}
inline jetcreate::NewColumn yesNo(const char* name) {
  return column(name, jet::ColumnType::kYesNo);
}
inline jetcreate::NewColumn date(const char* name) {
  return column(name, jet::ColumnType::kDateTime);
}
inline jetcreate::NewColumn text(const char* name, std::uint16_t size) {
  return {.name = name, .type = jet::ColumnType::kText, .size = size, .compressed = true};
}
inline jetcreate::NewColumn memo(const char* name) {
  return {.name = name, .type = jet::ColumnType::kMemo, .compressed = true};
}
inline jetcreate::NewIndex primaryKey(const char* column) {
  return {.name = "PrimaryKey", .columns = {column}, .primary = true};
}
inline jetcreate::NewIndex indexOn(const char* column) {
  return {.name = column, .columns = {column}};
}

// Shorthands for values: the empty text is stored as Null.
inline values::Variant orNull(const std::string& text) {
  return text.empty() ? values::Variant() : values::Variant(text);
}
inline values::Currency won(std::int32_t amount) { return {std::int64_t{amount} * 10000}; }

}  // namespace makeshop
