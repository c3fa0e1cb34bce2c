// What a record set tells of its fields.
#pragma once

#include <string>

#include "values/variant.h"

namespace jetsql {

struct FieldDescription {
  std::string name;
  values::VariantType type = values::VariantType::kNull;
};

}  // namespace jetsql
