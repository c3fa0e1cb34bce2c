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

struct UsageMap {
  std::vector<std::uint32_t> pages;     // ascending
  std::vector<std::uint32_t> bitPages;  // that hold nothing but bits of this map
};

enum class BeyondEnd : std::uint8_t { kDamage, kLeftOut };

// The whole map. Pages that the file does not have are damage in a map of pages in use; the file's
// own map of free pages goes on after the last one.
[[nodiscard]] UsageMap readWholeUsageMap(PageFile& file, RowId map, BeyondEnd beyondEnd);

// The mapped pages, ascending. Read from the file as it is at this moment, not from the cache; a
// page that the file does not have is damage.
[[nodiscard]] std::vector<std::uint32_t> readUsageMap(PageFile& file, RowId map);

}  // namespace jet
