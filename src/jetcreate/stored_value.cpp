#include "jetcreate/stored_value.h"

#include <array>
#include <cctype>
#include <charconv>
#include <string>

#include "jet/format/byte_buffer.h"
#include "jetcreate/layout.h"
#include "jetcreate/text_encoder.h"
#include "text/utf16.h"
#include "values/decimal.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::size_t kGuidSize = 16;
constexpr std::uint8_t kNegative = 0x80;

std::uint8_t toByte(const values::Variant& value) {
  const std::int32_t number = toLong(value);
  if (number < 0 || number > 255) throw RuntimeError(error::kOverflow, "Overflow");
  return static_cast<std::uint8_t>(number);
}

// Sign byte, then the magnitude in four groups of four bytes, the highest group first but each with
// its low byte first.
void putNumeric(const Column& column, const values::Variant& value, ByteBuffer& out) {
  const values::Numeric numeric = values::toNumeric(value);
  values::Uint128 magnitude = numeric.magnitude;
  if (numeric.scale <= column.scale) {
    magnitude *= values::powerOfTen(column.scale - numeric.scale);
  } else {
    magnitude =
        values::divideHalvesToEven(magnitude, values::powerOfTen(numeric.scale - column.scale));
  }
  if (magnitude >= values::powerOfTen(column.precision))
    throw RuntimeError(error::kOverflow, "Overflow");
  out.put(numeric.negative ? kNegative : std::uint8_t{0});
  for (int shift = 96; shift >= 0; shift -= 32)
    out.put(static_cast<std::uint32_t>(magnitude >> shift));
}

void putFixed(const Column& column, const values::Variant& value, ByteBuffer& out) {
  switch (column.type) {
    case ColumnType::kByte:
      return out.put(toByte(value));
    case ColumnType::kInteger:
      return out.put(toInteger(value));
    case ColumnType::kLong:
      return out.put(toLong(value));
    case ColumnType::kCurrency:
      return out.put(toCurrency(value).units);
    case ColumnType::kSingle:
      return out.put(static_cast<float>(toDouble(value)));
    case ColumnType::kDouble:
      return out.put(toDouble(value));
    case ColumnType::kDateTime:
      return out.put(toDate(value).serial);
    case ColumnType::kGuid:
      return out.put(guidBytes(toText(value)));
    case ColumnType::kNumeric:
      return putNumeric(column, value, out);
    default:
      throw RuntimeError(error::kTypeMismatch, "Type mismatch");
  }
}

std::vector<std::byte> variableBytes(const Column& column, const values::Variant& value) {
  if (column.type == ColumnType::kText || column.type == ColumnType::kMemo)
    return encodeText(toText(value), column.compressed);
  if (const auto* binary = value.as<values::Binary>()) return binary->bytes;
  throw RuntimeError(error::kTypeMismatch, "Type mismatch");
}

// The conversions know neither table nor column.
[[noreturn]] void rethrowWithPlace(const RuntimeError& fault, const TableDefinition& table,
                                   const Column& column) {
  throw RuntimeError(fault.number(), fault.description() + " (field '" + column.name +
                                         "' of table '" + table.name + "').");
}

void checkLength(const TableDefinition& table, const Column& column, const values::Variant& value,
                 std::size_t stored) {
  if (column.isLongValue()) return;
  const std::size_t length =
      column.type == ColumnType::kText ? text::utf16Length(toText(value)) * 2 : stored;
  if (length > column.length)
    throw RuntimeError(error::kFieldTooSmall, "The field '" + column.name + "' of table '" +
                                                  table.name + "' is too small for " +
                                                  std::to_string(length) + " bytes.");
}

}  // namespace

std::vector<std::byte> guidBytes(const std::string& text) {
  // Places of the 16 bytes in the text, two digits each, in the order in which they are stored.
  static constexpr std::array<std::size_t, kGuidSize> kPlaces = {7,  5,  3,  1,  12, 10, 17, 15,
                                                                 20, 22, 25, 27, 29, 31, 33, 35};
  constexpr std::size_t kTextSize = 38;
  std::vector<std::byte> bytes;
  for (std::size_t place : kPlaces) {
    unsigned value = 0;
    if (text.size() != kTextSize) break;
    const char* digits = text.data() + place;
    if (std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2) break;
    bytes.push_back(static_cast<std::byte>(value));
  }
  if (bytes.size() != kGuidSize)
    throw RuntimeError(error::kTypeMismatch, "'" + text + "' is not a GUID");
  return bytes;
}

std::vector<std::byte> storedFixed(const TableDefinition& table, const Column& column,
                                   const values::Variant& value) {
  ByteBuffer out;
  try {
    putFixed(column, value, out);
  } catch (const RuntimeError& fault) {
    rethrowWithPlace(fault, table, column);
  }
  return {out.bytes().begin(), out.bytes().end()};
}

std::vector<std::byte> storedVariable(const TableDefinition& table, const Column& column,
                                      const values::Variant& value) {
  std::vector<std::byte> bytes;
  try {
    bytes = variableBytes(column, value);
  } catch (const RuntimeError& fault) {
    rethrowWithPlace(fault, table, column);
  }
  checkLength(table, column, value, bytes.size());
  return bytes;
}

}  // namespace jetcreate
