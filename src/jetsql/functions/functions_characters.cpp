// Texts made of characters: codes, repetition, conversion. Asc and Chr go by code page 949, AscW
// and ChrW by UTF-16; codes are 16 bits with a sign.
#include <algorithm>
#include <limits>

#include "jetsql/functions/function_tables.h"
#include "text/letter_case.h"
#include "text/utf8.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

constexpr std::int32_t kMaxCode = 0xFFFF;

Variant reverse(Arguments arguments, const Environment&) {
  std::u32string characters = text::toCharacters(TextArgument(arguments[0]).view());
  std::reverse(characters.begin(), characters.end());
  return text::fromCharacters(characters);
}

Variant repeated(std::string_view character, const Variant& count, std::string_view function) {
  const std::int32_t times = toLong(count);
  if (times < 0) throwInvalidCall(function);
  requireTextSize(static_cast<std::size_t>(times) * character.size());
  std::string text;
  text.reserve(static_cast<std::size_t>(times) * character.size());
  for (std::int32_t i = 0; i < times; ++i) text += character;
  return text;
}

Variant space(Arguments arguments, const Environment&) {
  return repeated(" ", arguments[0], "Space");
}

// The character of a code of the code page: one byte, or two as lead * 256 + trail. What is no
// character there gives '?'.
std::string characterOf(std::int32_t code, const Environment& environment) {
  std::string bytes;
  if (code > 0xFF) bytes += static_cast<char>(code >> 8);
  bytes += static_cast<char>(code & 0xFF);
  std::string character = environment.codePage.toUtf8(bytes);
  const bool isOne = text::characterCount(character) == 1;
  std::size_t position = 0;
  return isOne && text::nextCharacter(character, position) != text::kReplacement ? character : "?";
}

std::int32_t codeArgument(const Variant& value, std::string_view function) {
  std::int32_t code = toLong(value);
  if (code < 0) code += kMaxCode + 1;
  if (code < 0 || code > kMaxCode || toLong(value) < std::numeric_limits<std::int16_t>::min()) {
    throwInvalidCall(function);
  }
  return code;
}

// String(count, character): a code of which the lowest 8 bits count, or a text whose first
// character counts.
Variant string(Arguments arguments, const Environment& environment) {
  std::string character;
  if (const auto* text = arguments[1].as<std::string>()) {
    if (text->empty()) throwInvalidCall("String");
    character = text::middle(*text, 0, 1);
  } else {
    character = characterOf(toLong(arguments[1]) & 0xFF, environment);
  }
  return repeated(character, arguments[0], "String");
}

Variant chr(Arguments arguments, const Environment& environment) {
  return characterOf(codeArgument(arguments[0], "Chr"), environment);
}

Variant chrW(Arguments arguments, const Environment&) {
  auto code = static_cast<char32_t>(codeArgument(arguments[0], "ChrW"));
  if (code >= 0xD800 && code < 0xE000) code = text::kReplacement;  // half of a pair
  std::string text;
  text::appendCharacter(text, code);
  return text;
}

std::string_view firstCharacter(std::string_view text, std::string_view function) {
  if (text.empty()) throwInvalidCall(function);
  return text::middle(text, 0, 1);
}

Variant asc(Arguments arguments, const Environment& environment) {
  const TextArgument text(arguments[0]);
  std::int32_t code = 0;
  for (const char byte : environment.codePage.fromUtf8(firstCharacter(text.view(), "Asc"))) {
    code = code * 256 + static_cast<unsigned char>(byte);
  }
  return static_cast<std::int16_t>(code);
}

// Of a character beyond 16 bits the first half of its pair.
Variant ascW(Arguments arguments, const Environment&) {
  const TextArgument text(arguments[0]);
  std::size_t position = 0;
  char32_t code = text::nextCharacter(firstCharacter(text.view(), "AscW"), position);
  if (code >= text::kInvalidByte) code = text::kReplacement;
  if (code > kMaxCode) code = 0xD800 + ((code - 0x10000) >> 10);
  return static_cast<std::int16_t>(code);
}

// A letter after a character that is none becomes a capital, every other a small one.
std::string properCase(std::string_view text) {
  std::u32string characters = text::toCharacters(text::lowerCase(text));
  bool inWord = false;
  for (char32_t& character : characters) {
    const bool isLetter = text::upperCase(character) != text::lowerCase(character) ||
                          character > 0x2E7F || (character >= U'0' && character <= U'9') ||
                          character == U'\'';
    if (!inWord) character = text::upperCase(character);
    inWord = isLetter;
  }
  return text::fromCharacters(characters);
}

// ASCII and the won sign have full-width twins: U+FF01 to U+FF5E, U+3000 and U+FFE6.
char32_t wide(char32_t character) {
  if (character == U' ') return 0x3000;
  if (character == 0x20A9) return 0xFFE6;
  return character > U' ' && character < 0x7F ? character + 0xFEE0 : character;
}

char32_t narrow(char32_t character) {
  if (character == 0x3000) return U' ';
  if (character == 0xFFE6) return 0x20A9;
  return character >= 0xFF01 && character <= 0xFF5E ? character - 0xFEE0 : character;
}

std::string mapped(const std::string& text, char32_t (*map)(char32_t)) {
  std::u32string characters = text::toCharacters(text);
  std::transform(characters.begin(), characters.end(), characters.begin(), map);
  std::string result = text::fromCharacters(characters);
  requireTextSize(result.size());
  return result;
}

// StrConv(text, conversions): 1 upper, 2 lower, 3 proper case, 4 wide, 8 narrow; sums of a case and
// a width. Those to and from the code page's bytes (64, 128) and kana are error 5.
Variant convertText(Arguments arguments, const Environment&) {
  constexpr std::int32_t kCase = 3;
  constexpr std::int32_t kWide = 4;
  constexpr std::int32_t kNarrow = 8;
  const std::int32_t conversions = toLong(arguments[1]);
  const std::int32_t width = conversions & ~kCase;
  if (width != 0 && width != kWide && width != kNarrow) throwInvalidCall("StrConv");
  std::string text = std::string(TextArgument(arguments[0]).view());
  if ((conversions & kCase) == 1) text = text::upperCase(text);
  if ((conversions & kCase) == 2) text = text::lowerCase(text);
  if ((conversions & kCase) == 3) text = properCase(text);
  if (width == kWide) return mapped(text, wide);
  if (width == kNarrow) return mapped(text, narrow);
  return text;
}

constexpr auto kText = fixedType<VariantType::kText>;
constexpr auto kInteger = fixedType<VariantType::kInteger>;

constexpr Function kTable[] = {
    {"StrReverse", 1, 1, kText, reverse}, {"Space", 1, 1, kText, space},
    {"String", 2, 2, kText, string},      {"Chr", 1, 1, kText, chr},
    {"ChrW", 1, 1, kText, chrW},          {"Asc", 1, 1, kInteger, asc},
    {"AscW", 1, 1, kInteger, ascW},       {"StrConv", 2, 3, kText, convertText},
};

}  // namespace

std::span<const Function> characterFunctions() { return kTable; }

}  // namespace jetsql
