#include "jetcheck/definition_check.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace jetcheck {
namespace {

using jet::Column;

// Yes/No lives in the null mask.
bool overlap(const Column& a, const Column& b) {
  if (a.fixed != b.fixed) return false;
  if (!a.fixed) return a.varIndex == b.varIndex;
  if (a.type == jet::ColumnType::kYesNo || b.type == jet::ColumnType::kYesNo) return false;
  return a.fixedOffset < b.fixedOffset + b.length && b.fixedOffset < a.fixedOffset + a.length;
}

}  // namespace

void checkDefinition(const jet::TableDefinition& definition, FaultLog& faults) {
  const Place place{.page = definition.page, .object = "table '" + definition.name + "'"};
  const auto& columns = definition.columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Column& column = columns[i];
    const auto fault = [&](const std::string& what) {
      faults.add(place, "column '" + column.name + "' has " + what);
    };
    if (!column.fixed && column.varIndex >= definition.varColumns) {
      fault("no place among the variable ones");
    }
    for (std::size_t j = 0; j < i; ++j) {
      const std::string other = " of column '" + columns[j].name + "'";
      if (jet::sameName(column.name, columns[j].name)) fault("the name" + other);
      if (column.number == columns[j].number) fault("the number" + other);
      if (overlap(column, columns[j])) fault("the place" + other);
    }
  }
  for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
    const std::string tree = "index tree " + std::to_string(i);
    if (definition.realIndexes[i].columns.empty()) faults.add(place, tree + " has no column");
    if (std::ranges::none_of(definition.indexes,
                             [&](const jet::Index& index) { return index.realIndex == i; })) {
      faults.add(place, tree + " belongs to no index");
    }
  }
}

}  // namespace jetcheck
