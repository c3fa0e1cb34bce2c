#include "jet/row_update.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "jet/index/entry_change.h"
#include "jet/index/index_edit.h"
#include "jet/pages/data_page.h"
#include "jet/pages/data_page_edit.h"
#include "jet/pages/usage_map.h"
#include "jet/pages/usage_map_edit.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr int kAttempts = 200;
constexpr std::chrono::milliseconds kRetryDelay{10};

constexpr int kMaxForwards = 16;        // the engine makes one; more than a few is a circle
constexpr std::size_t kPagesTried = 8;  // pages with room that are looked at before a new one
constexpr std::size_t kRowPointerSize = 4;

bool isLockConflict(const RuntimeError& failure) {
  return failure.number() == error::kLocked || failure.number() == error::kLockedByUser;
}

void setFields(RowEncoder& row, const TableDefinition& definition,
               std::span<const FieldChange> changes) {
  for (const FieldChange& change : changes) {
    const Column& column = definition.columns.at(change.column);
    row.set(column, encodeField(column, change.value));
  }
}

// What happens to one index.
struct IndexWork {
  const RealIndex* index = nullptr;
  EntryChange change;
};

void checkUnique(PageEdits& edits, const TableDefinition& definition, const IndexWork& work,
                 RowId id) {
  if (!work.index->unique || work.change.nullAfter || work.change.keyAfter.empty()) return;
  if (!IndexEdit(edits, definition, *work.index).hasOther(work.change.keyAfter, id)) return;
  throw RuntimeError(error::kDuplicateKey,
                     "The change to table '" + definition.name +
                         "' would create duplicate values in a unique index.");
}

std::vector<IndexWork> indexWork(PageFile& file, const TableDefinition& definition, RowId id,
                                 const RowEncoder& before, const RowEncoder& after) {
  std::vector<IndexWork> works;
  const FieldOf old = [&](std::size_t c) { return before.get(definition.columns[c]); };
  const FieldOf now = [&](std::size_t c) { return after.get(definition.columns[c]); };
  for (const RealIndex& index : definition.realIndexes) {
    const bool touched = std::ranges::any_of(index.columns, [&](const IndexColumn& part) {
      return definition.columns[part.column].fixed && old(part.column) != now(part.column);
    });
    if (!touched) continue;
    works.push_back({&index, entryChange(file, definition, index, id, old, now)});
  }
  return works;
}

}  // namespace

template <typename Step>
auto RowUpdater::untilUnlocked(Step step) {
  for (int tries = 1;; ++tries) {
    try {
      return step();
    } catch (const RuntimeError& failure) {
      if (!isLockConflict(failure) || tries == kAttempts) throw;
    }
    sleeper_.sleep(kRetryDelay);
  }
}

void RowUpdater::update(std::span<const RowId> ids, std::span<const FieldChange> changes) {
  const bool alone = anyIndexed(changes);
  while (!ids.empty()) {
    const auto elsewhere =
        std::ranges::find_if(ids, [&](RowId id) { return id.page != ids.front().page; });
    const auto neighbours = ids.first(static_cast<std::size_t>(elsewhere - ids.begin()));
    const bool done = !alone && neighbours.size() > 1 &&
                      untilUnlocked([&] { return tryNeighbours(neighbours, changes); });
    if (!done) {
      for (const RowId id : neighbours) untilUnlocked([&] { attempt(id, changes); });
    }
    ids = ids.subspan(neighbours.size());
  }
}

bool RowUpdater::anyIndexed(std::span<const FieldChange> changes) const {
  const auto isChanged = [&](const IndexColumn& part) {
    return std::ranges::any_of(
        changes, [&](const FieldChange& change) { return change.column == part.column; });
  };
  return std::ranges::any_of(table_.definition().realIndexes, [&](const RealIndex& index) {
    return std::ranges::any_of(index.columns, isChanged);
  });
}

// False, and nothing changed, when one of the rows is not to be changed in its place. Which one,
// and why, comes out when they go one by one.
bool RowUpdater::tryNeighbours(std::span<const RowId> ids, std::span<const FieldChange> changes) {
  PageFile& file = table_.file();
  const TableDefinition& definition = table_.definition();
  PageEdits edits(file, locks_);
  Page& page = edits.edit(ids.front().page);
  try {
    checkDataPage(file, page, definition.page);
    for (const RowId id : ids) {
      if (id.row >= rowCount(file.format(), page)) return false;
      const RowSlot slot = rowSlot(file, page, id.row);
      if (slot.deleted || slot.forwarded) return false;
      const auto place = MutableBytes(page.bytes).subspan(slot.start, slot.size());
      RowEncoder row(file, page.number, definition, place);
      setFields(row, definition, changes);
      if (row.grown()) return false;
      std::ranges::copy(row.bytes(), place.begin());
    }
  } catch (const RuntimeError&) {
    return false;
  }
  edits.schedule(page.number);
  edits.writeAll();
  return true;
}

