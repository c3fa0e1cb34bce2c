#include "jet/format/field_codec.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

#include "jet/format/byte_buffer.h"
#include "values/decimal.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::size_t kGuidSize = 16;
constexpr std::size_t kGuidTextSize = 38;
// Where the two digits of each stored byte stand in the text.
constexpr std::array<std::size_t, kGuidSize> kGuidDigits = {7,  5,  3,  1,  12, 10, 17, 15,
                                                            20, 22, 25, 27, 29, 31, 33, 35};
constexpr std::uint8_t kNegative = 0x80;
constexpr int kMaxDigits = 28;  // of a Numeric

[[noreturn]] void overflow() { throw RuntimeError(error::kOverflow, "Overflow"); }

std::uint8_t toByte(const values::Variant& value) {
  const std::int32_t number = toLong(value);
  if (number < 0 || number > 255) overflow();
  return static_cast<std::uint8_t>(number);
}

float toSingle(const values::Variant& value) {
  const double number = toDouble(value);
  if (std::abs(number) > std::numeric_limits<float>::max()) overflow();
  return static_cast<float>(number);
}

// The magnitude with as many decimals as the column has.
values::Uint128 scaledMagnitude(const Column& column, const values::Numeric& numeric) {
  if (numeric.scale > column.scale) return values::rounded(numeric, column.scale).magnitude;
  const values::Uint128 factor = values::powerOfTen(column.scale - numeric.scale);
  if (numeric.magnitude >= values::powerOfTen(kMaxDigits) / factor) overflow();
  return numeric.magnitude * factor;
}

void putNumeric(const Column& column, const values::Numeric& numeric, ByteBuffer& out) {
  const values::Uint128 magnitude = scaledMagnitude(column, numeric);
  if (magnitude >= values::powerOfTen(column.precision)) overflow();
  out.put(numeric.negative ? kNegative : std::uint8_t{0});
  for (int shift = 96; shift >= 0; shift -= 32) {
    out.put(static_cast<std::uint32_t>(magnitude >> shift));
  }
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
      return out.put(toSingle(value));
    case ColumnType::kDouble:
      return out.put(toDouble(value));
    case ColumnType::kDateTime:
      return out.put(toDate(value).serial);
    case ColumnType::kGuid:
      return out.put(guidBytes(toText(value)));
    case ColumnType::kNumeric:
      return putNumeric(column, values::toNumeric(value), out);
    default:
      throw RuntimeError(error::kTypeMismatch, "Type mismatch");
  }
}

}  // namespace

std::vector<std::byte> encodeFixed(const Column& column, const values::Variant& value) {
  ByteBuffer out;
  putFixed(column, value, out);
  return {out.bytes().begin(), out.bytes().end()};
}

std::optional<values::Numeric> decodeNumeric(const Column& column, Bytes stored) {
  if (column.type == ColumnType::kBigInt) {
    const auto value = loadLittle<std::int64_t>(stored, 0);
    return values::Numeric{
        .negative = value < 0, .scale = 0, .magnitude = values::magnitudeOf(value)};
  }
  values::Numeric value{.negative = loadU8(stored, 0) != 0, .scale = column.scale};
  for (std::size_t word = 0; word < 4; ++word) {
    value.magnitude = value.magnitude << 32 | loadU32(stored, 1 + 4 * word);
  }
  if (value.magnitude >= values::powerOfTen(kMaxDigits)) return std::nullopt;
  return value;
}

values::VariantView decodeFixed(const Column& column, Bytes stored) {
  switch (column.type) {
    case ColumnType::kByte:
      return loadU8(stored, 0);
    case ColumnType::kInteger:
      return loadLittle<std::int16_t>(stored, 0);
    case ColumnType::kCurrency:
      return values::Currency{loadLittle<std::int64_t>(stored, 0)};
    case ColumnType::kSingle:
      return loadLittle<float>(stored, 0);
    case ColumnType::kDouble:
      return loadLittle<double>(stored, 0);
    case ColumnType::kDateTime:
      return values::DateTime{loadLittle<double>(stored, 0)};
    default:
      return loadLittle<std::int32_t>(stored, 0);  // Long, Complex
  }
}

std::string guidText(Bytes stored) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text = "{00000000-0000-0000-0000-000000000000}";
  for (std::size_t i = 0; i < kGuidSize; ++i) {
    const std::uint8_t byte = loadU8(stored, i);
    text[kGuidDigits[i]] = kDigits[byte >> 4];
    text[kGuidDigits[i] + 1] = kDigits[byte & 15];
  }
  return text;
}

bool isGuidText(std::string_view text) {
  return text.size() == kGuidTextSize && std::ranges::all_of(kGuidDigits, [text](std::size_t at) {
           return std::isxdigit(static_cast<unsigned char>(text[at])) != 0 &&
                  std::isxdigit(static_cast<unsigned char>(text[at + 1])) != 0;
         });
}

std::vector<std::byte> guidBytes(std::string_view text) {
  if (!isGuidText(text)) {
    throw RuntimeError(error::kTypeMismatch, "'" + std::string(text) + "' is not a GUID");
  }
  std::vector<std::byte> bytes;
  for (const std::size_t place : kGuidDigits) {
    unsigned value = 0;
    std::from_chars(text.data() + place, text.data() + place + 2, value, 16);
    bytes.push_back(static_cast<std::byte>(value));
  }
  return bytes;
}

}  // namespace jet
