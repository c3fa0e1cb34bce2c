// A query whose rows are those of a Jet table, or of one and another joined to it, that pass its
// conditions: run without SQLite, which takes three times as long for the items of one sale.
//
//   auto query = RowQuery::of(typedQuery, translation, tableOf);   // null: of another form
//   if (query && query->takePaths(chosen)) ...                     // as SQLite would find the rows
//   auto order = query->run(literals, [&](auto rows, auto values) { ... });   // rowids, values
//
// The rows are the ones that the translation's SQL gives, in the same order: the access paths are
// those which SQLite chose when it prepared it, and every condition is computed for every row.
//
// Errors: NotWhole, and those of reading a row. Whoever runs it has SQLite run the query then, so
// that the error is the one that SQLite meets. Private to the room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "jetsql/sqlite/access_path.h"
#include "jetsql/sqlite/aggregate_plan.h"
#include "jetsql/sqlite/whole_expression.h"
#include "jetsql/translate/translation.h"

namespace jetsql {

constexpr std::int64_t kNoRow = -1;  // the empty side of an outer join

class RowQuery {
 public:
  // For each row: the rowids of the translation's sources, then its computed values, whose bytes
  // last for the call.
  using EachRow =
      std::function<void(std::span<const std::int64_t> rows, std::span<const EncodedValue> values)>;

  RowQuery();
  RowQuery(const RowQuery&) = delete;
  RowQuery& operator=(const RowQuery&) = delete;
  ~RowQuery();

  // Refers to the tables, not to the query.
  [[nodiscard]] static std::unique_ptr<RowQuery> of(const typed::Query& query,
                                                    const Translation& translation,
                                                    const TableOf& tableOf);

  // Of the statement that SQLite prepared, in the order in which it asked for them. False where
  // one of them compares with something else than the query says.
  [[nodiscard]] bool takePaths(std::span<const ChosenPath> paths);

  // Gives the rows as they are found; returns their numbers, 0 and on, in the order that the query
  // asks for. Nothing where it asks for none.
  [[nodiscard]] std::vector<std::int64_t> run(std::span<const values::Variant> literals,
                                              const EachRow& eachRow);

 private:
  using Value = std::variant<WholeExpression, RealExpression, TextExpression>;

  // A comparison of a table's column with a value that is known before its rows are read.
  struct Comparison {
    int column = 0;  // -1: the column that the translation computes from the row
    unsigned char operation = 0;
    Value value;
  };
  struct Source {
    JetTable* table = nullptr;
    std::vector<WholeExpression> conditions;  // on its row and those before it
    std::vector<Comparison> comparisons;
    AccessPath path;
    std::vector<Value> keys;  // what the path compares with
  };
  class Planner;
  class Walk;

  [[nodiscard]] static const Value* keyOf(const Source& source,
                                          const ChosenPath::Constraint& constraint);

  std::vector<Source> tables_;           // one, or two of which the second may have no row
  std::vector<std::size_t> parameters_;  // literals, in the order in which they are expected
  std::vector<std::size_t> sources_;     // of the translation: which table
  std::vector<Value> values_;            // computed
  std::string order_;                    // terms of row_sorter.h, on the first table; empty: none
  std::unique_ptr<Walk> walk_;           // of the last run, for the memory that it has
};

}  // namespace jetsql
