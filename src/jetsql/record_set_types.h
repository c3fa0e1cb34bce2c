// What callers hand to a record set and get from it, beside the rows.
#pragma once

#include <string>
#include <string_view>

#include "values/variant.h"

namespace jetsql {

struct FieldDescription {
  std::string name;
  values::VariantType type = values::VariantType::kNull;
};

// A field to be written: its name in any case and its new value.
struct FieldValue {
  std::string_view name;
  values::Variant value;
};

}  // namespace jetsql
