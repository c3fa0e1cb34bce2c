#include "jet/rows/row_relocation.h"

#include <array>
#include <vector>

#include "jet/pages/data_page.h"
#include "jet/pages/data_page_edit.h"
#include "jet/pages/usage_map.h"
#include "jet/pages/usage_map_edit.h"

namespace jet {
namespace {

constexpr std::size_t kPagesTried = 8;  // pages with room that are looked at before a new one

}  // namespace

void RowRelocation::move(PageEdits& edits, RowId id, RowId place, Bytes bytes) {
  const RowId target = put(edits, id, place, bytes);
  std::array<std::byte, kRowPointerSize> pointer{};
  storeRowPointer(pointer, 0, target);
  Page& home = edits.edit(id.page);
  if (!replaceRow(edits.file(), home, id.row, pointer, kRowForwarded)) {
    edits.file().damaged(id.page, "a row is too short to become a pointer");
  }
  edits.schedule(id.page);
  if (place == id) return;
  Page& former = edits.edit(place.page);
  (void)replaceRow(edits.file(), former, place.row, {}, kRowDeleted | kRowForwarded);
  edits.schedule(place.page);
}

RowId RowRelocation::put(PageEdits& edits, RowId id, RowId place, Bytes bytes) {
  std::vector<std::uint32_t> candidates;
  if (lastTarget_ != 0) candidates.push_back(lastTarget_);
  const std::vector<std::uint32_t> withRoom = readUsageMap(edits.file(), definition_.freePages);
  for (auto page = withRoom.rbegin(); page != withRoom.rend() && candidates.size() < kPagesTried;
       ++page) {
    candidates.push_back(*page);
  }
  for (const std::uint32_t number : candidates) {
    if (number == id.page || number == place.page) continue;
    if (const auto target = tryPage(edits, number, bytes)) return *target;
  }
  return putOnNewPage(edits, bytes);
}

std::optional<RowId> RowRelocation::tryPage(PageEdits& edits, std::uint32_t number, Bytes bytes) {
  // Looked at before it is locked: most pages said to have room have too little.
  const PagePtr seen = edits.file().page(number);
  const std::uint32_t owner = definition_.page;
  if (loadU8(seen->bytes, 0) != static_cast<std::uint8_t>(PageType::kData)) return std::nullopt;
  if (loadU32(seen->bytes, kPageOwner) != owner) return std::nullopt;
  if (loadU16(seen->bytes, kPageFreeSpace) < bytes.size() + kRowOffsetSize) return std::nullopt;
  Page& page = edits.edit(number);
  checkDataPage(edits.file(), page, owner);
  const auto row = appendRow(edits.file(), page, bytes, kRowDeleted);
  if (!row) return std::nullopt;
  edits.schedule(number);
  lastTarget_ = number;
  return RowId{number, *row};
}

RowId RowRelocation::putOnNewPage(PageEdits& edits, Bytes bytes) {
  Page& page = allocatePage(edits);
  formatDataPage(edits.format(), page, definition_.page);
  const auto row = appendRow(edits.file(), page, bytes, kRowDeleted);
  if (!row) edits.file().damaged(page.number, "a row is longer than a page");
  edits.schedule(page.number);
  markAllocated(edits, page.number);
  setUsageBit(edits, definition_.ownedPages, page.number, true);
  setUsageBit(edits, definition_.freePages, page.number, true);
  lastTarget_ = page.number;
  return {page.number, *row};
}

}  // namespace jet
