// One SELECT in SQL: its parts are written first, then put together around the columns that are
// asked for.
//
//   const SelectWriter writer(sqlWriter, select);
//   writer.sql(writer.values(), true)       // SELECT t0.c1 AS c0 FROM "Sales" AS t0 ORDER BY ...
#pragma once

#include <string>
#include <vector>

#include "jetsql/translate/sql_writer.h"

namespace jetsql {

class SelectWriter {
 public:
  SelectWriter(SqlWriter& writer, const typed::Select& select);

  [[nodiscard]] const std::vector<TypedSql>& outputs() const { return outputs_; }
  // The outputs as they stand in the select list.
  [[nodiscard]] std::vector<std::string> values() const;

  // The columns are named c0, c1, ... `keepsOrder`: ORDER BY is written even without TOP.
  [[nodiscard]] std::string sql(const std::vector<std::string>& columns, bool keepsOrder) const;
  [[nodiscard]] std::string distinctValues(const typed::Expression& value) const;

 private:
  void lookUp(const typed::IndexedLookup& lookup);
  [[nodiscard]] std::optional<TypedSql> keyOf(const typed::IndexedLookup& lookup,
                                              const typed::Relation& relation);
  // Whether its error becomes a value.
  [[nodiscard]] bool isGuarded(const typed::Output& output) const;
  [[nodiscard]] std::vector<std::string> identities() const;
  [[nodiscard]] std::vector<std::string> groupTerms() const;
  [[nodiscard]] std::vector<std::string> orderTerms() const;
  [[nodiscard]] std::string ranked(const std::string& sql, std::size_t columns) const;

  SqlWriter& writer_;
  const typed::Select& select_;
  std::string from_;
  std::vector<std::string> conditions_;
  std::vector<TypedSql> groups_;  // beside the select's
  std::string having_;
  std::vector<TypedSql> outputs_;  // beside the select's
  std::vector<TypedSql> order_;    // beside the select's
};

// c0, c1, ...
[[nodiscard]] std::string numberedColumns(std::string_view prefix, std::size_t count);

}  // namespace jetsql
