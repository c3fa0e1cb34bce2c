// What a record set tells of its fields.
#pragma once

#include <cstddef>
#include <string>

#include "values/variant.h"

namespace jetsql {

// A field that is a column of a table: the table by its number in the query, from 0, and the
// column's position in jet::TableDefinition::columns.
struct StoredField {
  std::size_t table = 0;
  std::size_t column = 0;
};

struct FieldDescription {
  std::string name;
  values::VariantType type = values::VariantType::kNull;
};

}  // namespace jetsql
