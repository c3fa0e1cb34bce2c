#include <algorithm>
#include <limits>

#include "jetsql/functions/function_tables.h"
#include "jetsql/functions/text_compare.h"
#include "text/letter_case.h"
#include "text/utf8.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

constexpr std::int32_t kBinaryCompare = 0;
constexpr std::int32_t kTextCompare = 1;

Variant left(Arguments arguments, const Environment&) {
  const TextArgument text(arguments[0]);
  return std::string(text::middle(text.view(), 0, countArgument(arguments, 1, "Left")));
}

Variant right(Arguments arguments, const Environment&) {
  const TextArgument text(arguments[0]);
  const std::size_t wanted = countArgument(arguments, 1, "Right");
  const std::size_t length = text::characterCount(text.view());
  return std::string(
      text.view().substr(text::offsetOfCharacter(text.view(), length - std::min(length, wanted))));
}

Variant mid(Arguments arguments, const Environment&) {
  const TextArgument text(arguments[0]);
  const std::size_t start = countArgument(arguments, 1, "Mid", 1);
  return std::string(text::middle(text.view(), start - 1, countArgument(arguments, 2, "Mid")));
}

Variant length(Arguments arguments, const Environment&) {
  return static_cast<std::int32_t>(text::characterCount(TextArgument(arguments[0]).view()));
}

std::string_view withoutLeading(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view withoutTrailing(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

Variant trim(Arguments arguments, const Environment&) {
  return std::string(withoutLeading(withoutTrailing(TextArgument(arguments[0]).view())));
}

Variant trimLeft(Arguments arguments, const Environment&) {
  return std::string(withoutLeading(TextArgument(arguments[0]).view()));
}

Variant trimRight(Arguments arguments, const Environment&) {
  return std::string(withoutTrailing(TextArgument(arguments[0]).view()));
}

Variant toUpper(Arguments arguments, const Environment&) {
  return text::upperCase(TextArgument(arguments[0]).view());
}

Variant toLower(Arguments arguments, const Environment&) {
  return text::lowerCase(TextArgument(arguments[0]).view());
}

// Characters to compare with: as they are, or with their case folded. A comparison that is not
// given is that of the database, which ignores case.
std::u32string comparable(std::string_view text, std::int32_t comparison) {
  return comparison == kBinaryCompare ? text::toCharacters(text)
                                      : text::toCharacters(text::lowerCase(text));
}

// InStr([start,] text, part [, comparison]): with three arguments the first is the start.
Variant inStr(Arguments arguments, const Environment&) {
  const bool withStart = arguments.size() > 2;
  const std::size_t start = withStart ? countArgument(arguments, 0, "InStr", 1) : 1;
  const std::size_t first = withStart ? 1 : 0;
  const std::int32_t comparison = longArgument(arguments, 3, kTextCompare);
  const std::u32string text = comparable(TextArgument(arguments[first]).view(), comparison);
  const std::u32string part = comparable(TextArgument(arguments[first + 1]).view(), comparison);
  if (text.empty() || start > text.size()) return 0;
  const std::size_t found = text.find(part, start - 1);
  return found == std::u32string::npos ? 0 : static_cast<std::int32_t>(found + 1);
}

// InStrRev(text, part [, start [, comparison]]): the last one that ends at or before the start.
Variant inStrRev(Arguments arguments, const Environment&) {
  const std::int32_t comparison = longArgument(arguments, 3, kTextCompare);
  const std::u32string text = comparable(TextArgument(arguments[0]).view(), comparison);
  const std::u32string part = comparable(TextArgument(arguments[1]).view(), comparison);
  const std::int32_t start = longArgument(arguments, 2, -1);
  if (start == 0 || start < -1) throwInvalidCall("InStrRev");
  const std::size_t end = start == -1 ? text.size() : static_cast<std::size_t>(start);
  if (text.empty() || end > text.size() || part.size() > end) return 0;
  const std::size_t found = text.rfind(part, end - part.size());
  return found == std::u32string::npos ? 0 : static_cast<std::int32_t>(found + 1);
}

// Replace(text, find, by [, start [, count [, comparison]]]): the text before the start is cut off.
// Error 94 where the text is Null.
Variant replace(Arguments arguments, const Environment&) {
  for (const Variant& argument : arguments) {
    if (argument.isNull()) throw RuntimeError(error::kInvalidUseOfNull, "Invalid use of Null.");
  }
  const TextArgument source(arguments[0]);
  const std::int32_t comparison = longArgument(arguments, 5, kBinaryCompare);
  const std::size_t start = arguments.size() > 3 ? countArgument(arguments, 3, "Replace", 1) : 1;
  std::int32_t count = longArgument(arguments, 4, -1);
  const std::u32string text =
      text::toCharacters(source.view().substr(text::offsetOfCharacter(source.view(), start - 1)));
  const std::u32string searched = comparable(text::fromCharacters(text), comparison);
  const std::u32string part = comparable(TextArgument(arguments[1]).view(), comparison);
  const TextArgument by(arguments[2]);
  if (part.empty()) return text::fromCharacters(text);
  const std::u32string_view characters = text;
  std::string result;
  std::size_t position = 0;
  for (; count != 0; --count) {
    const std::size_t found = searched.find(part, position);
    if (found == std::u32string::npos) break;
    result += text::fromCharacters(characters.substr(position, found - position));
    result += by.view();
    requireTextSize(result.size());
    position = found + part.size();
  }
  return result + text::fromCharacters(characters.substr(position));
}

Variant compare(Arguments arguments, const Environment&) {
  const TextArgument left(arguments[0]);
  const TextArgument right(arguments[1]);
  const int order = longArgument(arguments, 2, kTextCompare) == kBinaryCompare
                        ? left.view().compare(right.view())
                        : compareText(left.view(), right.view());
  return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

constexpr auto kText = fixedType<VariantType::kText>;
constexpr auto kLong = fixedType<VariantType::kLong>;
constexpr auto kInteger = fixedType<VariantType::kInteger>;

constexpr Function kTable[] = {
    {"Left", 2, 2, kText, left},
    {"Right", 2, 2, kText, right},
    {"Mid", 2, 3, kText, mid},
    {"Len", 1, 1, kLong, length},
    {"Trim", 1, 1, kText, trim},
    {"LTrim", 1, 1, kText, trimLeft},
    {"RTrim", 1, 1, kText, trimRight},
    {"UCase", 1, 1, kText, toUpper},
    {"LCase", 1, 1, kText, toLower},
    {"InStr", 2, 4, kLong, inStr},
    {"InStrRev", 2, 4, kLong, inStrRev},
    {"Replace", 3, 6, kText, replace, true},
    {"StrComp", 2, 3, kInteger, compare},
};

}  // namespace

std::span<const Function> textFunctions() { return kTable; }

}  // namespace jetsql
