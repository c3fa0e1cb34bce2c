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
#include <map>
#include <vector>

#include "jet/format/table_definition.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

struct LongValueMaps {
  jet::RowId ownedPages;
  jet::RowId freePages;
};

// What definition pages hold beside what a reader keeps of them.
struct DefinitionExtras {
  std::vector<std::uint32_t> distinctKeys;          // of each real index
  std::map<std::size_t, LongValueMaps> longValues;  // by position of the column
  std::vector<bool> omitted;  // columns that are deleted: rows have them, the definition does not
};

[[nodiscard]] std::vector<std::uint32_t> allocateDefinition(NewFile& file,
                                                            const jet::TableDefinition& definition,
                                                            const DefinitionExtras& extras);

void writeDefinition(NewFile& file, const jet::TableDefinition& definition,
                     const DefinitionExtras& extras, const std::vector<std::uint32_t>& pages);

}  // namespace jetcreate
