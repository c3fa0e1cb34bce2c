#include "jetsql/syntax/parser.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "text/ascii.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

constexpr std::string_view kQueryWords[] = {"SELECT", "TRANSFORM", "PARAMETERS", "TABLE"};

constexpr std::string_view kActionWords[] = {"INSERT", "UPDATE",  "DELETE", "CREATE",   "ALTER",
                                             "DROP",   "EXECUTE", "EXEC",   "PROCEDURE"};

constexpr std::string_view kClauseWords[] = {
    "FROM", "WHERE", "GROUP", "HAVING", "ORDER", "UNION",   "INNER",  "LEFT",  "RIGHT", "JOIN",
    "ON",   "AS",    "INTO",  "PIVOT",  "WITH",  "AND",     "OR",     "NOT",   "XOR",   "EQV",
    "IMP",  "LIKE",  "IN",    "IS",     "MOD",   "BETWEEN", "SELECT", "EXISTS"};

template <std::size_t n>
bool isAny(const Token& token, const std::string_view (&words)[n]) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](std::string_view word) { return isWord(token, word); });
}

int wholeNumber(const values::Variant& value) {
  if (const auto* small = value.as<std::int16_t>()) return *small;
  if (const auto* large = value.as<std::int32_t>()) return *large;
  return -1;
}

}  // namespace

bool isClauseWord(const Token& token) { return isAny(token, kClauseWords); }

QueryPtr Parser::statement() {
  if (isAny(tokens_.peek(), kActionWords)) tokens_.fail(error::kInvalidOperation);
  auto result = query();
  if (tokens_.acceptSymbol(";")) {
    if (!tokens_.atEnd()) tokens_.fail(error::kTextAfterEnd);
  } else if (!tokens_.atEnd()) {
    tokens_.fail(error::kExpressionSyntax);
  }
  result->notParameterizable = notParameterizable_;
  return result;
}

QueryPtr Parser::query() {
  std::vector<std::string> names = parameters();
  QueryPtr result;
  if (tokens_.atWord("TRANSFORM")) {
    result = crosstab();
  } else {
    result = std::make_unique<Query>();
    unionOf(*result);
  }
  result->parameters = std::move(names);
  if (tokens_.acceptWord("WITH")) {
    tokens_.expectWord("OWNERACCESS", error::kSelectSyntax);
    tokens_.expectWord("OPTION", error::kSelectSyntax);
  }
  return result;
}

// PARAMETERS [From Day] DateTime, n Text (10); the types do not matter: no value can be given.
std::vector<std::string> Parser::parameters() {
  std::vector<std::string> names;
  if (!tokens_.acceptWord("PARAMETERS")) return names;
  do {
    std::vector<std::string> path{name(error::kParametersSyntax)};
    while (tokens_.acceptSymbol("!") || tokens_.acceptSymbol(".")) {
      path.push_back(name(error::kParametersSyntax));
    }
    names.push_back(parameterName(path));
    if (!tokens_.atName()) tokens_.fail(error::kParametersSyntax);
    while (!tokens_.atSymbol(",") && !tokens_.atSymbol(";")) {
      if (tokens_.atEnd()) tokens_.fail(error::kParametersSyntax);
      tokens_.take();
    }
  } while (tokens_.acceptSymbol(","));
  tokens_.expectSymbol(";", error::kParametersSyntax);
  return names;
}

QueryPtr Parser::crosstab() {
  tokens_.expectWord("TRANSFORM", error::kTransformSyntax);
  notParameterizable_ = true;
  auto result = std::make_unique<Query>();
  result->crosstab.emplace();
  result->crosstab->value = expression();
  if (tokens_.acceptWord("AS")) static_cast<void>(name(error::kTransformSyntax));
  if (!tokens_.atWord("SELECT")) tokens_.fail(error::kTransformSyntax);
  result->selects.push_back(select());
  pivot(*result->crosstab);
  return result;
}

// PIVOT expression [IN (heading, ...)]: read as one expression, then taken apart.
void Parser::pivot(Crosstab& crosstab) {
  tokens_.expectWord("PIVOT", error::kTransformSyntax);
  crosstab.pivot = expression();
  auto* list = std::get_if<InList>(&crosstab.pivot->node);
  if (list == nullptr || list->negated) return;
  crosstab.headings = std::move(list->items);
  ExpressionPtr value = std::move(list->value);
  crosstab.pivot = std::move(value);
}

void Parser::unionOf(Query& query) {
  query.selects.push_back(parenthesizedSelect());
  while (tokens_.acceptWord("UNION")) {
    query.keepsAll.push_back(tokens_.acceptWord("ALL"));
    if (!query.keepsAll.back()) tokens_.acceptWord("DISTINCT");
    query.selects.push_back(parenthesizedSelect());
  }
  if (query.selects.size() == 1) return;
  // The last ORDER BY is that of the union, not of its last part.
  query.orderBy = std::move(query.selects.back().orderBy);
  query.selects.back().orderBy.clear();
}

Select Parser::parenthesizedSelect() {
  if (tokens_.acceptSymbol("(")) {
    if (++depth_ > kMaxNested) tokens_.fail(error::kQueryTooComplex);
    Select inner = parenthesizedSelect();
    tokens_.expectSymbol(")", error::kSelectSyntax);
    --depth_;
    return inner;
  }
  if (!tokens_.acceptWord("TABLE")) return select();
  Select all;
  all.items.emplace_back();
  all.from = from();
  return all;
}

