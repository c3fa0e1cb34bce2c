// Sorts the rows that an index lookup found, before SQLite sees them. SQLite's own sorter copies
// every column that the query needs of every row; this one makes a sort key of each row and gives
// the row numbers back. Cheaper for the rows of one key, such as those of a day, which lie
// together.
//
//   RowSorter sorter(table.schema(), "37+0-");      // by column 37, then by column 0 descending
//   while (...) sorter.add(row);
//   for (std::int64_t number : sorter.rows()) ...  // stable
//
// The order is that of SQLite over the values of the table: Null first, texts by the collation JET.
// Private to the room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/rows/row.h"
#include "jetsql/translate/catalogue.h"

namespace jetsql {

class RowSorter {
 public:
  struct Term {
    std::size_t column = 0;
    bool descending = false;
  };

  // The terms as the text of an access path.
  [[nodiscard]] static std::string packed(std::span<const Term> terms);
  [[nodiscard]] static bool canOrderBy(values::VariantType type);

  RowSorter(const CatalogueTable& table, std::string_view terms);

  void add(const jet::Row& row) { add(row, row.id().number()); }
  // With a number of the caller's.
  void add(const jet::Row& row, std::int64_t number);
  [[nodiscard]] std::vector<std::int64_t> rows();

 private:
  struct Entry {
    std::size_t begin;  // of the key
    std::size_t end;
    std::int64_t row;
  };

  void appendKey(const jet::Row& row, const Term& term);

  const CatalogueTable& table_;
  std::vector<Term> terms_;
  std::string keys_;  // concatenated; byte order is the order of the values
  std::vector<Entry> entries_;
  std::string text_;
};

}  // namespace jetsql
