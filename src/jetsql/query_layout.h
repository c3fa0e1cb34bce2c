// The layout of one query's rows: its fields, the source of each, and the index of their names.
// Shared by the prepared query and the record sets that it opens. Private to the room.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "jetsql/functions/name_map.h"
#include "jetsql/record_set_types.h"
#include "jetsql/sqlite/jet_table.h"
#include "jetsql/translate/translation.h"

namespace jetsql {

struct QueryLayout {
  std::vector<FieldDescription> fields;
  std::vector<Translation::Column> columns;  // beside fields
  NameMap<std::size_t> byName;               // the first field of a name
  std::vector<JetTable*> sources;
  std::vector<values::VariantType> computedTypes;
  std::optional<std::size_t> updatable;  // source
};

}  // namespace jetsql
