// A page of findings about a shop, for a person or, as JSON, for a program.
//
//   Report report;
//   report.sections.push_back({"waiting", "전송 대기", {{"files", "파일", std::int64_t{3}}}});
//   report.problems.push_back("전송 대기: …");        // what needs a person
//   std::cout << reportText(report);
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

using Value = std::variant<std::string, std::int64_t, std::vector<std::string>>;

struct Item {
  std::string_view key;  // in JSON
  std::string_view label;
  Value value;
};

struct Section {
  std::string_view key;
  std::string_view title;
  std::vector<Item> items;
};

struct Report {
  std::vector<Section> sections;
  std::vector<std::string> problems;
};

[[nodiscard]] std::string reportText(const Report& report);

// An object of the sections, each an object of its items, and "problems", a list of texts.
[[nodiscard]] std::string reportJson(const Report& report);

// A text as JSON, with its quotes.
[[nodiscard]] std::string jsonQuoted(std::string_view text);
