// The FROM of a select in SQL, and the conditions that its joins add to the WHERE.
//
//   FromWriter(writer, select).write()    // "Items" AS t0 LEFT JOIN "Menu" AS t1 ON ...
//
// Names the relations of the select on the way: SqlWriter::names.
#pragma once

#include <string>
#include <vector>

#include "jetsql/translate/sql_writer.h"

namespace jetsql {

class FromWriter {
 public:
  // A part of a FROM: one side of a JOIN.
  struct Fragment {
    std::string sql;
    std::vector<std::string> conditions;
    std::size_t firstRelation = 0;
    std::size_t lastRelation = 0;  // after the last
    bool single = true;
  };

  FromWriter(SqlWriter& writer, const typed::Select& select) : writer_(writer), select_(select) {}

  [[nodiscard]] Fragment write();

 private:
  [[nodiscard]] Fragment item(const typed::FromItem& item);
  [[nodiscard]] Fragment relation(std::size_t number);
  [[nodiscard]] Fragment join(const typed::Join& join);
  [[nodiscard]] static Fragment innerJoin(Fragment left, Fragment right, const std::string& on);
  void derive(Fragment& part);

  SqlWriter& writer_;
  const typed::Select& select_;
};

}  // namespace jetsql
