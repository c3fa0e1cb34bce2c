// An access path in words, for reports.
#include <algorithm>
#include <vector>

#include "jetsql/sqlite/access_path.h"
#include "jetsql/sqlite/jet_table.h"

namespace jetsql {

std::string describe(const JetTable& table, const AccessPath& path) {
  const auto& definition = table.table().definition();
  std::vector<std::size_t> columns{path.target};
  std::string text = "index built in memory:";
  if (path.method == AccessMethod::kScan) return "whole";
  if (path.method == AccessMethod::kRowId) return "rows by their numbers";
  if (path.method == AccessMethod::kFileIndex) {
    const auto named = std::ranges::find(definition.indexes, path.target, &jet::Index::realIndex);
    columns.clear();
    for (const auto& column : definition.realIndexes[path.target].columns) {
      columns.push_back(column.column);
    }
    text = "index " + (named == definition.indexes.end() ? "" : named->name + " ") + "of the file:";
  }
  for (std::size_t i = 0; i < path.equal; ++i) {
    text += (i > 0 ? ", " : " ") + table.nameOf(columns[i]) + " = value";
  }
  if (!path.lower && !path.upper) return text;
  const std::string from = !path.lower ? "" : path.lowerInclusive ? " >= value" : " > value";
  const std::string upTo = !path.upper ? "" : path.upperInclusive ? " <= value" : " < value";
  return text + (path.equal > 0 ? ", " : " ") + table.nameOf(columns[path.equal]) + from +
         (path.lower && path.upper ? "," : "") + upTo;
}

}  // namespace jetsql
