// SQLite SQL written from a resolved query. Names, types and conversions are settled by then; the
// writer chooses the SQL that expresses them.
//
//   Translation t = SqlWriter(catalogue).statement(resolve(*parsed, catalogue).query);
//
// A query in parentheses names its columns c0, c1, ...; relations are t0, t1, ... in the order in
// which they are written. One writer serves one statement.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jetsql/translate/catalogue.h"
#include "jetsql/translate/sql_text.h"
#include "jetsql/translate/translation.h"
#include "jetsql/translate/typed_tree.h"

namespace jetsql {

// What a relation of a FROM is called in the SQL around it.
struct RelationNames {
  std::string rowid;  // empty for a query
  std::vector<std::string> columns;
  // The table whose columns key0, key1, ... are the keys by which the relation is looked up
  // (join_lookup.h); empty where it is not, or by a lasting table of keys.
  std::string keys;
};

// Of a table or query under an alias: t0.rowid, t0.c0, t0.c1, ...
[[nodiscard]] RelationNames namesUnder(const std::string& alias, const typed::Relation& relation);

class SqlWriter {
 public:
  explicit SqlWriter(Catalogue& catalogue, ColumnErrors errors = ColumnErrors::kRaise)
      : catalogue_(catalogue), errors_(errors), aggregates_(errors == ColumnErrors::kRaise) {}

  // The whole statement: row identities and computed values, as translation.h has them.
  [[nodiscard]] Translation statement(const typed::Query& query);

  // The different values of an expression over the rows of a select, before they are grouped.
  [[nodiscard]] Translation distinctValues(const typed::Select& select,
                                           const typed::Expression& value);

  // For the parts: SelectWriter, FromWriter, ExpressionWriter.
  [[nodiscard]] std::string query(const typed::Query& query);
  // A query of a FROM, in parentheses or by the name of a common table expression.
  [[nodiscard]] std::string derived(const typed::Query& query);
  // A query in an expression, whose columns are compared at once. With several mentions of the text
  // its rows are computed once for all of them.
  enum class Mentions { kOne, kSeveral };
  [[nodiscard]] std::string subquery(const typed::Query& query, Mentions mentions = Mentions::kOne);
  // A query of a FROM that stands there alone.
  [[nodiscard]] std::string onlySource(const typed::Query& query);
  [[nodiscard]] bool defersErrors() const { return errors_ == ColumnErrors::kDefer; }
  [[nodiscard]] std::string nextAlias() { return "t" + std::to_string(aliases_++); }
  [[nodiscard]] RelationNames& names(const typed::Relation* relation) { return names_[relation]; }
  [[nodiscard]] std::string& columnOf(const typed::Query* subquery) { return columns_[subquery]; }
  [[nodiscard]] Catalogue& catalogue() { return catalogue_; }

  // The SQLite name of a table (key0, key1, ..., row) of the expressions' values in a Jet table's
  // rows; nothing where the table has fewer rows than `minRows` or the catalogue keeps none.
  [[nodiscard]] std::optional<std::string> keyTable(const typed::Relation& relation,
                                                    const std::vector<typed::Expression>& keys,
                                                    double minRows);
  // The computed column of the relation's table that has these values; nothing where it has none.
  [[nodiscard]] std::optional<std::string> computedColumn(const typed::Relation& relation,
                                                          const typed::Expression& key);
  // The SQL would be better with its literals written out than as parameters.
  void preferLiterals() { prefersLiterals_ = true; }
  [[nodiscard]] bool prefersLiterals() const { return prefersLiterals_; }

 private:
  [[nodiscard]] IndexedExpression indexed(const typed::Relation& relation,
                                          const typed::Expression& key);
  [[nodiscard]] Translation rows(const typed::Select& select);
  [[nodiscard]] std::string unionOf(const typed::Query& query);
  [[nodiscard]] std::string unionPart(const typed::Query& query, const typed::Select& select);
  [[nodiscard]] std::string crosstab(const typed::Query& query);  // sql_writer_crosstab.cpp
  struct CommonTable {
    std::string sql;         // name AS (query)
    std::size_t length = 0;  // expanded
  };
  struct Nested {
    std::string sql;
    bool isName = false;  // of a common table expression, which has the query
  };
  [[nodiscard]] Nested nested(const typed::Query& query, Mentions mentions);
  // Of the SQL with the names of common table expressions written out, as SQLite does.
  [[nodiscard]] std::size_t expandedLength(std::string_view sql) const;
  [[nodiscard]] std::string withNamed(const std::string& sql) const;

  Catalogue& catalogue_;
  ColumnErrors errors_;
  bool aggregates_;  // whether grouped queries may be tables of the catalogue
  std::size_t aliases_ = 0;
  std::size_t depth_ = 0;  // queries around the one being written
  std::vector<CommonTable> named_;
  bool prefersLiterals_ = false;
  std::unordered_map<const typed::Relation*, RelationNames> names_;
  std::unordered_map<const typed::Query*, std::string> columns_;  // the only one of a subquery
};

}  // namespace jetsql
