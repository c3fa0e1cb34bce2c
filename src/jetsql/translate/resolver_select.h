// One SELECT resolved: its FROM first, which gives the scope of everything else.
//
//   typed::Select select = SelectResolver(resolver, *query.selects.front(), outer).take();
//
// Predicates of its WHERE on the columns of saved queries and subqueries are pushed down into them.
#pragma once

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/query_context.h"
#include "jetsql/translate/resolver.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

class SelectResolver {
 public:
  SelectResolver(Resolver& resolver, const Select& select, const Scope* outer);
  SelectResolver(const SelectResolver&) = delete;
  SelectResolver& operator=(const SelectResolver&) = delete;
  ~SelectResolver() = default;

  [[nodiscard]] const typed::Select& select() const { return result_; }
  // The select itself; only once.
  [[nodiscard]] typed::Select take() { return std::move(result_); }

  // An expression of the select, as a crosstab has beside its select list.
  [[nodiscard]] typed::Expression plain(const Expression& expression) const;
  [[nodiscard]] typed::Expression overGroups(const Expression& expression) const;

 private:
  // resolver_from.cpp
  void from();
  [[nodiscard]] typed::FromItem item(const TableReference& table, bool keepsOrder);
  [[nodiscard]] typed::FromItem join(const Join& join);
  [[nodiscard]] typed::FromItem table(const NamedTable& table, bool keepsOrder);
  [[nodiscard]] typed::FromItem derived(const DerivedTable& table, bool keepsOrder);
  [[nodiscard]] typed::FromItem add(std::unique_ptr<typed::Relation> relation);

  // resolver_select.cpp
  void whereAndGroups();
  void outputs(const ExpressionContext& context);
  void field(const SelectItem& item, const ExpressionContext& context);
  void addStar(const std::string& table);
  void nameDoubles();
  void distinctRow();
  void order(const ExpressionContext& context);
  [[nodiscard]] typed::Expression orderValue(const Expression& by,
                                             const ExpressionContext& context) const;
  [[nodiscard]] typed::Expression resolve(const Expression& expression,
                                          const ExpressionContext& context) const;
  [[nodiscard]] typed::Expression condition(const Expression& expression,
                                            const ExpressionContext& context) const;

  Resolver& resolver_;
  const Select& source_;
  Scope scope_;
  typed::Select result_;
};

}  // namespace jetsql
