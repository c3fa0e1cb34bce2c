#include "jetsql/syntax/query_template.h"

#include "values/runtime_error.h"

namespace jetsql {
namespace {

// Whether a character begins a literal whatever stands before it. A point may belong to a name, and
// & is an operator after an operand.
bool beginsLiteral(char c) { return (c >= '0' && c <= '9') || c == '\'' || c == '"' || c == '#'; }

}  // namespace

QueryTemplate::QueryTemplate(const NormalizedQuery& query) {
  usable_ = !query.fault;
  std::size_t end = 0;
  for (const Token& token : query.tokens) {
    if (token.kind != TokenKind::kLiteral) continue;
    usable_ = usable_ && beginsLiteral(query.text[token.position]);
    literals_.push_back({std::string(query.text.substr(end, token.position - end)),
                         query.literals[token.literal].type()});
    end = token.end;
  }
  end_ = query.text.substr(end);
}

std::optional<std::vector<values::Variant>> QueryTemplate::literalsOf(std::string_view text) const {
  if (!usable_) return {};
  std::vector<values::Variant> values;
  values.reserve(literals_.size());
  try {
    for (const Literal& literal : literals_) {
      if (!text.starts_with(literal.before)) return {};
      text.remove_prefix(literal.before.size());
      Scanner scanner(text);
      if (text.empty() || !beginsLiteral(text.front()) || !scanner.next()) return {};
      values.push_back(scanner.literal());
      if (values.back().type() != literal.type) return {};
      text.remove_prefix(scanner.token().end);
    }
  } catch (const RuntimeError&) {
    return {};  // normalize() says what is wrong
  }
  if (text != end_) return {};
  return values;
}

}  // namespace jetsql
