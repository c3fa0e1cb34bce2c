#include "jetcreate/entry_key.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "jetcreate/layout.h"
#include "jetcreate/stored_value.h"
#include "jetcreate/text_encoder.h"
#include "text/utf16.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::byte kNullKey{0x00};
constexpr std::byte kValueKey{0x7F};
constexpr std::byte kEndOfText{0x01};

// Weights of the letters, in alphabetical order; a capital letter has the small one's.
constexpr std::array<std::uint8_t, 26> kLetterWeights = {
    0x4a, 0x4c, 0x4d, 0x4f, 0x51, 0x53, 0x55, 0x57, 0x59, 0x5b, 0x5c, 0x5e, 0x60,
    0x62, 0x64, 0x66, 0x68, 0x69, 0x6b, 0x6d, 0x6f, 0x71, 0x73, 0x75, 0x76, 0x78};
constexpr std::uint8_t kFirstDigitWeight = 0x36;  // each digit two more than the one before
constexpr std::uint8_t kBlankWeight = 0x07;
constexpr std::uint16_t kUnderscoreWeights = 0x2b03;

template <typename T>
void putHighFirst(T value, std::vector<std::byte>& key) {
  for (int shift = static_cast<int>(sizeof(T)) * 8 - 8; shift >= 0; shift -= 8)
    key.push_back(static_cast<std::byte>(value >> shift));
}

template <typename T>
void putSigned(T value, std::vector<std::byte>& key) {
  using Unsigned = std::make_unsigned_t<T>;
  constexpr Unsigned kSign = Unsigned{1} << (sizeof(T) * 8 - 1);
  putHighFirst(static_cast<Unsigned>(static_cast<Unsigned>(value) ^ kSign), key);
}

// Of a negative number every bit is turned, so that the larger magnitude comes first.
template <typename Unsigned, typename Real>
void putReal(Real value, std::vector<std::byte>& key) {
  constexpr Unsigned kSign = Unsigned{1} << (sizeof(Unsigned) * 8 - 1);
  const auto bits = std::bit_cast<Unsigned>(value == 0 ? Real{0} : value);  // -0 is 0
  putHighFirst(static_cast<Unsigned>((bits & kSign) != 0 ? ~bits : bits | kSign), key);
}

// Pieces of eight bytes, each followed by 9 when another piece follows, else by its length.
void putBinary(Bytes bytes, std::vector<std::byte>& key) {
  constexpr std::size_t kPiece = 8;
  do {
    const std::size_t size = std::min(bytes.size(), kPiece);
    key.insert(key.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    key.resize(key.size() + kPiece - size);
    bytes = bytes.subspan(size);
    key.push_back(static_cast<std::byte>(bytes.empty() ? size : kPiece + 1));
  } while (!bytes.empty());
}

bool putCharacter(char16_t unit, std::vector<std::byte>& key) {
  const char16_t letter = unit >= u'A' && unit <= u'Z' ? unit - u'A' + u'a' : unit;
  if (letter >= u'a' && letter <= u'z')
    putHighFirst(kLetterWeights[letter - u'a'], key);
  else if (unit >= u'0' && unit <= u'9')
    putHighFirst(static_cast<std::uint8_t>(kFirstDigitWeight + 2 * (unit - u'0')), key);
  else if (unit == u' ')
    putHighFirst(kBlankWeight, key);
  else if (unit == u'_')
    putHighFirst(kUnderscoreWeights, key);
  else
    return false;
  return true;
}

void putText(const TableDefinition& table, const Column& column, const std::string& text,
             std::vector<std::byte>& key) {
  std::u16string units = text::toUtf16(text);
  while (!units.empty() && units.back() == u' ') units.pop_back();
  units.resize(std::min(units.size(), kMaxTextLength));
  for (char16_t unit : units) {
    if (!putCharacter(unit, key))
      throw RuntimeError(error::kInvalidArgument, "The text '" + text + "' of field '" +
                                                      column.name + "' of table '" + table.name +
                                                      "' has no place in an index here.");
  }
  key.push_back(kEndOfText);
  key.push_back(std::byte{0});
}

void putValue(const TableDefinition& table, const Column& column, const values::Variant& value,
              std::vector<std::byte>& key) {
  switch (column.type) {
    case ColumnType::kYesNo:
      return putHighFirst(toBool(value) ? std::uint8_t{0} : std::uint8_t{0xFF}, key);
    case ColumnType::kByte:
      return putHighFirst(static_cast<std::uint8_t>(toLong(value)), key);
    case ColumnType::kInteger:
      return putSigned(toInteger(value), key);
    case ColumnType::kLong:
      return putSigned(toLong(value), key);
    case ColumnType::kCurrency:
      return putSigned(toCurrency(value).units, key);
    case ColumnType::kSingle:
      return putReal<std::uint32_t>(static_cast<float>(toDouble(value)), key);
    case ColumnType::kDouble:
      return putReal<std::uint64_t>(toDouble(value), key);
    case ColumnType::kDateTime:
      return putReal<std::uint64_t>(toDate(value).serial, key);
    case ColumnType::kBinary:
    case ColumnType::kGuid:
      return putBinary(
          column.fixed ? storedFixed(table, column, value) : storedVariable(table, column, value),
          key);
    case ColumnType::kText:
      return putText(table, column, toText(value), key);
    default:
      throw RuntimeError(error::kInvalidArgument, "Field '" + column.name + "' of table '" +
                                                      table.name + "' cannot be indexed.");
  }
}

}  // namespace

void appendKey(const TableDefinition& table, const Column& column, bool ascending,
               const values::Variant& value, std::vector<std::byte>& key) {
  const auto start = static_cast<std::ptrdiff_t>(key.size());
  const bool isNull = value.isNull() && column.type != ColumnType::kYesNo;
  key.push_back(isNull ? kNullKey : kValueKey);
  if (!isNull) putValue(table, column, value.isNull() ? values::Variant(false) : value, key);
  if (ascending) return;
  for (auto byte = key.begin() + start; byte != key.end(); ++byte) *byte = ~*byte;
}

}  // namespace jetcreate
