#include "jetsql/translate/query_context.h"

#include "jetsql/functions/text_compare.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// The number of the relation's column that the path names.
std::optional<std::size_t> columnOf(const typed::Relation& relation,
                                    const std::vector<std::string>& path) {
  const bool qualified = path.size() > 1 && equalText(relation.name, path[path.size() - 2]);
  if (path.size() > 2 && !qualified) return std::nullopt;
  // A saved query over a join may itself have a column a.b.
  const std::string field =
      path.size() == 2 && !qualified ? path.front() + "." + path.back() : path.back();
  const auto columns = relation.columns();
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (equalText(columns[column].name, field)) return column;
  }
  return std::nullopt;
}

}  // namespace

std::optional<FoundColumn> findColumn(const Scope& scope, const std::vector<std::string>& path) {
  for (const Scope* around = &scope; around != nullptr; around = around->outer) {
    std::optional<FoundColumn> found;
    for (typed::Relation* relation : around->relations) {
      const auto column = columnOf(*relation, path);
      if (!column) continue;
      if (found) {
        throw RuntimeError(error::kAmbiguousName,
                           "The specified field '" + path.back() +
                               "' could refer to more than one table listed in the FROM clause "
                               "of your SQL statement.");
      }
      found = FoundColumn{around, relation, *column};
    }
    if (found) return found;
  }
  return std::nullopt;
}

}  // namespace jetsql
