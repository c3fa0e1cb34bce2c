// A table's definition as its pages hold it.
//
//   std::vector<std::uint32_t> pages = allocateDefinition(file, definition);  // room for all of it
//   …                                                       // rows, indexes, usage maps
//   writeDefinition(file, definition, counts, pages);
//
// The size follows from the columns and indexes alone, so the pages can be handed out before the
// rows are known. definition.page is the first of them.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/table_definition.h"
#include "jetcreate/definition_buffer.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

[[nodiscard]] std::vector<std::uint32_t> allocateDefinition(NewFile& file,
                                                            const jet::TableDefinition& definition,
                                                            const DefinitionExtras& extras);

void writeDefinition(NewFile& file, const jet::TableDefinition& definition,
                     const DefinitionExtras& extras, const std::vector<std::uint32_t>& pages);

}  // namespace jetcreate
