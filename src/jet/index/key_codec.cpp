#include "jet/index/key_codec.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <span>
#include <string_view>
#include <type_traits>

#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::byte kNull{0x00};
constexpr std::byte kValue{0x7f};

constexpr std::size_t kGuidSize = 16;
constexpr std::size_t kBinaryPiece = 8;  // bytes
constexpr std::byte kPieceFollows{9};
constexpr std::size_t kMaxKeyText = 255;  // characters of a text that its key holds

// A signed type has its sign bit inverted in keys.
template <typename T>
constexpr OrdinalType numberType(bool real = false) {
  constexpr std::uint64_t kSignBit = std::is_signed_v<T> ? 1ULL << (8 * sizeof(T) - 1) : 0;
  return {sizeof(T), std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), real, kSignBit};
}

constexpr OrdinalType kYesNoType = {1, -1, 0, false, 0xff};  // Yes, being -1, is 00 and No ff

// The bits of a double or single, read as a signed number, order positive values; negative ones run
// the other way and are complemented below the sign. Its own inverse.
template <typename Int>
Int orderBits(Int bits) {
  return bits < 0 ? static_cast<Int>(bits ^ std::numeric_limits<Int>::max()) : bits;
}

template <typename Int, typename Real>
Ordinal ordinalOfReal(Real value) {
  return orderBits(std::bit_cast<Int>(value == 0 ? Real{0} : value));  // -0.0 is 0.0
}

Ordinal ordinalOf(ColumnType type, const std::optional<Bytes>& field) {
  if (type == ColumnType::kYesNo) return field ? -1 : 0;
  const Bytes bytes = *field;
  switch (type) {
    case ColumnType::kByte:
      return loadU8(bytes, 0);
    case ColumnType::kInteger:
      return loadLittle<std::int16_t>(bytes, 0);
    case ColumnType::kLong:
      return loadLittle<std::int32_t>(bytes, 0);
    case ColumnType::kSingle:
      return ordinalOfReal<std::int32_t>(loadLittle<float>(bytes, 0));
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      return realOrdinal(loadLittle<double>(bytes, 0));
    default:
      return loadLittle<std::int64_t>(bytes, 0);
  }
}

void appendBinary(Bytes bytes, bool ascending, std::vector<std::byte>& key) {
  const auto put = [&](std::byte byte) { key.push_back(ascending ? byte : ~byte); };
  put(kValue);
  do {
    const std::size_t size = std::min(bytes.size(), kBinaryPiece);
    for (std::size_t i = 0; i < kBinaryPiece; ++i) put(i < size ? bytes[i] : std::byte{0});
    bytes = bytes.subspan(size);
    if (bytes.empty()) {
      put(static_cast<std::byte>(size));
    } else {
      key.push_back(kPieceFollows);
    }
  } while (!bytes.empty());
}

// Each digit pair of a GUID's text from the byte that stores it.
std::array<std::byte, kGuidSize> inTextOrder(Bytes guid) {
  constexpr std::array<std::size_t, kGuidSize> kOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                         8, 9, 10, 11, 12, 13, 14, 15};
  std::array<std::byte, kGuidSize> ordered{};
  for (std::size_t i = 0; i < kGuidSize; ++i) ordered[i] = guid[kOrder[i]];
  return ordered;
}

// As a row stores it: a sign byte, then four words, the highest first.
void appendNumeric(Bytes numeric, std::vector<std::byte>& key) {
  const bool negative = numeric[0] != std::byte{0};
  const auto put = [&](std::byte byte) { key.push_back(negative ? ~byte : byte); };
  key.push_back(kValue);
  put(std::byte{0xff});
  for (std::size_t word = 1; word < numeric.size(); word += sizeof(std::uint32_t)) {
    for (std::size_t i = sizeof(std::uint32_t); i-- > 0;) put(numeric[word + i]);
  }
}

void put(std::string_view bytes, std::vector<std::byte>& key) {
  const Bytes added = std::as_bytes(std::span(bytes));
  key.insert(key.end(), added.begin(), added.end());
}

