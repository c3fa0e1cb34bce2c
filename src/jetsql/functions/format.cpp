#include "jetsql/functions/format.h"

#include <algorithm>
#include <array>

#include "jetsql/functions/format_patterns.h"
#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "text/letter_case.h"
#include "text/utf8.h"
#include "values/number_text.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

struct NamedForm {
  std::string_view name;
  std::string_view pattern;
};
constexpr std::array<NamedForm, 14> kNamedForms{{
    {"General Date", "c"},
    {"Long Date", "dddddd"},
    {"Medium Date", "yy-mm-dd"},
    {"Short Date", "ddddd"},
    {"Long Time", "ttttt"},
    {"Medium Time", "AMPM hh:nn"},
    {"Short Time", "hh:nn"},
    {"Currency", "\\₩#,##0;-\\₩#,##0"},
    {"Fixed", "0.00"},
    {"Standard", "#,##0.00"},
    {"Percent", "0.00%"},
    {"Scientific", "0.00E+00"},
    {"True/False", "\"True\";\"True\";\"False\""},
    {"Yes/No", "\"Yes\";\"Yes\";\"No\""},
}};

enum class Kind { kNone, kNumber, kDate, kText };

// The kind of the first character that has a meaning, outside quotes and behind no backslash.
Kind kindOf(std::string_view pattern) {
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '"') quoted = !quoted;
    if (c == '\\') ++i;
    if (quoted || c == '\\') continue;
    if (std::string_view("0#%").find(c) != std::string_view::npos) return Kind::kNumber;
    if (std::string_view("dmyhnswqtcDMYHNSWQTC").find(c) != std::string_view::npos)
      return Kind::kDate;
    if (std::string_view("@&<>!").find(c) != std::string_view::npos) return Kind::kText;
    if ((c == 'A' || c == 'a') && i + 1 < pattern.size() &&
        (pattern[i + 1] == '/' || pattern[i + 1] == 'M' || pattern[i + 1] == 'm'))
      return Kind::kDate;
  }
  return Kind::kNone;
}

std::string_view firstSection(std::string_view pattern) {
  return pattern.substr(0, pattern.find(';'));
}

// @ a character or a blank, & a character or nothing, < > case, ! fills from the left. Characters
// are placed from the right; more of them than places go before the first place.
std::string formatText(std::string_view text, std::string_view pattern) {
  std::u32string characters = text::toCharacters(text);
  if (pattern.find('<') != std::string_view::npos)
    characters = text::toCharacters(text::lowerCase(text));
  if (pattern.find('>') != std::string_view::npos)
    characters = text::toCharacters(text::upperCase(text));
  const auto places = static_cast<std::size_t>(
      std::count_if(pattern.begin(), pattern.end(), [](char c) { return c == '@' || c == '&'; }));
  if (places == 0) return text::fromCharacters(characters);
  const bool fromLeft = pattern.find('!') != std::string_view::npos;
  const std::size_t missing = places - std::min(places, characters.size());
  const std::size_t excess = characters.size() - std::min(places, characters.size());
  std::u32string result;
  std::size_t next = 0;
  std::size_t place = 0;
  for (const char32_t c : text::toCharacters(pattern)) {
    if (c == U'<' || c == U'>' || c == U'!') continue;
    if (c != U'@' && c != U'&') {
      result += c;
      continue;
    }
    if (place == 0 && excess > 0 && !fromLeft) {
      result += characters.substr(0, excess);
      next = excess;
    }
    const bool empty = fromLeft ? next >= characters.size() : place < missing;
    if (!empty)
      result += characters[next++];
    else if (c == U'@')
      result += U' ';
    ++place;
  }
  return text::fromCharacters(result + characters.substr(std::min(next, characters.size())));
}

// A text that reads as a number or a date takes part in patterns for those.
Variant readAs(const Variant& value, Kind kind) {
  const auto* text = value.as<std::string>();
  if (text == nullptr) return value;
  if (kind == Kind::kDate) {
    if (const auto date = values::parseDate(*text)) return *date;
  }
  if (kind == Kind::kDate || kind == Kind::kNumber) {
    if (const auto number = values::parseNumber(*text)) return *number;
  }
  return value;
}

}  // namespace

std::string format(const Variant& value, std::string_view pattern, const WeekRule& rule) {
  for (const NamedForm& form : kNamedForms)
    if (equalText(form.name, pattern)) return format(value, form.pattern, rule);
  if (equalText(pattern, "General Number") || pattern.empty())
    return value.isNull() ? std::string() : toText(value);
  const Kind kind = kindOf(pattern);
  if (value.isNull()) return kind == Kind::kNumber ? formatNumber(value, pattern) : std::string();
  const Variant read = readAs(value, kind);
  if (kind == Kind::kText || read.type() == VariantType::kText ||
      read.type() == VariantType::kBinary)
    return kind == Kind::kText ? formatText(toText(read), firstSection(pattern)) : toText(read);
  if (kind == Kind::kDate) return formatDate(toDate(read), pattern, rule);
  return formatNumber(read, pattern);
}

std::string monthName(int month, bool abbreviated) {
  return std::to_string(month) + (abbreviated ? "" : "월");
}

std::string weekdayName(int day, bool abbreviated) {
  constexpr std::array<std::string_view, 7> kNames{"일", "월", "화", "수", "목", "금", "토"};
  return std::string(kNames[static_cast<std::size_t>(day - 1)]) + (abbreviated ? "" : "요일");
}

}  // namespace jetsql
