// How Jet values travel in SQLite. Every expression has one static Jet type; the SQLite value
// alone does not tell it:
//   Null NULL · Yes/No INTEGER -1 or 0 · Byte, Integer, Long INTEGER · Currency INTEGER of
//   ten-thousandths · Single, Double REAL · DateTime REAL serial · Text TEXT in UTF-8 ·
//   Binary BLOB · Numeric BLOB (numeric_encoding.h)
// so that SQLite's own comparison, ordering and grouping hold for all of them.
#pragma once

#include <cstdint>
#include <string_view>

#include "values/variant.h"

struct sqlite3_context;
struct sqlite3_stmt;
struct sqlite3_value;

namespace jetsql {

// A value as SQLite holds it. `bytes` point into where they were read.
struct EncodedValue {
  enum class Kind : unsigned char { kNull, kWhole, kReal, kText, kBlob } kind = Kind::kNull;
  std::int64_t whole = 0;
  double real = 0;
  std::string_view bytes;

  [[nodiscard]] bool isNumber() const { return kind == Kind::kWhole || kind == Kind::kReal; }
  // Of a number.
  [[nodiscard]] double number() const {
    return kind == Kind::kReal ? real : static_cast<double>(whole);
  }
};

[[nodiscard]] EncodedValue encodedValue(sqlite3_value* value);
// Of the statement's current row; the bytes last until its next step.
[[nodiscard]] EncodedValue encodedColumn(sqlite3_stmt* statement, int column);

// Of a value that is neither Numeric nor binary; a text's bytes are those of the value itself.
[[nodiscard]] EncodedValue encodedValue(const values::Variant& value);

// Raises the error that a value is (deferred_error.h). A whole number outside the range of the type
// is one of a wider type; error 6 for a Currency out of range.
[[nodiscard]] values::Variant decode(const EncodedValue& value, values::VariantType type);
// The same without a copy of a text or a binary.
[[nodiscard]] values::VariantView decodeView(const EncodedValue& value, values::VariantType type);
[[nodiscard]] values::Variant decode(sqlite3_value* value, values::VariantType type);

// The value keeps its own type's encoding.
void setResult(sqlite3_context* context, const values::Variant& value);
void bind(sqlite3_stmt* statement, int index, const values::Variant& value);  // index from 1

}  // namespace jetsql