bool appendWeights(const TextWeights& weights, char16_t unit, std::vector<std::byte>& key) {
  const auto putByte = [&](unsigned weight) { key.push_back(static_cast<std::byte>(weight)); };
  const char16_t letter = unit >= u'A' && unit <= u'Z' ? unit - u'A' + u'a' : unit;
  if (letter >= u'a' && letter <= u'z') {
    putByte(weights.letters[letter - u'a']);
  } else if (unit >= u'0' && unit <= u'9') {
    putByte(weights.firstDigit + unsigned{weights.digitStep} * (unit - u'0'));
  } else if (unit == u' ') {
    putByte(weights.blank);
  } else if (unit == u'_') {
    put(weights.underscore, key);
  } else {
    return false;
  }
  return true;
}

// Blanks at the end do not count.
bool appendText(const TextWeights& weights, std::u16string_view text, std::vector<std::byte>& key) {
  text = text.substr(0, text.find_last_not_of(u' ') + 1).substr(0, kMaxKeyText);
  const bool known =
      std::ranges::all_of(text, [&](char16_t u) { return appendWeights(weights, u, key); });
  put(weights.end, key);
  return known;
}

void complementFrom(std::size_t start, std::vector<std::byte>& key) {
  for (std::size_t i = start; i < key.size(); ++i) key[i] = ~key[i];
}

}  // namespace

std::optional<OrdinalType> ordinalType(ColumnType type) {
  switch (type) {
    case ColumnType::kYesNo:
      return kYesNoType;
    case ColumnType::kByte:
      return numberType<std::uint8_t>();
    case ColumnType::kInteger:
      return numberType<std::int16_t>();
    case ColumnType::kLong:
      return numberType<std::int32_t>();
    case ColumnType::kCurrency:
      return numberType<std::int64_t>();
    case ColumnType::kSingle:
      return numberType<std::int32_t>(/*real=*/true);
    case ColumnType::kDouble:
    case ColumnType::kDateTime:
      return numberType<std::int64_t>(/*real=*/true);
    default:
      return std::nullopt;
  }
}

Ordinal realOrdinal(double value) { return ordinalOfReal<std::int64_t>(value); }

double realOf(const OrdinalType& type, Ordinal ordinal) {
  if (type.size == sizeof(float)) {
    return std::bit_cast<float>(orderBits(static_cast<std::int32_t>(ordinal)));
  }
  return std::bit_cast<double>(orderBits(ordinal));
}

void appendOrdinalKey(const OrdinalType& type, bool ascending, Ordinal ordinal,
                      std::vector<std::byte>& key) {
  std::uint64_t bits = static_cast<std::uint64_t>(ordinal) ^ type.inverted;
  if (!ascending) bits = ~bits;
  std::array<std::byte, 1 + sizeof(bits)> bytes = {ascending ? kValue : ~kValue};
  for (std::size_t i = 1; i <= type.size; ++i) {
    bytes[i] = static_cast<std::byte>(bits >> 8 * (type.size - i));
  }
  key.insert(key.end(), bytes.data(), bytes.data() + 1 + type.size);
}

bool hasKeys(ColumnType type, bool ascending) {
  return ordinalType(type) || type == ColumnType::kBinary || type == ColumnType::kGuid ||
         (type == ColumnType::kNumeric && ascending);
}

void appendKey(const Column& column, bool ascending, const std::optional<Bytes>& field,
               std::vector<std::byte>& key) {
  const ColumnType type = column.type;
  const auto ordinals = ordinalType(type);
  if (!field && type != ColumnType::kYesNo) {
    key.push_back(ascending ? kNull : ~kNull);
  } else if (ordinals) {
    appendOrdinalKey(*ordinals, ascending, ordinalOf(type, field), key);
  } else if (!hasKeys(type, ascending)) {
    throw RuntimeError(error::kInvalidArgument, "Field '" + column.name + "' cannot be indexed.");
  } else if (type == ColumnType::kNumeric) {
    appendNumeric(*field, key);
  } else if (type == ColumnType::kGuid) {
    appendBinary(inTextOrder(*field), ascending, key);
  } else {
    appendBinary(*field, ascending, key);
  }
}

bool appendTextKey(const TextWeights& weights, bool ascending,
                   std::optional<std::u16string_view> text, std::vector<std::byte>& key) {
  const std::size_t start = key.size();
  key.push_back(text ? kValue : kNull);
  const bool known = !text || appendText(weights, *text, key);
  if (!known) key.resize(start);
  if (!ascending) complementFrom(start, key);
  return known;
}

}  // namespace jet
