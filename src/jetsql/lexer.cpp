#include "jetsql/lexer.h"

#include "jetsql/scanner.h"
#include "jetsql/translation.h"
#include "jetsql/value_types.h"
#include "platform/runtime_error.h"

namespace jetsql {

std::vector<Token> tokenize(std::string_view text) {
  std::vector<Token> tokens;
  Scanner scanner(text);
  int literals = 0;
  while (scanner.next()) {
    Token token{.kind = scanner.kind(),
                .text = std::string(scanner.text()),
                .value = {},
                .position = scanner.begin(),
                .end = scanner.end()};
    if (token.kind == TokenKind::Bracketed)
      token.text = token.text.substr(1, token.text.size() - 2);
    if (token.kind == TokenKind::Literal) {
      token.value = scanner.literal();
      token.literalOrdinal = literals++;
    }
    tokens.push_back(std::move(token));
  }
  tokens.push_back({.text = {}, .value = {}, .position = text.size(), .end = text.size()});
  return tokens;
}

bool isWord(const Token& token, std::string_view upperCaseWord) {
  if (token.kind != TokenKind::Word || token.text.size() != upperCaseWord.size()) return false;
  for (std::size_t i = 0; i < upperCaseWord.size(); ++i) {
    const char c = token.text[i];
    if ((c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) != upperCaseWord[i]) return false;
  }
  return true;
}

bool isSymbol(const Token& token, std::string_view symbol) {
  return token.kind == TokenKind::Symbol && token.text == symbol;
}

QueryShape queryShape(std::string_view text) {
  constexpr char kMark = '\x01';
  QueryShape shape;
  shape.key.reserve(text.size());
  try {
    Scanner scanner(text);
    for (std::size_t previous = 0; scanner.next(); previous = scanner.end()) {
      if (scanner.begin() != previous && previous != 0) shape.key += ' ';
      if (scanner.kind() != TokenKind::Literal) {
        shape.key += scanner.text();
        continue;
      }
      shape.literals.push_back(scanner.literal());
      shape.key += kMark;
      shape.key += letterOf(shape.literals.back().type());
    }
  } catch (const RuntimeError&) {
    // The text is faulty; its translation says how.
    return {.key = std::string(text), .literals = {}};
  }
  return shape;
}

}  // namespace jetsql
