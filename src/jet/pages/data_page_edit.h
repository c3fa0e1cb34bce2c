// Changes within one data page: a row gets longer or shorter, a row is added.
//
//   if (!replaceRow(file, page, 3, newBytes, 0)) ... no room, page untouched
//
// Rows stand from the page's end downwards in the order of their slots, without gaps: what changes
// the size of one moves those after it, and the free space is one piece between the table of row
// offsets and the last row. The page must have passed checkDataPage. Errors: 3049.
#pragma once

#include <cstdint>
#include <optional>

#include "jet/format/bytes.h"
#include "jet/pages/data_page.h"
#include "jet/pages/page_file.h"

namespace jet {

// Bytes between the table of row offsets and the lowest row.
[[nodiscard]] std::size_t freeSpace(const PageFile& file, const Page& page);

// Gives slot `row` these bytes and flags (kRowForwarded, kRowDeleted). False, and nothing changed,
// when the page has no room for them.
[[nodiscard]] bool replaceRow(const PageFile& file, Page& page, std::uint16_t row, Bytes bytes,
                              std::uint16_t flags);

// Adds a slot with these bytes; nothing, and nothing changed, when there is no room or the page has
// as many rows as a row pointer can tell apart.
[[nodiscard]] std::optional<std::uint16_t> appendRow(const PageFile& file, Page& page, Bytes bytes,
                                                     std::uint16_t flags);

// An empty data page of the table whose definition begins on page `owner`.
void formatDataPage(const Format& format, Page& page, std::uint32_t owner);

// Row pointer: place on the page in the low byte, page in the three above.
inline void storeRowPointer(MutableBytes bytes, std::size_t offset, RowId id) {
  storeLittle<std::uint32_t>(bytes, offset, id.page << 8 | id.row);
}

}  // namespace jet
