// The FROM of a select in SQL, and the conditions that its joins add to the WHERE.
//
//   FromWriter(writer, select).write()    // "Items" AS t0 LEFT JOIN "Menu" AS t1 ON ...
//
// Names the relations of the select on the way: SqlWriter::names.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "jetsql/translate/join_lookup.h"
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

  FromWriter(SqlWriter& writer, const typed::Select& select)
      : writer_(writer), select_(select), lookups_(joinLookups(select)) {}

  [[nodiscard]] Fragment write();

 private:
  [[nodiscard]] Fragment item(const typed::FromItem& item);
  [[nodiscard]] Fragment relation(std::size_t number);
  [[nodiscard]] std::string source(const typed::Relation& relation);
  [[nodiscard]] Fragment join(const typed::Join& join);
  [[nodiscard]] static Fragment innerJoin(Fragment left, Fragment right, const std::string& on);
  void derive(Fragment& part, const typed::Join& join);
  // The lookup of a relation, or of the optional side of a join, that gets its keys among its
  // columns, if it is looked up like that.
  [[nodiscard]] const JoinLookup* computedKeysOf(const typed::Relation& relation) const;
  [[nodiscard]] const JoinLookup* computedKeysOf(const typed::Join& join) const;
  [[nodiscard]] std::string withKeys(const typed::Relation& relation, const std::string& source,
                                     const JoinLookup& lookup);
  void addKeys(const JoinLookup& lookup, std::vector<std::string>& columns) const;
  // The conditions by which an ON (none: the WHERE) looks up rows.
  [[nodiscard]] std::vector<std::string> lookupsOf(const typed::Join* join) const;
  [[nodiscard]] std::string condition(const JoinLookup& lookup) const;
  [[nodiscard]] std::optional<std::string> keyTable(const JoinLookup& lookup,
                                                    std::size_t keys) const;

  SqlWriter& writer_;
  const typed::Select& select_;
  std::vector<JoinLookup> lookups_;
};

}  // namespace jetsql
