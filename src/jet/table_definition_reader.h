// Reads a table's definition from its pages.
//
//   TableDefinition d = readTableDefinition(file, text, kCataloguePage, "MSysObjects");
//
// Errors: 3049, naming the table and what is wrong with its definition.
#pragma once

#include <cstdint>
#include <string>

#include "jet/format/table_definition.h"
#include "jet/format/text_codec.h"
#include "jet/pages/page_file.h"

namespace jet {

// `page`: the first definition page, as the catalogue says. The name is the catalogue's too.
[[nodiscard]] TableDefinition readTableDefinition(PageFile& file, TextDecoder& text,
                                                  std::uint32_t page, const std::string& name);

}  // namespace jet
