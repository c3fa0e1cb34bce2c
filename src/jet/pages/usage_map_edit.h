// Allocating pages: bits of the usage maps.
//
//   Page& page = allocatePage(edits);           // empty, nobody else's
//   ... fill it ...; edits.schedule(page.number);
//   markAllocated(edits, page.number);               // no longer free in the file's own map
//   setUsageBit(edits, definition.ownedPages, page.number, true);
//
// In that order: a kill between two of the steps leaves a page that nobody uses, at worst. In the
// file's own map (row 0 of page 1) a set bit means that the page is free, and pages that the map
// does not reach are free as well. A map of a few bytes in its row that does not reach a page is
// turned into a list of map pages, as the engine does. All maps touched stay locked until the
// edits end, so two users never get the same page. Errors: 3049.
#pragma once

#include <cstdint>

#include "jet/format/row_id.h"
#include "jet/pages/page_edits.h"

namespace jet {

// A page after the file's last one that the file's own map calls free. Pages inside the file that
// are free are left alone: another program may still have what they held in its memory.
[[nodiscard]] Page& allocatePage(PageEdits& edits);

// Takes a written page out of the free ones.
void markAllocated(PageEdits& edits, std::uint32_t page);

// Sets or clears a page's bit in a map and schedules what that changes.
void setUsageBit(PageEdits& edits, RowId map, std::uint32_t page, bool value);

}  // namespace jet
