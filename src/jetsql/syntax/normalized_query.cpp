#include "jetsql/syntax/normalized_query.h"

#include "jetsql/functions/value_types.h"

namespace jetsql {

NormalizedQuery normalize(std::string_view text) {
  constexpr char kMark = '\x01';
  constexpr std::size_t kBytesPerToken = 4;  // of common texts, at least
  NormalizedQuery query;
  query.text = text;
  query.key.reserve(text.size());
  query.tokens.reserve(text.size() / kBytesPerToken + 1);
  try {
    Scanner scanner(text);
    for (std::size_t previousEnd = 0; scanner.next(); previousEnd = query.tokens.back().end) {
      const Token& token = query.tokens.emplace_back(scanner.token());
      if (token.position != previousEnd && previousEnd != 0) query.key += ' ';
      if (token.kind != TokenKind::kLiteral) {
        query.key += text.substr(token.position, token.end - token.position);
        continue;
      }
      query.literals.push_back(scanner.literal());
      query.key += kMark;
      query.key += letterOf(query.literals.back().type());
    }
  } catch (const RuntimeError& fault) {
    query = {text, std::string(text), {}, {}, fault};
  }
  query.tokens.push_back({.text = {}, .position = text.size(), .end = text.size()});
  return query;
}

}  // namespace jetsql
