// FROM: tables, subqueries and joins.
#include <utility>

#include "jetsql/syntax/database_reference.h"
#include "jetsql/syntax/parser.h"
#include "values/error_numbers.h"

namespace jetsql {
namespace {

constexpr int kMaxJoins = 60;  // SQLite joins up to 64 tables; the engine 32

// Of all tables of a FROM that name none themselves; a subquery has a FROM of its own.
void setDatabase(TableReference& table, const DatabaseReference& database) {
  if (auto* join = std::get_if<Join>(&table.node)) {
    setDatabase(*join->left, database);
    setDatabase(*join->right, database);
  } else if (auto* named = std::get_if<NamedTable>(&table.node); named && !named->database) {
    named->database = database;
  }
}

}  // namespace

std::vector<TableReference> Parser::from() {
  std::vector<TableReference> tables;
  do {
    tables.push_back(joinedTable());
  } while (tokens_.acceptSymbol(","));
  if (tokens_.acceptWord("IN")) {
    const DatabaseReference database = inClause();
    for (TableReference& table : tables) setDatabase(table, database);
  }
  return tables;
}

// IN 'path', IN 'path' 'connect text', IN '' [connect text].
DatabaseReference Parser::inClause() {
  notParameterizable_ = true;
  const auto text = [this]() -> std::string {
    if (tokens_.peek().kind == TokenKind::kBracketed) return std::string(tokens_.take().text);
    if (tokens_.peek().kind != TokenKind::kLiteral) tokens_.fail(error::kFromSyntax);
    const auto* literal = tokens_.literal(tokens_.peek()).as<std::string>();
    if (literal == nullptr) tokens_.fail(error::kFromSyntax);
    tokens_.take();
    return *literal;
  };
  const std::string first = text();
  const bool more =
      tokens_.peek().kind == TokenKind::kBracketed || tokens_.peek().kind == TokenKind::kLiteral;
  return databaseReference(first, more ? text() : std::string());
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
    table.node = namedTable();
  }
  --depth_;
  return table;
}

// name, or [path or connect text].name
NamedTable Parser::namedTable() {
  NamedTable table{name(error::kFromSyntax)};
  if (tokens_.acceptSymbol(".")) {
    table.database = databaseReference(table.name, {});
    table.name = name(error::kFromSyntax);
  }
  table.alias = alias();
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
