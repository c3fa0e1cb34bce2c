// The walk from a query's tree to SQLite SQL: names are looked up, every expression gets its Jet
// type, saved queries are expanded in place, all in one pass from the inside out. One Translator
// serves one query. See translation.h for what comes out and for the errors.
//
//   Translator translator(schema);
//   Translation t = translator.translate(*parseQuery(text));
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "jetsql/ast.h"
#include "jetsql/demand.h"
#include "jetsql/error_numbers.h"
#include "jetsql/schema.h"
#include "jetsql/sql_text.h"
#include "jetsql/translation.h"

namespace jetsql {

// What stands in a FROM: its fields as the SQL around it can say them.
struct ScopeSource {
  std::string name;                    // alias or name, by which its fields are qualified
  const SchemaTable* table = nullptr;  // of a base table
  std::string rowid;                   // SQL; empty for a query
  std::vector<std::pair<std::string, Sql>> columns;
  bool used = false;
};

struct Scope {
  std::vector<ScopeSource> sources;
  Scope* outer = nullptr;  // of the query around a subquery
};

// Where an expression stands, which decides what it may refer to.
struct Place {
  Scope* scope = nullptr;
  const Select* aliases = nullptr;                // whose select list's aliases may be used
  const std::vector<Sql>* groups = nullptr;       // set: fields must be grouped or aggregated
  int aggregateError = error::kAggregateInWhere;  // 0: aggregates may stand here
  int mismatch = error::kTypeMismatch;
  std::string filter{};  // of aggregates: the condition of a crosstab's cell
};

struct Output {
  std::string name;
  bool named = false;  // by an alias
  Sql value;
  std::string sourceName;             // of a plain field
  std::optional<std::size_t> source;  // index in the scope, of a plain field
  std::size_t column = 0;             // index in the source's columns
};

// A SELECT whose every part is SQL, ready to be put together for one use or another.
struct SelectPlan {
  Scope scope;
  std::string from;
  std::vector<std::string> conditions;
  std::vector<Sql> groups;
  std::vector<std::string> identities;  // of DISTINCTROW: one row for each set of these
  std::string having;
  std::vector<std::pair<Sql, bool>> order;  // descending
  std::vector<Output> outputs;
  bool grouped = false;
  const Select* select = nullptr;
};

// A query as it stands in parentheses: its columns are named c0, c1, ...
struct NestedQuery {
  std::string sql;
  std::vector<SchemaColumn> columns;
};

// What is asked of a query by whatever it stands in.
struct Use {
  Scope* outer = nullptr;  // of a subquery in an expression
  bool keepOrder = false;  // its ORDER BY lasts
  std::vector<Demand> demands{};
};

class Translator {
 public:
  explicit Translator(SchemaSource& schema) : schema_(schema) {}

  [[nodiscard]] Translation translate(const Query& query, std::vector<jet::Variant> literals);

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
  std::optional<std::string> keyCondition(SelectPlan& plan, const Demand& demand,
                                          const Expression& expression);
  void planOutputs(SelectPlan& plan, Place& place);
  void addStar(SelectPlan& plan, const std::string& table);
  void nameOutputs(SelectPlan& plan) const;
  void planOrder(SelectPlan& plan, Place& place);
  void planDistinctRow(SelectPlan& plan) const;
  std::string render(const SelectPlan& plan, const std::vector<std::string>& projection,
                     bool keepOrder) const;
  std::vector<std::string> orderTerms(const SelectPlan& plan) const;

  // translator_from.cpp
  void planFrom(SelectPlan& plan, const std::vector<Demand>& demands);
  Fragment fragment(const TableReference& table, Scope& scope, const Use& use);
  Fragment source(const TableReference& table, Scope& scope, const Use& use);
  Fragment join(const TableReference& table, Scope& scope, const Use& use);
  Fragment innerJoin(Fragment left, Fragment right, const std::string& on) const;
  void derive(Fragment& part, Scope& scope);
  std::string nextAlias() { return "t" + std::to_string(aliases_++); }

  // translator_crosstab.cpp
  NestedQuery crosstab(const Query& query, const Use& use);
  std::vector<jet::Variant> headings(const Crosstab& crosstab, const SelectPlan& plan,
                                     const Sql& pivot);
  Output cell(const Crosstab& crosstab, Place place, const Sql& pivot, const jet::Variant& heading);

  // translator_expression.cpp
  Sql expression(const Expression& expression, Place& place);
  Sql ungrouped(const Expression& expression, Place& place);
  Sql name(const Expression& expression, Place& place);
  std::optional<Sql> aliasedValue(const Expression& expression, Place& place);
  Sql unary(const Expression& expression, Place& place);
  Sql binary(const Expression& expression, Place& place);
  Sql logical(Operator operation, const Sql& left, const Sql& right) const;
  Sql between(const Expression& expression, Place& place);
  Sql inList(const Expression& expression, Place& place);
  Sql inQuery(const Expression& expression, Place& place);
  Sql quantified(const Expression& expression, Place& place);
  Sql scalar(const Expression& expression, Place& place);
  NestedQuery oneColumn(const Query& query, Scope* outer);
  Sql literal(const Expression& expression) const;

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

// The field that a path names: source and column index. Error 3079 when there are several.
struct FoundColumn {
  Scope* scope = nullptr;
  std::size_t source = 0;
  std::size_t column = 0;
};
[[nodiscard]] std::optional<FoundColumn> findColumn(Scope& scope,
                                                    const std::vector<std::string>& path);

}  // namespace jetsql
