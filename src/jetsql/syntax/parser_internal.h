// The recursive descent behind parseQuery. Expressions and statements refer to each other through
// subqueries, so they are one class in two files.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/syntax/token_stream.h"

namespace jetsql {

class Parser {
 public:
  explicit Parser(const NormalizedQuery& query) : tokens_(query) {}

  // The whole text, up to its end.
  std::unique_ptr<Query> statement();

 private:
  // parser.cpp
  std::unique_ptr<Query> query();
  std::vector<std::string> parameters();
  std::unique_ptr<Query> crosstab();
  void pivot(Crosstab& crosstab);
  void unionOf(Query& query);
  Select select();
  Select parenthesizedSelect();
  void top(Select& select);
  SelectItem selectItem();
  void clausesAfterFrom(Select& select);
  std::vector<TableReference> from();
  TableReference joinedTable();
  TableReference tablePrimary();
  TableReference legacySubquery();
  std::vector<ExpressionPtr> expressionList();
  std::vector<OrderItem> orderBy();
  std::string name(int errorNumber);

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
  ExpressionPtr call(const std::string& function);
  ExpressionPtr constant();
  std::unique_ptr<Query> subquery();
  [[nodiscard]] bool atSubquery() const;

  TokenStream tokens_;
  int depth_ = 0;          // parentheses, calls and subqueries open here
  int deepest_ = 0;        // tree of the query being read, in levels
  int subqueryDepth_ = 0;  // tree of the subquery read last
  int joins_ = 0;
  bool notParameterizable_ = false;
};

// Words that end a name's place: they cannot stand bare as a table's alias or a field's name.
[[nodiscard]] bool isClauseWord(const Token& token);

}  // namespace jetsql
