#include "report_lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace {

using jetsql::QueryReport;

// 1,234,567
std::string grouped(std::size_t number) {
  std::string text = std::to_string(number);
  for (std::size_t place = text.size(); place > 3;) {
    place -= 3;
    text.insert(place, 1, ',');
  }
  return text;
}

std::string counted(std::size_t number, const std::string& what) {
  return grouped(number) + " " + what + (number == 1 ? "" : "s");
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

std::string readText(const QueryReport::TableRead& read) {
  const auto expected = static_cast<std::size_t>(std::llround(read.estimatedRows));
  return counted(read.lookups, "time") + ", " + counted(read.rows, "row") + " (expected " +
         grouped(expected) + (read.lookups > 1 ? " each), " : "), ") + milliseconds(read.time);
}

std::string buildText(const QueryReport::IndexBuild& build) {
  return build.table + ": index built in memory, " + build.key + ": " + counted(build.rows, "row") +
         ", " + milliseconds(build.time);
}

}  // namespace

std::string milliseconds(QueryReport::Duration time) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f ms",
                std::chrono::duration<double, std::milli>(time).count());
  return text.data();
}

std::vector<std::string> reportLines(const QueryReport& report) {
  std::size_t tableWidth = 0;
  std::size_t accessWidth = 0;
  for (const auto& read : report.reads) {
    tableWidth = std::max(tableWidth, read.table.size());
    accessWidth = std::max(accessWidth, read.access.size());
  }
  std::vector<std::string> lines;
  for (const auto& read : report.reads) {
    lines.push_back(padded(read.table, tableWidth) + "  " + padded(read.access, accessWidth) +
                    "  " + readText(read));
  }
  for (const auto& build : report.builds) lines.push_back(buildText(build));
  lines.insert(lines.end(), report.notes.begin(), report.notes.end());
  lines.push_back(counted(report.rows, "row") + "; " + milliseconds(report.translating) +
                  " to understand the query, " + milliseconds(report.planning) + " to plan it, " +
                  milliseconds(report.running) + " to run it");
  return lines;
}
