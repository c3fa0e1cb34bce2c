#include "report.h"

#include <cstdio>

namespace {

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;  // clang 14 does not deduce it

std::string list(const std::vector<std::string>& texts) {
  std::string json = "[";
  for (const std::string& text : texts) json += (json.size() > 1 ? ", " : "") + jsonQuoted(text);
  return json + "]";
}

std::string json(const Value& value) {
  return std::visit(Overloaded{[](const std::string& text) { return jsonQuoted(text); },
                               [](std::int64_t number) { return std::to_string(number); },
                               [](const std::vector<std::string>& texts) { return list(texts); }},
                    value);
}

std::string lines(const std::vector<std::string>& texts) {
  if (texts.empty()) return "없음\n";
  std::string result = "\n";
  for (const std::string& text : texts) result += "      " + text + "\n";
  return result;
}

std::string plain(const Value& value) {
  return std::visit(
      Overloaded{[](const std::string& text) { return (text.empty() ? "없음" : text) + "\n"; },
                 [](std::int64_t number) { return std::to_string(number) + "\n"; },
                 [](const std::vector<std::string>& texts) { return lines(texts); }},
      value);
}

}  // namespace

std::string jsonQuoted(std::string_view text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      json += '\\';
      json += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      json += escape;
    } else {
      json += c;
    }
  }
  return json + "\"";
}

std::string reportText(const Report& report) {
  std::string text;
  for (const Section& section : report.sections) {
    text += "[" + std::string(section.title) + "]\n";
    for (const Item& item : section.items) {
      text += "  " + std::string(item.label) + ": " + plain(item.value);
    }
  }
  text += report.problems.empty() ? "[확인할 것] 없음\n" : "[확인할 것]\n";
  for (const std::string& problem : report.problems) text += "  ! " + problem + "\n";
  return text;
}

std::string reportJson(const Report& report) {
  std::string text = "{\n";
  for (const Section& section : report.sections) {
    text += "  " + jsonQuoted(section.key) + ": {";
    for (const Item& item : section.items) {
      text += (&item == section.items.data() ? "" : ", ") + jsonQuoted(item.key) + ": " +
              json(item.value);
    }
    text += "},\n";
  }
  return text + "  \"problems\": " + list(report.problems) + "\n}\n";
}
