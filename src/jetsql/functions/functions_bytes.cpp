// The functions of texts that count bytes: a text is its UTF-16 units, the low byte of each first.
// Half of a unit at the end of a result is dropped.
#include <algorithm>
#include <limits>

#include "jetsql/functions/function_tables.h"
#include "text/letter_case.h"
#include "text/utf16.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

std::string utf16Bytes(std::string_view text) {
  std::string bytes;
  for (const char16_t unit : text::toUtf16(text)) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

std::string bytesOf(const Variant& value) { return utf16Bytes(TextArgument(value).view()); }

Variant fromBytes(std::string_view bytes) {
  std::u16string units;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    units += static_cast<char16_t>(low | high << 8);
  }
  return text::toUtf8(units);
}

Variant lengthInBytes(Arguments arguments, const Environment&) {
  return static_cast<std::int32_t>(bytesOf(arguments[0]).size());
}

Variant leftBytes(Arguments arguments, const Environment&) {
  return fromBytes(bytesOf(arguments[0]).substr(0, countArgument(arguments, 1, "LeftB")));
}

Variant rightBytes(Arguments arguments, const Environment&) {
  const std::string bytes = bytesOf(arguments[0]);
  const std::size_t count = countArgument(arguments, 1, "RightB");
  return fromBytes(bytes.substr(bytes.size() - std::min(bytes.size(), count)));
}

// MidB(text, start [, count])
Variant middleBytes(Arguments arguments, const Environment&) {
  const std::string bytes = bytesOf(arguments[0]);
  const std::size_t start = countArgument(arguments, 1, "MidB", 1) - 1;
  return fromBytes(
      bytes.substr(std::min(start, bytes.size()), countArgument(arguments, 2, "MidB")));
}

// InStrB([start,] text, part [, comparison]): without regard to case unless the comparison is 0.
Variant findBytes(Arguments arguments, const Environment&) {
  const bool withStart = arguments.size() > 2;
  const std::size_t start = withStart ? countArgument(arguments, 0, "InStrB", 1) : 1;
  const std::size_t first = withStart ? 1 : 0;
  const auto comparable = [&](const Variant& value) {
    const TextArgument text(value);
    const bool exact = longArgument(arguments, 3, 1) == 0;
    return utf16Bytes(exact ? std::string(text.view()) : text::lowerCase(text.view()));
  };
  const std::string bytes = comparable(arguments[first]);
  const std::size_t found = bytes.find(comparable(arguments[first + 1]), start - 1);
  const bool isThere = found != std::string::npos && !bytes.empty();
  return isThere ? static_cast<std::int32_t>(found + 1) : 0;
}

Variant firstByte(Arguments arguments, const Environment&) {
  const std::string bytes = bytesOf(arguments[0]);
  if (bytes.empty()) throwInvalidCall("AscB");
  return static_cast<std::uint8_t>(bytes.front());
}

constexpr auto kText = fixedType<VariantType::kText>;
constexpr auto kLong = fixedType<VariantType::kLong>;

constexpr Function kTable[] = {
    {"LenB", 1, 1, kLong, lengthInBytes}, {"LeftB", 2, 2, kText, leftBytes},
    {"RightB", 2, 2, kText, rightBytes},  {"MidB", 2, 3, kText, middleBytes},
    {"InStrB", 2, 4, kLong, findBytes},   {"AscB", 1, 1, fixedType<VariantType::kByte>, firstByte},
};

}  // namespace

std::span<const Function> byteFunctions() { return kTable; }

}  // namespace jetsql
