// A query text made into its tree.
//
//   QueryPtr query = parseQuery(normalize("SELECT TOP 3 * FROM Selling ORDER BY price DESC"));
//
// Errors: 3075 in an expression, 3131 to 3145 in a clause, 3219 for a statement that gives no rows,
// 3129 for a text that is no statement, 3360 for one nested too deeply.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/syntax/normalized_query.h"
#include "jetsql/syntax/token_stream.h"

namespace jetsql {

[[nodiscard]] QueryPtr parseQuery(const NormalizedQuery& query);

// Whether the text begins as a query or another statement does; else it can only be a name.
[[nodiscard]] bool beginsStatement(std::string_view text);

// SELECT * FROM name.
[[nodiscard]] QueryPtr selectAll(std::string_view table);

// The name by which a parameter is known and counted: its path without brackets, "Forms!a!b".
[[nodiscard]] std::string parameterName(const std::vector<std::string>& path);

// Words that end a clause: without brackets they are no alias of a table and no name of a field.
[[nodiscard]] bool isClauseWord(const Token& token);

// The recursive descent. Expressions and statements refer to each other through subqueries, so that
// they are one class in three files.
class Parser {
 public:
  // The query outlives the parser.
  explicit Parser(const NormalizedQuery& query) : tokens_(query) {}

  // The whole text, up to its end.
  [[nodiscard]] QueryPtr statement();

 private:
  // Parentheses, calls and subqueries inside each other. More would exhaust the stack of whoever
  // reads or walks the tree.
  static constexpr int kMaxNested = 200;

  // parser.cpp
  QueryPtr query();
  std::vector<std::string> parameters();
  QueryPtr crosstab();
  void pivot(Crosstab& crosstab);
  void unionOf(Query& query);
  Select select();
  Select parenthesizedSelect();
  void top(Select& select);
  SelectItem selectItem();
  void clausesAfterFrom(Select& select);
  std::vector<ExpressionPtr> expressionList();
  std::vector<OrderItem> orderBy();
  std::string name(int errorNumber);

  // parser_from.cpp
  std::vector<TableReference> from();
  TableReference joinedTable();
  TableReference tablePrimary();
  NamedTable namedTable();
  DatabaseReference inClause();
  QueryPtr legacySubquery();
  std::string alias();

  // parser_expression.cpp, from the loosest operator to the tightest
  ExpressionPtr expression();
  ExpressionPtr binaryLevel(std::size_t level);
  ExpressionPtr logicalNot();
  ExpressionPtr comparison();
  ExpressionPtr negatable(ExpressionPtr left, bool negated);
  ExpressionPtr quantifiedOr(Operator operation, ExpressionPtr left);
  ExpressionPtr arithmeticLevel(std::size_t level);
  ExpressionPtr unary();
  ExpressionPtr power();
  ExpressionPtr primary();
  ExpressionPtr parenthesized();
  ExpressionPtr nameOrCall();
  ExpressionPtr call(std::string function);
  ExpressionPtr constant();
  QueryPtr subquery();
  [[nodiscard]] int levelsBelowSubquery() const;
  [[nodiscard]] bool atSubquery() const;

  TokenStream tokens_;
  int depth_ = 0;          // parentheses, calls and subqueries open here
  int deepest_ = 0;        // tree of the query being read, in levels
  int subqueryDepth_ = 0;  // tree of the subquery read last
  int joins_ = 0;
  bool notParameterizable_ = false;
};

}  // namespace jetsql
