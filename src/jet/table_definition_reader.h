// Reads a table's definition from its pages.
//
//   TableDefinition d = readTableDefinition(file, text, kCataloguePage, "MSysObjects");
//
// Errors: 3049, naming the table and what is wrong with its definition.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/table_definition.h"
#include "jet/format/text_codec.h"
#include "jet/pages/page_file.h"

namespace jet {

// The pages that hold the values of a long-value column: usage maps.
struct LongValueMaps {
  std::size_t column = 0;  // position in TableDefinition::columns
  RowId ownedPages;
  RowId freePages;
};

// All that the pages of a definition hold; readTableDefinition() gives what reading a table needs.
struct WholeDefinition {
  TableDefinition table;
  std::vector<std::uint32_t> pages;
  std::vector<LongValueMaps> longValues;
};

[[nodiscard]] WholeDefinition readWholeDefinition(PageFile& file, TextDecoder& text,
                                                  std::uint32_t page, const std::string& name);

// `page`: the first definition page, as the catalogue says. The name is the catalogue's too.
[[nodiscard]] TableDefinition readTableDefinition(PageFile& file, TextDecoder& text,
                                                  std::uint32_t page, const std::string& name);

}  // namespace jet
