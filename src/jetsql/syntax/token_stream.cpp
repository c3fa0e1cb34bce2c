#include "jetsql/syntax/token_stream.h"

#include <algorithm>

#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

struct Message {
  int number;
  std::string_view text;
};

constexpr Message kMessages[] = {
    {error::kExpressionSyntax, "Syntax error (missing operator) in query expression"},
    {error::kInvalidBracketing, "Invalid bracketing of name"},
    {error::kNoStatement, "Invalid SQL statement; a SELECT, UNION or TRANSFORM is expected"},
    {error::kFromSyntax, "Syntax error in FROM clause"},
    {error::kGroupBySyntax, "Syntax error in GROUP BY clause"},
    {error::kJoinSyntax, "Syntax error in JOIN operation"},
    {error::kOrderBySyntax, "Syntax error in ORDER BY clause"},
    {error::kParametersSyntax, "Syntax error in PARAMETERS clause"},
    {error::kSelectSyntax,
     "The SELECT statement includes a reserved word or an argument name that is misspelled or "
     "missing, or the punctuation is incorrect"},
    {error::kTextAfterEnd, "Characters found after end of SQL statement"},
    {error::kTransformSyntax, "Syntax error in TRANSFORM statement"},
    {error::kInvalidOperation, "Invalid operation: the statement gives no rows"},
    {error::kQueryTooComplex, "Query is too complex"},
};

}  // namespace

TokenStream::TokenStream(const NormalizedQuery& query) : query_(query) {
  if (query.fault) throw RuntimeError(*query.fault);
}

bool TokenStream::atAnyWord(std::initializer_list<std::string_view> words) const {
  return std::any_of(words.begin(), words.end(), [this](auto word) { return atWord(word); });
}

bool TokenStream::acceptWord(std::string_view word) {
  if (!atWord(word)) return false;
  ++position_;
  return true;
}

bool TokenStream::acceptSymbol(std::string_view symbol) {
  if (!atSymbol(symbol)) return false;
  ++position_;
  return true;
}

void TokenStream::expectWord(std::string_view word, int errorNumber) {
  if (!acceptWord(word)) fail(errorNumber);
}

void TokenStream::expectSymbol(std::string_view symbol, int errorNumber) {
  if (!acceptSymbol(symbol)) fail(errorNumber);
}

std::string TokenStream::textSince(std::size_t first) const {
  if (first >= position_) return {};
  const std::size_t begin = query_.tokens[first].position;
  return std::string(query_.text.substr(begin, query_.tokens[position_ - 1].end - begin));
}

bool TokenStream::anyLiteralSince(std::size_t first) const {
  const auto begin = query_.tokens.begin();
  return std::any_of(begin + static_cast<std::ptrdiff_t>(first),
                     begin + static_cast<std::ptrdiff_t>(position_),
                     [](const Token& token) { return token.kind == TokenKind::kLiteral; });
}

void TokenStream::fail(int errorNumber) const {
  const auto* message =
      std::find_if(std::begin(kMessages), std::end(kMessages),
                   [&](const Message& candidate) { return candidate.number == errorNumber; });
  std::string description(message == std::end(kMessages) ? "Syntax error" : message->text);
  const std::string_view rest = query_.text.substr(peek().position);
  description += rest.empty() ? " at its end" : " at '" + std::string(rest.substr(0, 60)) + "'";
  throw RuntimeError(errorNumber, description + ".");
}

}  // namespace jetsql
