// FROM: tables, subqueries and joins.
#include <utility>

#include "jetsql/syntax/parser.h"
#include "values/error_numbers.h"

namespace jetsql {
namespace {

constexpr int kMaxJoins = 60;  // SQLite joins up to 64 tables; the engine 32

}  // namespace

std::vector<TableReference> Parser::from() {
  std::vector<TableReference> tables;
  do {
    tables.push_back(joinedTable());
  } while (tokens_.acceptSymbol(","));
  return tables;
}

TableReference Parser::joinedTable() {
  TableReference left = tablePrimary();
  while (tokens_.atAnyWord({"INNER", "LEFT", "RIGHT"})) {
    if (++joins_ > kMaxJoins) tokens_.fail(error::kQueryTooComplex);
    Join join;
    if (tokens_.acceptWord("LEFT")) {
      join.type = Join::Type::kLeft;
    } else if (tokens_.acceptWord("RIGHT")) {
      join.type = Join::Type::kRight;
    } else {
      tokens_.expectWord("INNER", error::kFromSyntax);  // a JOIN alone is no Jet SQL
    }
    if (join.type != Join::Type::kInner) tokens_.acceptWord("OUTER");
    tokens_.expectWord("JOIN", error::kJoinSyntax);
    join.left = std::make_unique<TableReference>(std::move(left));
    // a INNER JOIN b INNER JOIN c ON ... ON ... is not Jet SQL, which wants parentheses.
    join.right = std::make_unique<TableReference>(tablePrimary());
    if (tokens_.atAnyWord({"INNER", "LEFT", "RIGHT", "JOIN"})) tokens_.fail(error::kJoinSyntax);
    tokens_.expectWord("ON", error::kJoinSyntax);
    join.on = expression();
    left = TableReference{std::move(join)};
  }
  return left;
}

TableReference Parser::tablePrimary() {
  if (++depth_ > kMaxNested) tokens_.fail(error::kQueryTooComplex);
  TableReference table;
  if (atSubquery()) {
    QueryPtr query = subquery();
    table.node = DerivedTable{std::move(query), alias()};
  } else if (tokens_.acceptSymbol("(")) {
    table = joinedTable();
    tokens_.expectSymbol(")", error::kFromSyntax);
  } else if (tokens_.peek().kind == TokenKind::kBracketed && isSymbol(tokens_.peek(1), ".") &&
             beginsStatement(tokens_.peek().text)) {
    QueryPtr query = legacySubquery();
    table.node = DerivedTable{std::move(query), alias()};
  } else {
    std::string tableName = name(error::kFromSyntax);
    table.node = NamedTable{std::move(tableName), alias()};
  }
  --depth_;
  return table;
}

std::string Parser::alias() {
  const bool announced = tokens_.acceptWord("AS");
  if (!announced && (!tokens_.atName() || isClauseWord(tokens_.peek()))) return {};
  return name(error::kFromSyntax);
}

// [SELECT ...]. AS x is how older versions wrote (SELECT ...) AS x.
QueryPtr Parser::legacySubquery() {
  const NormalizedQuery inner = normalize(tokens_.take().text);
  QueryPtr query = Parser(inner).statement();
  tokens_.expectSymbol(".", error::kFromSyntax);
  notParameterizable_ = true;  // its literals are not counted with those of the whole text
  return query;
}

}  // namespace jetsql
