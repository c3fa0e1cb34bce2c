// An expression resolved in its context: fields found, functions and operators chosen, types known.
//
//   typed::Expression value = ExpressionResolver(resolver, {.scope = &scope}).resolve(expression);
#pragma once

#include <span>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/syntax/domain_functions.h"
#include "jetsql/translate/query_context.h"
#include "jetsql/translate/resolver.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

class ExpressionResolver {
 public:
  ExpressionResolver(Resolver& resolver, const ExpressionContext& context)
      : resolver_(resolver), context_(context) {}

  [[nodiscard]] typed::Expression resolve(const Expression& expression) const;

 private:
  // resolver_expression.cpp
  [[nodiscard]] typed::Expression ungrouped(const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Literal& literal, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Name& name, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Star& star, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Unary& unary, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Binary& binary, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Between& between, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const InList& list, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const IsNull& test, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const InQuery& in, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Exists& exists, const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const ScalarQuery& scalar,
                                       const Expression& expression) const;
  [[nodiscard]] typed::Expression node(const Quantified& test, const Expression& expression) const;
  [[nodiscard]] typed::Expression aliased(const Name& name) const;
  [[nodiscard]] std::vector<typed::Expression> list(std::span<const ExpressionPtr> items) const;
  [[nodiscard]] typed::QueryPtr oneColumn(const Query& query) const;

  // resolver_call.cpp
  [[nodiscard]] typed::Expression node(const Call& call, const Expression& expression) const;
  [[nodiscard]] typed::Expression aggregate(const Call& call) const;
  [[nodiscard]] typed::Expression domain(const DomainFunction& function, const Call& call) const;
  [[nodiscard]] typed::Expression domainValue(const Name& name) const;

  Resolver& resolver_;
  const ExpressionContext& context_;
};

// Whether the expression calls an aggregate, outside of its subqueries.
[[nodiscard]] bool containsAggregate(const Expression& expression);

}  // namespace jetsql
