// The walk from a query's tree to SQLite SQL: names are looked up, every expression gets its Jet
// type, saved queries are expanded in place, all in one pass from the inside out. One Translator
// serves one query. See translation.h for what comes out and for the errors.
//
//   Translator translator(schema);
//   Translation t = translator.translate(*parseQuery(normalize(text)));
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/catalogue.h"
#include "jetsql/translate/demand.h"
#include "jetsql/translate/query_plan.h"
#include "jetsql/translate/sql_text.h"
#include "jetsql/translate/translation.h"

namespace jetsql {

class Translator {
 public:
  explicit Translator(SchemaSource& schema) : schema_(schema) {}

  [[nodiscard]] Translation translate(const Query& query);

 private:
  // A part of a FROM: what stands left or right of a JOIN.
  struct Fragment {
    std::string sql;
    std::vector<std::string> conditions;
    std::size_t firstSource = 0;
    std::size_t lastSource = 0;  // behind the last
    bool single = true;
  };

  // translator.cpp
  NestedQuery nested(const Query& query, const Use& use);
  NestedQuery unionOf(const Query& query, const Use& use);
  std::string unionOrder(const Query& query, const NestedQuery& result);
  NestedQuery savedQuery(const SavedQuery& query, const Use& use);
  Translation rowsOf(const SelectPlan& plan);
  void failWhereUnknown() const;

  // translator_select.cpp
  SelectPlan plan(const Select& select, const Use& use);
  std::vector<Demand> demandsOf(const Select& select, const Use& use);
  void applyDemands(SelectPlan& plan, const Use& use) const;
  void seekByKeys(SelectPlan& plan, const Use& use);
  void seekByKey(SelectPlan& plan, const Demand& demand, const Expression& expression);
  void planOutputs(SelectPlan& plan, Place& place);
  void addStar(SelectPlan& plan, const std::string& table);
  void nameOutputs(SelectPlan& plan) const;
  void planOrder(SelectPlan& plan, Place& place);
  void planDistinctRow(SelectPlan& plan) const;
  [[nodiscard]] std::string render(const SelectPlan& plan,
                                   const std::vector<std::string>& projection,
                                   bool keepOrder) const;
  [[nodiscard]] std::vector<std::string> groupTerms(const SelectPlan& plan) const;
  [[nodiscard]] std::vector<std::string> orderTerms(const SelectPlan& plan) const;
  [[nodiscard]] std::string ranked(const SelectPlan& plan, const std::string& sql,
                                   std::size_t columns) const;

  // translator_from.cpp
  void planFrom(SelectPlan& plan, const std::vector<Demand>& demands);
  Fragment fragment(const TableReference& table, Scope& scope, const Use& use);
  Fragment source(const TableReference& table, Scope& scope, const Use& use);
  Fragment join(const TableReference& table, Scope& scope, const Use& use);
  [[nodiscard]] Fragment innerJoin(Fragment left, Fragment right, const std::string& on) const;
  void derive(Fragment& part, Scope& scope);
  std::string nextAlias() { return "t" + std::to_string(aliases_++); }

  // translator_crosstab.cpp
  NestedQuery crosstab(const Query& query, const Use& use);
  std::vector<values::Variant> headings(const Crosstab& crosstab, const SelectPlan& plan,
                                        const Sql& pivot);
  Output cell(const Crosstab& crosstab, Place place, const Sql& pivot,
              const values::Variant& heading);

  // translator_expression.cpp
  Sql expression(const Expression& expression, Place& place);
  Sql ungrouped(const Expression& expression, Place& place);
  Sql name(const Expression& expression, Place& place);
  std::optional<Sql> aliasedValue(const Expression& expression, Place& place);
  Sql unary(const Expression& expression, Place& place);
  Sql binary(const Expression& expression, Place& place);
  [[nodiscard]] Sql logical(Operator operation, const Sql& left, const Sql& right) const;
  Sql between(const Expression& expression, Place& place);
  Sql inList(const Expression& expression, Place& place);
  Sql inQuery(const Expression& expression, Place& place);
  Sql quantified(const Expression& expression, Place& place);
  Sql scalar(const Expression& expression, Place& place);
  NestedQuery oneColumn(const Query& query, Scope* outer);
  [[nodiscard]] Sql literal(const Expression& expression) const;

  // translator_call.cpp
  Sql call(const Expression& expression, Place& place);
  Sql aggregate(const Expression& expression, Place& place);
  Sql choice(const Expression& expression, Place& place);
  std::vector<Sql> arguments(const Expression& expression, Place& place);

  SchemaSource& schema_;
  std::set<std::string> unknown_;           // folded names of parameters
  std::vector<std::string> expanding_;      // saved queries around, outermost first
  std::vector<const Expression*> aliased_;  // aliases being looked through
  std::size_t expansions_ = 0;
  std::size_t aliases_ = 0;
  bool inlineLiterals_ = false;
  bool dataDependent_ = false;
};

[[nodiscard]] bool isAggregateCall(const Expression& expression);
[[nodiscard]] bool containsAggregate(const Expression& expression);

}  // namespace jetsql
