#include "jetsql/functions/format.h"

#include <algorithm>
#include <array>

#include "jetsql/functions/format_patterns.h"
#include "jetsql/functions/text_compare.h"
#include "jetsql/functions/value_types.h"
#include "text/ascii.h"
#include "values/number_text.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

struct NamedForm {
  std::string_view name;
  std::string_view pattern;
};
constexpr std::array<NamedForm, 15> kNamedForms{{
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
    {"On/Off", "\"On\";\"On\";\"Off\""},
    {"Yes/No", "\"Yes\";\"Yes\";\"No\""},
}};

enum class Kind { kNone, kNumber, kDate, kText };

// The kind of the first character that has a meaning, outside quotes and not after a backslash.
Kind kindOf(std::string_view pattern) {
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '"') quoted = !quoted;
    if (c == '\\') ++i;
    if (quoted || c == '\\') continue;
    if (std::string_view("0#%").find(c) != std::string_view::npos) return Kind::kNumber;
    if (std::string_view("dmyhnswqtcDMYHNSWQTC").find(c) != std::string_view::npos) {
      return Kind::kDate;
    }
    if (std::string_view("@&<>!").find(c) != std::string_view::npos) return Kind::kText;
    for (const std::string_view mark : {"am/pm", "ampm", "a/p", "aaa", "oooo"}) {
      if (text::startsWithIgnoringAsciiCase(pattern.substr(i), mark)) return Kind::kDate;
    }
  }
  return Kind::kNone;
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
  for (const NamedForm& form : kNamedForms) {
    if (equalText(form.name, pattern)) return format(value, form.pattern, rule);
  }
  if (equalText(pattern, "General Number") || pattern.empty()) {
    return value.isNull() ? std::string() : toText(value);
  }
  const Kind kind = kindOf(pattern);
  if (value.isNull()) {
    if (kind == Kind::kText && splitSections(pattern).size() > 1) return formatText({}, pattern);
    return kind == Kind::kNumber ? formatNumber(value, pattern) : std::string();
  }
  if (kind == Kind::kText) return formatText(toText(value), pattern);
  const Variant read = readAs(value, kind);
  if (read.type() == VariantType::kText || read.type() == VariantType::kBinary) return toText(read);
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
