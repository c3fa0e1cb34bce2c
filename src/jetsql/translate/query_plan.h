// What the translator knows of a query while it makes SQL of it: the fields that names may refer
// to, where an expression stands, and a SELECT whose parts are SQL. See translator.h.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/catalogue.h"
#include "jetsql/translate/demand.h"
#include "jetsql/translate/sql_text.h"
#include "values/error_numbers.h"

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
  int mismatch = error::kCriteriaTypeMismatch;
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
  std::vector<std::string> fixed;       // of the groups: those that a condition allows one value
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

// The field that a path names: source and column index. Error 3079 when there are several.
struct FoundColumn {
  Scope* scope = nullptr;
  std::size_t source = 0;
  std::size_t column = 0;
};
[[nodiscard]] std::optional<FoundColumn> findColumn(Scope& scope,
                                                    const std::vector<std::string>& path);

}  // namespace jetsql
