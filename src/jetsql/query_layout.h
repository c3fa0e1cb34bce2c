// What the rows of one query look like: its fields, where each comes from, and how a name finds
// its field. Shared by the prepared query and the record sets that it opens. Private to the room.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jetsql/functions/text_compare.h"
#include "jetsql/record_set.h"
#include "jetsql/sqlite/jet_table.h"
#include "jetsql/translate/translation.h"

namespace jetsql {

struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const { return hashText(name); }
};
struct NameEqual {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const {
    return equalText(left, right);
  }
};
// Names of tables, queries and fields, any case.
template <typename Value>
using NameMap = std::unordered_map<std::string, Value, NameHash, NameEqual>;

struct QueryLayout {
  std::vector<FieldDescription> fields;
  std::vector<Translation::Column> columns;  // beside fields
  NameMap<std::size_t> byName;               // the first field of a name
  std::vector<JetTable*> sources;
  std::vector<values::VariantType> computedTypes;
  std::optional<std::size_t> updatable;  // source
};

}  // namespace jetsql
