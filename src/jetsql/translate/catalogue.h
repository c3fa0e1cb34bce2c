// What a query's names may refer to: the tables and saved queries of one database, as the resolver
// sees them. The session implements it over a Jet file; tests over a list.
//
// Lifetimes: pointers that find returns stay good as long as the catalogue.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/syntax/ast.h"
#include "jetsql/syntax/saved_query.h"
#include "jetsql/translate/typed_expression.h"
#include "values/variant.h"

namespace jetsql {

class RowQuery;
struct Translation;
namespace typed {
struct Query;
}

struct CatalogueColumn {
  std::string name;
  values::VariantType type = values::VariantType::kNull;
};

// In SQLite a table's columns are named c0, c1, ... in this order, its rows by rowid.
struct CatalogueTable {
  std::string name;        // as the database writes it
  std::string sqliteName;  // without quotes
  std::vector<CatalogueColumn> columns;
  bool updatable = true;  // false for tables of another system, whose rows have no lasting id
  double rows = 0;        // about how many, when it was opened
};

// An expression over the columns of one table, in SQL in which the table is k: k.c3 || k.c4. Equal
// expressions have equal SQL, since it is written from the typed tree and not from the query text.
struct IndexedExpression {
  std::string sql;
  std::vector<std::size_t> columns;  // that it reads
  bool isText = false;               // compared without regard to case
  typed::Expression expression;
};

// At most one of the two is set; none when there is no such name.
struct CatalogueObject {
  const CatalogueTable* table = nullptr;
  const SavedQuery* query = nullptr;
};

class Catalogue {
 public:
  Catalogue() = default;
  Catalogue(const Catalogue&) = delete;
  Catalogue& operator=(const Catalogue&) = delete;
  virtual ~Catalogue() = default;

  // Names match without regard to case. May throw what opening a linked table throws.
  [[nodiscard]] virtual CatalogueObject find(std::string_view name) = 0;

  // The same in another database. The names of a saved query found there are looked up there, too.
  [[nodiscard]] virtual CatalogueObject findIn(const DatabaseReference& database,
                                               std::string_view name) = 0;

  // Runs a query of one computed column and gives its values in order: the headings of a crosstab
  // that does not list them.
  [[nodiscard]] virtual std::vector<values::Variant> values(const Translation& query) = 0;

  // The name of a column of the table, in SQLite, that has the expression's values and by which an
  // equality finds its rows; nothing where the table has none.
  [[nodiscard]] virtual std::optional<std::string> computedColumn(const CatalogueTable&,
                                                                  const IndexedExpression&) {
    return std::nullopt;
  }

  // Asked next: the SQLite name of a table (key0, key1, ..., row) of the values of one or more
  // expressions and the rowids that have them, by which equalities find their rows; nothing: they
  // are to be scanned.
  [[nodiscard]] virtual std::optional<std::string> expressionIndex(
      const CatalogueTable&, const std::vector<IndexedExpression>&) {
    return std::nullopt;
  }

  // The SQL of a table that computes the grouped query, as it stands in a FROM; its columns are c0,
  // c1, ... in the order of the query's. Nothing: SQLite is to group.
  [[nodiscard]] virtual std::optional<std::string> aggregateTable(const typed::Query&) {
    return std::nullopt;
  }

  // A way to run the whole query other than by the SQL that it was translated to; nullptr: none.
  [[nodiscard]] virtual std::shared_ptr<RowQuery> rowQuery(const typed::Query&,
                                                           const Translation&) {
    return nullptr;
  }
};

}  // namespace jetsql