void RowUpdater::attempt(RowId id, std::span<const FieldChange> changes) {
  PageFile& file = table_.file();
  const TableDefinition& definition = table_.definition();
  PageEdits edits(file, locks_);
  const Place place = find(edits, id);
  const RowEncoder before(file, place.at.page, definition, place.bytes);
  RowEncoder after = before;
  setFields(after, definition, changes);
  if (after.bytes() == before.bytes()) return;

  const std::vector<IndexWork> works = indexWork(file, definition, id, before, after);
  for (const IndexWork& work : works) checkUnique(edits, definition, work, id);
  for (const IndexWork& work : works) {
    if (work.change.keyAfter.empty()) continue;
    IndexEdit(edits, definition, *work.index).insert(leafEntry(work.change.keyAfter, id));
  }
  write(edits, id, place, after);
  for (const IndexWork& work : works) {
    if (work.change.keyBefore.empty()) continue;
    IndexEdit(edits, definition, *work.index).remove(leafEntry(work.change.keyBefore, id));
  }
  edits.writeAll();
}

RowUpdater::Place RowUpdater::find(PageEdits& edits, RowId id) {
  const PageFile& file = table_.file();
  RowId at = id;
  for (int forwards = 0;; ++forwards) {
    const Page& page = edits.edit(at.page);
    checkDataPage(file, page, table_.definition().page);
    const bool there = at.row < rowCount(file.format(), page);
    const RowSlot slot = there ? rowSlot(file, page, at.row) : RowSlot{.deleted = true};
    // A forwarded row bears the mark of a deleted one where it arrived.
    if (slot.size() == 0 || (slot.deleted && forwards == 0)) {
      throw RuntimeError(error::kRowDeleted, "Record is deleted: row " + std::to_string(id.row) +
                                                 " of page " + std::to_string(id.page) +
                                                 ", table '" + table_.name() + "' of '" +
                                                 file.path() + "'.");
    }
    if (!slot.forwarded) return {at, Bytes(page.bytes).subspan(slot.start, slot.size())};
    if (slot.size() < kRowPointerSize || forwards == kMaxForwards) {
      file.damaged(at.page, "row " + std::to_string(at.row) + " points nowhere");
    }
    at = loadRowPointer(page.bytes, slot.start);
  }
}

void RowUpdater::write(PageEdits& edits, RowId id, const Place& place, const RowEncoder& row) {
  Page& page = edits.edit(place.at.page);
  if (!row.grown()) {
    const auto start = place.bytes.data() - page.bytes.data();
    std::ranges::copy(row.bytes(), page.bytes.begin() + start);
    edits.schedule(page.number);
    return;
  }
  const std::uint16_t flags = place.at == id ? 0 : kRowDeleted;
  if (replaceRow(edits.file(), page, place.at.row, row.bytes(), flags)) {
    edits.schedule(page.number);
  } else {
    move(edits, id, place, row.bytes());
  }
}

void RowUpdater::move(PageEdits& edits, RowId id, const Place& place, Bytes bytes) {
  const RowId target = placeElsewhere(edits, id, place, bytes);
  std::array<std::byte, kRowPointerSize> pointer{};
  storeRowPointer(pointer, 0, target);
  Page& home = edits.edit(id.page);
  if (!replaceRow(edits.file(), home, id.row, pointer, kRowForwarded)) {
    edits.file().damaged(id.page, "a row is too short to become a pointer");
  }
  edits.schedule(id.page);
  if (place.at == id) return;
  Page& former = edits.edit(place.at.page);
  (void)replaceRow(edits.file(), former, place.at.row, {}, kRowDeleted | kRowForwarded);
  edits.schedule(place.at.page);
}

// On the page that took the last one, on a page of the table that has room, or on a new page.
RowId RowUpdater::placeElsewhere(PageEdits& edits, RowId id, const Place& place, Bytes bytes) {
  const TableDefinition& definition = table_.definition();
  std::vector<std::uint32_t> candidates;
  if (lastTarget_ != 0) candidates.push_back(lastTarget_);
  const std::vector<std::uint32_t> roomy = readUsageMap(edits.file(), definition.freePages);
  for (auto page = roomy.rbegin(); page != roomy.rend() && candidates.size() < kPagesTried;
       ++page) {
    candidates.push_back(*page);
  }
  for (const std::uint32_t number : candidates) {
    if (number == id.page || number == place.at.page) continue;
    if (const auto target = tryPage(edits, number, bytes)) return *target;
  }

  Page& page = allocatePage(edits);
  formatDataPage(edits.format(), page, definition.page);
  const auto row = appendRow(edits.file(), page, bytes, kRowDeleted);
  if (!row) edits.file().damaged(place.at.page, "a row is longer than a page");
  edits.schedule(page.number);
  giveAway(edits, page.number);
  setUsageBit(edits, definition.ownedPages, page.number, true);
  setUsageBit(edits, definition.freePages, page.number, true);
  lastTarget_ = page.number;
  return {page.number, *row};
}

std::optional<RowId> RowUpdater::tryPage(PageEdits& edits, std::uint32_t number, Bytes bytes) {
  // Looked at before it is locked: most pages said to have room have too little.
  const PagePtr seen = edits.file().page(number);
  const auto& owner = table_.definition().page;
  if (loadU8(seen->bytes, 0) != static_cast<std::uint8_t>(PageType::kData)) return std::nullopt;
  if (loadU32(seen->bytes, kPageOwner) != owner) return std::nullopt;
  if (loadU16(seen->bytes, kPageFreeSpace) < bytes.size() + 2) return std::nullopt;
  Page& page = edits.edit(number);
  checkDataPage(edits.file(), page, owner);
  const auto row = appendRow(edits.file(), page, bytes, kRowDeleted);
  if (!row) return std::nullopt;
  edits.schedule(number);
  lastTarget_ = number;
  return RowId{number, *row};
}

}  // namespace jet
