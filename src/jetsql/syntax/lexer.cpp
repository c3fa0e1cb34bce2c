#include "jetsql/syntax/lexer.h"

#include "jetsql/syntax/scanner.h"

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
    if (token.kind == TokenKind::kBracketed)
      token.text = token.text.substr(1, token.text.size() - 2);
    if (token.kind == TokenKind::kLiteral) {
      token.value = scanner.literal();
      token.literalOrdinal = literals++;
    }
    tokens.push_back(std::move(token));
  }
  tokens.push_back({.text = {}, .value = {}, .position = text.size(), .end = text.size()});
  return tokens;
}

bool isWord(const Token& token, std::string_view upperCaseWord) {
  if (token.kind != TokenKind::kWord || token.text.size() != upperCaseWord.size()) return false;
  for (std::size_t i = 0; i < upperCaseWord.size(); ++i) {
    const char c = token.text[i];
    if ((c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) != upperCaseWord[i]) return false;
  }
  return true;
}

bool isSymbol(const Token& token, std::string_view symbol) {
  return token.kind == TokenKind::kSymbol && token.text == symbol;
}

}  // namespace jetsql