Select Parser::select() {
  tokens_.expectWord("SELECT", error::kNoStatement);
  Select result;
  for (bool more = true; more;) {
    if (tokens_.acceptWord("DISTINCT")) {
      result.duplicates = Select::Duplicates::kDistinct;
    } else if (tokens_.acceptWord("DISTINCTROW")) {
      result.duplicates = Select::Duplicates::kDistinctRow;
    } else if (tokens_.atWord("TOP") && tokens_.peek(1).kind == TokenKind::kLiteral) {
      top(result);
    } else {
      more = tokens_.acceptWord("ALL");
    }
  }
  do {
    result.items.push_back(selectItem());
  } while (tokens_.acceptSymbol(","));
  if (tokens_.atWord("INTO")) tokens_.fail(error::kInvalidOperation);
  if (tokens_.atName() &&
      !tokens_.atAnyWord({"FROM", "WHERE", "GROUP", "HAVING", "ORDER", "UNION", "PIVOT", "WITH"})) {
    tokens_.fail(error::kExpressionSyntax);
  }
  if (tokens_.acceptWord("FROM")) result.from = from();
  clausesAfterFrom(result);
  return result;
}

void Parser::top(Select& select) {
  tokens_.take();
  notParameterizable_ = true;
  const int count = wholeNumber(tokens_.literal(tokens_.take()));
  if (count < 0) tokens_.fail(error::kSelectSyntax);
  select.top = count;
  select.topIsPercent = tokens_.acceptWord("PERCENT");
}

SelectItem Parser::selectItem() {
  SelectItem item;
  if (tokens_.acceptSymbol("*")) return item;
  if (tokens_.atName() && isSymbol(tokens_.peek(1), ".") && isSymbol(tokens_.peek(2), "*")) {
    item.starTable = name(error::kSelectSyntax);
    tokens_.take();
    tokens_.take();
    return item;
  }
  if (tokens_.atEnd() || tokens_.atSymbol(",") || tokens_.atWord("FROM")) {
    tokens_.fail(error::kSelectSyntax);
  }
  item.expression = expression();
  if (tokens_.acceptWord("AS")) item.alias = name(error::kSelectSyntax);
  return item;
}

void Parser::clausesAfterFrom(Select& select) {
  if (!select.from.empty() && tokens_.atName() &&
      !tokens_.atAnyWord({"WHERE", "GROUP", "HAVING", "ORDER", "UNION", "PIVOT", "WITH", "IN"})) {
    tokens_.fail(error::kFromSyntax);
  }
  if (tokens_.acceptWord("WHERE")) {
    if (tokens_.atEnd()) tokens_.fail(error::kWhereSyntax);
    select.where = expression();
  }
  if (tokens_.acceptWord("GROUP")) {
    tokens_.expectWord("BY", error::kGroupBySyntax);
    const std::size_t first = tokens_.position();
    select.groupBy = expressionList();
    notParameterizable_ = notParameterizable_ || tokens_.anyLiteralSince(first);
  }
  if (tokens_.acceptWord("HAVING")) select.having = expression();
  if (tokens_.acceptWord("ORDER")) {
    const std::size_t first = tokens_.position();
    select.orderBy = orderBy();
    notParameterizable_ = notParameterizable_ || tokens_.anyLiteralSince(first);
  }
}

std::vector<ExpressionPtr> Parser::expressionList() {
  std::vector<ExpressionPtr> list;
  do {
    list.push_back(expression());
  } while (tokens_.acceptSymbol(","));
  return list;
}

std::vector<OrderItem> Parser::orderBy() {
  tokens_.expectWord("BY", error::kOrderBySyntax);
  std::vector<OrderItem> items;
  do {
    if (tokens_.atEnd()) tokens_.fail(error::kOrderBySyntax);
    OrderItem item;
    item.expression = expression();
    item.descending = tokens_.acceptWord("DESC") || tokens_.acceptWord("DESCENDING");
    if (!item.descending) {
      if (!tokens_.acceptWord("ASC")) tokens_.acceptWord("ASCENDING");
    }
    items.push_back(std::move(item));
  } while (tokens_.acceptSymbol(","));
  return items;
}

std::string Parser::name(int errorNumber) {
  const bool bare = tokens_.peek().kind == TokenKind::kWord;
  if (!tokens_.atName() || (bare && isClauseWord(tokens_.peek()))) tokens_.fail(errorNumber);
  return std::string(tokens_.take().text);
}

QueryPtr parseQuery(const NormalizedQuery& query) { return Parser(query).statement(); }

bool beginsStatement(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n(");
  if (first == std::string_view::npos) return false;
  std::size_t end = first;
  while (end < text.size() && text::isAsciiLetter(text[end])) ++end;
  const Token word{.kind = TokenKind::kWord, .text = text.substr(first, end - first)};
  return isAny(word, kQueryWords) || isAny(word, kActionWords);
}

QueryPtr selectAll(std::string_view table) {
  auto query = std::make_unique<Query>();
  Select all;
  all.items.emplace_back();
  all.from.push_back({NamedTable{std::string(table), {}}});
  query->selects.push_back(std::move(all));
  return query;
}

std::string parameterName(const std::vector<std::string>& path) {
  std::string name;
  for (const std::string& part : path) name += (name.empty() ? "" : "!") + part;
  return name;
}

}  // namespace jetsql
