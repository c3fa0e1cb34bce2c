// The tree of a query with every name found and every expression typed: what the resolver makes of
// the parser's tree, and what SQL is written from. Saved queries are expanded in place.
//
//   SELECT Left(note, 1) FROM Sales     a Query of one Select, whose only Relation is the table
//                                       Sales; its Output is an expression, see typed_expression.h
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/translate/catalogue.h"
#include "jetsql/translate/typed_expression.h"

namespace jetsql::typed {

// A table or query of a FROM. Fields refer to it by its address.
struct Relation {
  std::string name;                       // alias or name, by which its fields are qualified
  const CatalogueTable* table = nullptr;  // else:
  std::unique_ptr<Query> query;
  bool read = false;  // a name has referred to it since the resolver last cleared this

  [[nodiscard]] std::span<const CatalogueColumn> columns() const;
};

struct FromItem;

struct Join {
  jetsql::Join::Type type = jetsql::Join::Type::kInner;
  std::unique_ptr<FromItem> left;
  std::unique_ptr<FromItem> right;
  Expression on;
};

struct FromItem {
  std::variant<std::size_t, Join> node;  // the number of a relation of the select, or a join
};

struct Output {
  std::string name;      // as Jet names it: alias, field, table.field for doubles, Expr1000
  bool aliased = false;  // the name was given by the query
  bool isField = false;  // the item names a field of the FROM, which `value` is
  Expression value;
};

struct Group {
  Expression value;
  bool isFixed = false;  // a condition allows it one value
};

struct Order {
  Expression value;
  bool descending = false;
};

// An equality that the query around asks of a computed output: rows may be found by an index of
// the expression, which reads nothing but columns of the select's only relation.
struct IndexedLookup {
  Expression expression;
  Expression value;
};

struct Select {
  jetsql::Select::Duplicates duplicates = jetsql::Select::Duplicates::kKeep;
  std::optional<int> top;
  bool topIsPercent = false;
  bool grouped = false;  // GROUP BY, or an aggregate over all rows
  std::vector<std::unique_ptr<Relation>> relations;
  std::vector<FromItem> from;          // joined by commas
  std::vector<Expression> conditions;  // joined by And: WHERE, then predicates pushed down
  std::vector<Group> groups;
  Expression having;
  std::vector<Output> outputs;
  std::vector<Order> order;
  // Of DISTINCTROW: one row for each combination of rows of these; empty: all rows.
  std::vector<const Relation*> identities;
  std::vector<IndexedLookup> lookups;
};

// One column per heading: the value over the rows whose pivot is the heading.
struct Crosstab {
  struct Cell {
    std::string name;
    Expression pivot;    // made comparable
    Expression heading;  // a constant
  };
  Expression value;
  std::vector<Cell> cells;
};

struct UnionOrder {
  std::size_t column = 0;
  bool descending = false;
};

struct Query {
  std::vector<Select> selects;       // more than one: a union
  std::vector<bool> keepsAll;        // of each select but the first: UNION ALL before it
  std::vector<UnionOrder> order;     // of a union
  std::optional<Crosstab> crosstab;  // over selects[0]
  bool keepsOrder = false;           // its ORDER BY matters to the query around
  // What it gives. A union's parts are converted to these types.
  std::vector<CatalogueColumn> columns;
};

inline std::span<const CatalogueColumn> Relation::columns() const {
  return table != nullptr ? table->columns : query->columns;
}

}  // namespace jetsql::typed
