// A query text of Jet SQL made into SQLite SQL against a catalogue.
//
//   Translation t = translate(normalize(text), catalogue);
//   text:       SELECT Items.*, Menu.name AS menu FROM Items LEFT JOIN Menu
//               ON Items.m_id = Menu.m_id WHERE s_id = 7
//   t.sql:      SELECT t0.rowid, t1.rowid FROM "Items" AS t0 LEFT JOIN ... WHERE t0.c1 = ?1
//   t.sources:  Items, Menu         t.literals: {7}
//   t.columns:  each a column of a source, or a computed value
//
// The SQL selects the rowid of each source in order (NULL for the empty side of an outer join),
// then the computed values in order, in the encodings of their types.
//
// Literals: the values to bind to ?1, ?2, ... Texts of the same normalized key give the same
// Translation but for `literals`, unless `exactTextOnly`: then some literal shaped the SQL itself,
// or the text is the name of a table.
//
// Errors (RuntimeError, the engine's numbers): 3061 unknown names, parameters included (with their
// count), 3075 syntax of an expression, 3078 unknown table or query, 3079 ambiguous name, 3085
// unknown function, 3102 a saved query that refers to itself, 3103 an alias that does, 3122 a
// value that is neither grouped nor aggregated, 3219 not a query that gives rows (action, data
// definition), 3464 text compared with a number or date, 3129 to 3145 syntax of a clause, 3307
// unions of different width; error_numbers.h has them all.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jetsql/syntax/normalized_query.h"
#include "jetsql/translate/catalogue.h"
#include "values/variant.h"

namespace jetsql {

class RowQuery;

// What becomes of an error in a computed column. kRaise: the statement fails. kDefer: the column
// holds the error as a value, which reading it raises; columns that are compared (DISTINCT, UNION)
// or hold subqueries still raise, and so do conditions, groups and orders.
enum class ColumnErrors { kRaise, kDefer };

struct Translation {
  // A base table of the outermost FROM, whose rows give output columns.
  struct Source {
    const CatalogueTable* table = nullptr;
    std::string name;  // alias or table name in the query
  };
  struct BaseColumn {
    std::size_t source = 0;  // index in sources
    std::size_t column = 0;  // index in the table's columns
  };
  struct Column {
    std::string name;  // as Jet names it: alias, field, table.field for doubles, Expr1000
    values::VariantType type = values::VariantType::kNull;
    std::optional<BaseColumn> base;  // else computed
    std::size_t computed = 0;        // ordinal among the computed values
  };

  std::string sql;
  std::vector<Source> sources;
  std::vector<Column> columns;
  std::size_t computedCount = 0;
  std::optional<std::size_t> updatable;   // the one source whose fields may be changed
  std::vector<values::Variant> literals;  // empty when exactTextOnly
  bool exactTextOnly = false;             // not to be reused for another text
  bool dataDependent = false;             // a crosstab's headings: not to be reused at all
  std::shared_ptr<RowQuery> rowQuery;     // the catalogue's own way to run it; nullptr: none
};

// `text` is a query or the name of a table or saved query.
[[nodiscard]] Translation translate(NormalizedQuery text, Catalogue& catalogue,
                                    ColumnErrors errors = ColumnErrors::kRaise);

}  // namespace jetsql
