// Fields of fixed size as a row stores them, to values and back. For every type of column but
// Yes/No, which is a bit of the row's null mask, and text, binary and long values, whose size
// varies.
//
//   const auto bytes = encodeFixed(column, Variant(12.5));      // a Currency: 8 bytes
//   const VariantView price = decodeFixed(column, bytes);
//
// Whole numbers, Currency (ten-thousandths) and reals stand low byte first; a date is a double,
// days since 1899-12-30. A Numeric is a sign byte (80h: negative) and four 32-bit words, the
// highest first. A GUID is a 32-bit number, two 16-bit numbers and eight bytes. Errors of encoding:
// 6 a value beyond the column's range, 13 and 94 one that cannot be converted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/table_definition.h"
#include "values/variant.h"

namespace jet {

// A field as stored; none for Null. A Yes/No has no bytes for Yes and is none for No.
using StoredField = std::optional<std::vector<std::byte>>;

// Converts `value`, which is not Null, to the column's type. Error 13 for a type not named above.
[[nodiscard]] std::vector<std::byte> encodeFixed(const Column& column,
                                                 const values::Variant& value);

// The decoders take fixedSize(type) bytes; who reads a file has compared the sizes.

// Byte, Integer, Long, Complex, Currency, Single, Double, DateTime.
[[nodiscard]] values::VariantView decodeFixed(const Column& column, Bytes stored);

// Byte, Integer, Long, Complex, Currency (in ten-thousandths), BigInt.
[[nodiscard]] inline std::int64_t decodeWhole(ColumnType type, Bytes stored) {
  switch (type) {
    case ColumnType::kByte:
      return loadU8(stored, 0);
    case ColumnType::kInteger:
      return loadLittle<std::int16_t>(stored, 0);
    case ColumnType::kCurrency:
    case ColumnType::kBigInt:
      return loadLittle<std::int64_t>(stored, 0);
    default:
      return loadLittle<std::int32_t>(stored, 0);
  }
}
// Single, Double, DateTime (days since 1899-12-30).
[[nodiscard]] inline double decodeReal(ColumnType type, Bytes stored) {
  return type == ColumnType::kSingle ? loadLittle<float>(stored, 0) : loadLittle<double>(stored, 0);
}
// Numeric and BigInt; nothing for a magnitude of more than 28 digits.
[[nodiscard]] std::optional<values::Numeric> decodeNumeric(const Column& column, Bytes stored);

// "{00112233-4455-6677-8899-AABBCCDDEEFF}" of 16 bytes.
[[nodiscard]] std::string guidText(Bytes stored);
// Whether it has the length of such a text and digits in their places.
[[nodiscard]] bool isGuidText(std::string_view text);
// Error 13 for a text of another form.
[[nodiscard]] std::vector<std::byte> guidBytes(std::string_view text);

}  // namespace jet
