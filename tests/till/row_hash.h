// What a row says but for its marks, as one number: the till and the rounds compare rows by it.
#pragma once

#include <functional>
#include <string>

#include "jet/rows/row.h"

namespace till {

[[nodiscard]] inline std::size_t rowHash(const jet::TableDefinition& definition,
                                         const jet::Row& row) {
  std::string shown;
  for (std::size_t c = 0; c < definition.columns.size(); ++c) {
    const std::string& name = definition.columns[c].name;
    if (name == "c_upload" || name == "cc_upload") continue;
    shown += (row.isNull(c) ? "Null" : toText(row.value(c))) + '|';
  }
  return std::hash<std::string>()(shown);
}

}  // namespace till
