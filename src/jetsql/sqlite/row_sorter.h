// Puts the rows that a lookup found in order, before SQLite sees them. SQLite's own sorting copies
// every column that it will need of every row; this makes a key of each row and gives the rows'
// numbers back. Worth it for the rows of one key, such as those of a day, which lie together.
//
//   RowOrder order(table.schema(), "37+0-");      // by column 37, within it by 0 downwards
//   while (...) order.add(row);
//   for (std::int64_t number : order.rows()) ...  // equal ones in the order of their adding
//
// The order is SQLite's over the values that the table gives it: Null first, texts by JET. Private
// to the room.
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

class RowOrder {
 public:
  struct Term {
    std::size_t column = 0;
    bool descending = false;
  };

  // The terms as text, in which form they pass through SQLite.
  [[nodiscard]] static std::string packed(std::span<const Term> terms);
  [[nodiscard]] static bool canOrderBy(values::VariantType type);

  RowOrder(const SchemaTable& table, std::string_view terms);

  void add(const jet::Row& row);
  [[nodiscard]] std::vector<std::int64_t> rows();

 private:
  struct Entry {
    std::size_t begin;  // of the key
    std::size_t end;
    std::int64_t row;
  };

  void appendKey(const jet::Row& row, const Term& term);

  const SchemaTable& table_;
  std::vector<Term> terms_;
  std::string keys_;  // one behind the other; their bytes are in the order of the values
  std::vector<Entry> entries_;
  std::string text_;
};

}  // namespace jetsql
