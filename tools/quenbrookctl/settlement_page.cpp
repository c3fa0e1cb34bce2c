#include "settlement_page.h"

#include <string_view>

namespace {

using lib_결산::FigureInfo;

constexpr std::string_view kHtmlHead = R"(<!DOCTYPE html>
<html lang="ko"><head><meta charset="utf-8"><title>일일 결산</title><style>
body { font-family: sans-serif; font-size: 10pt; margin: 2em; }
section { break-after: page; }
table { border-collapse: collapse; width: 100%; }
th, td { border-bottom: 1px solid #bbb; padding: 1px 6px; text-align: left; }
td.label { white-space: nowrap; }
td.value { text-align: right; font-variant-numeric: tabular-nums; }
td.column, td.source { color: #555; font-size: 8pt; }
p.failure { color: #b00; font-weight: bold; }
@page { size: A4; margin: 12mm; }
@media print {
  body { margin: 0; font-size: 9pt; }
  h1 { margin: 0 0 2mm; font-size: 13pt; }
  td.column, td.source { font-size: 7pt; }
}
</style></head><body>
)";

std::string failureText(const lib_결산::DayFailure& failure) {
  return std::to_string(failure.step) + "단계에서 멈추었습니다: (" +
         std::to_string(failure.number) + ") " + failure.description +
         ". 구하지 못한 숫자는 0입니다.";
}

// 1234567 as 1,234,567.
std::string grouped(std::int32_t value) {
  std::string text = std::to_string(value);
  const std::size_t digits = value < 0 ? 1 : 0;
  for (std::size_t at = text.size(); at > digits + 3;) text.insert(at -= 3, ",");
  return text;
}

std::string csvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string escaped(std::string_view text) {
  std::string html;
  for (const char c : text) {
    if (c == '&') {
      html += "&amp;";
    } else if (c == '<') {
      html += "&lt;";
    } else {
      html += c;
    }
  }
  return html;
}

std::string cell(std::string_view kind, std::string_view text) {
  return "<td class=\"" + std::string(kind) + "\">" + escaped(text) + "</td>";
}

}  // namespace

std::string settlementText(const std::vector<SettledDay>& days) {
  std::string text;
  for (const SettledDay& day : days) {
    text += values::dayText(day.day) + "\n";
    if (day.settlement.failure) text += "  " + failureText(*day.settlement.failure) + "\n";
    for (const FigureInfo& figure : lib_결산::figures()) {
      text.append("  ").append(figure.label).append("\t").append(figure.column).append("\t");
      text += grouped(day.settlement[figure.figure]) + "\t";
      text.append(figure.source).append("\n");
    }
  }
  return text;
}

std::string settlementCsv(const std::vector<SettledDay>& days) {
  std::string csv = "\xEF\xBB\xBF일자,항목,열,값,출처\r\n";
  for (const SettledDay& day : days) {
    const std::string dayText = values::dayText(day.day);
    for (const FigureInfo& figure : lib_결산::figures()) {
      csv += dayText + "," + csvField(figure.label) + "," + csvField(figure.column) + "," +
             std::to_string(day.settlement[figure.figure]) + "," + csvField(figure.source) + "\r\n";
    }
    if (day.settlement.failure) {
      csv += dayText + ",실패,,," + csvField(failureText(*day.settlement.failure)) + "\r\n";
    }
  }
  return csv;
}

std::string settlementHtml(const std::vector<SettledDay>& days, const std::string& tradeName) {
  std::string html(kHtmlHead);
  for (const SettledDay& day : days) {
    html +=
        "<section><h1>" + escaped(tradeName) + " 일일 결산 " + values::dayText(day.day) + "</h1>\n";
    if (day.settlement.failure) {
      html += "<p class=\"failure\">" + escaped(failureText(*day.settlement.failure)) + "</p>\n";
    }
    html += "<table><tr><th>항목</th><th>값</th><th>열</th><th>출처</th></tr>\n";
    for (const FigureInfo& figure : lib_결산::figures()) {
      html += "<tr>" + cell("label", figure.label) +
              cell("value", grouped(day.settlement[figure.figure])) +
              cell("column", figure.column) + cell("source", figure.source) + "</tr>\n";
    }
    html += "</table></section>\n";
  }
  return html + "</body></html>\n";
}
