// Usage maps: which pages belong to a table, or have room left.
//
//   for (std::uint32_t page : readUsageMap(file, definition.ownedPages)) …
//
// A map is a row of its own on a data page: a bitmap from a start page on, or (in larger files) a
// list of pages that hold nothing but bitmap. Errors: 3049.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/pages/page_file.h"

namespace jet {

enum class UsageMapKind : std::uint8_t { kInline = 0, kReference = 1 };

// The mapped pages, ascending. Read from the file as it is at this moment, not from the cache; a
// page that the file does not have is damage.
[[nodiscard]] std::vector<std::uint32_t> readUsageMap(PageFile& file, RowId map);

}  // namespace jet
