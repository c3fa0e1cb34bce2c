// What the parts of a table's definition say of each other: columns have names, numbers and places
// in the row of their own, and every index tree has columns and a name.
//
//   checkDefinition(definition, faults);
#pragma once

#include "jet/format/table_definition.h"
#include "jetcheck/fault_log.h"

namespace jetcheck {

void checkDefinition(const jet::TableDefinition& definition, FaultLog& faults);

}  // namespace jetcheck
