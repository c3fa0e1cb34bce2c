#include "jet/rows/row_update.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>

#include "jet/index/entry_change.h"
#include "jet/index/index_edit.h"
#include "jet/pages/data_page.h"
#include "jet/pages/data_page_edit.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr int kAttempts = 200;
constexpr std::chrono::milliseconds kRetryDelay{10};

bool isLockConflict(const RuntimeError& failure) {
  return failure.number() == error::kLocked || failure.number() == error::kLockedByUser;
}

// The entries that a row leaves and gets in one index.
struct IndexWork {
  const RealIndex* index = nullptr;
  EntryChange change;
};

bool hasChanged(const RowToUpdate& row, Bytes now) {
  if (row.asRead == nullptr) return false;
  const Bytes then = row.asRead->bytes();
  return then.size() != now.size() || std::memcmp(then.data(), now.data(), now.size()) != 0;
}

void checkUnique(PageEdits& edits, const TableDefinition& definition, const IndexWork& work,
                 RowId id) {
  if (!work.index->unique || work.change.nullAfter || work.change.keyAfter.empty()) return;
  if (!IndexEdit(edits, definition, *work.index).hasOther(work.change.keyAfter, id)) return;
  throw RuntimeError(error::kDuplicateKey,
                     "The change to table '" + definition.name +
                         "' would create duplicate values in a unique index.");
}

std::vector<IndexWork> indexWork(PageFile& file, const TableDefinition& definition, RowId id,
                                 const RowPatch& before, const RowPatch& after) {
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
auto RowUpdater::retryOnLockConflict(Step step) {
  for (int tries = 1;; ++tries) {
    try {
      return step();
    } catch (const RuntimeError& failure) {
      if (!isLockConflict(failure) || tries == kAttempts) throw;
    }
    sleeper_.sleep(kRetryDelay);
  }
}

void RowUpdater::update(std::span<const RowToUpdate> rows, std::span<const FieldValue> fields) {
  const std::vector<Change> changes = changesFor(fields);
  const bool indexed = anyIndexed(changes);
  while (!rows.empty()) {
    const auto elsewhere = std::ranges::find_if(
        rows, [&](const RowToUpdate& row) { return row.id.page != rows.front().id.page; });
    const auto samePage = rows.first(static_cast<std::size_t>(elsewhere - rows.begin()));
    const bool done = !indexed && samePage.size() > 1 &&
                      retryOnLockConflict([&] { return updateSamePage(samePage, changes); });
    if (!done) {
      for (const RowToUpdate& row : samePage) {
        retryOnLockConflict([&] { updateRow(row, changes); });
      }
    }
    rows = rows.subspan(samePage.size());
  }
}

std::vector<RowUpdater::Change> RowUpdater::changesFor(std::span<const FieldValue> fields) const {
  std::vector<Change> changes;
  for (const FieldValue& field : fields) {
    const auto column = definition_.findColumn(field.name);
    if (!column) {
      throw RuntimeError(error::kItemNotFound, "Table '" + definition_.name + "' has no field '" +
                                                   std::string(field.name) + "'.");
    }
    changes.push_back({definition_.columns[*column], field.value});
  }
  return changes;
}

bool RowUpdater::anyIndexed(std::span<const Change> changes) const {
  const auto isChanged = [&](const IndexColumn& part) {
    return std::ranges::any_of(changes, [&](const Change& change) {
      return &change.column == &definition_.columns[part.column];
    });
  };
  return std::ranges::any_of(definition_.realIndexes, [&](const RealIndex& index) {
    return std::ranges::any_of(index.columns, isChanged);
  });
}

std::vector<StoredField> RowUpdater::encoded(std::span<const Change> changes) {
  std::vector<StoredField> fields;
  for (const Change& c : changes) fields.push_back(encodeMark(c.column, c.value));
  return fields;
}

// False, with nothing changed, when one of the rows cannot be changed in its place. Which one, and
// why, is found when they are changed one by one.
bool RowUpdater::updateSamePage(std::span<const RowToUpdate> rows,
                                std::span<const Change> changes) {
  PageEdits edits(file_, locks_);
  Page& page = edits.edit(rows.front().id.page);
  RowPatch patch(file_, page.number, definition_);
  try {
    checkDataPage(file_, page, definition_.page);
    const std::vector<StoredField> fields = encoded(changes);
    for (const RowToUpdate& row : rows) {
      if (row.id.row >= rowCount(file_.format(), page)) return false;
      const RowSlot slot = rowSlot(file_, page, row.id.row);
      if (slot.deleted || slot.forwarded) return false;
      const auto place = MutableBytes(page.bytes).subspan(slot.start, slot.size());
      if (hasChanged(row, place)) continue;
      patch.start(place);
      for (std::size_t i = 0; i < changes.size(); ++i) patch.set(changes[i].column, fields[i]);
      if (patch.grown()) return false;
      std::copy(patch.bytes().begin(), patch.bytes().end(), place.data());
    }
  } catch (const RuntimeError&) {
    return false;
  }
  edits.schedule(page.number);
  edits.writeAll();
  return true;
}

void RowUpdater::updateRow(const RowToUpdate& target, std::span<const Change> changes) {
  PageEdits edits(file_, locks_);
  const RowId id = target.id;
  const Place place = find(edits, id);
  if (hasChanged(target, place.bytes)) return;
  const RowPatch before(file_, place.at.page, definition_, place.bytes);
  RowPatch after(file_, place.at.page, definition_, place.bytes);
  for (const Change& c : changes) after.set(c.column, encodeMark(c.column, c.value));
  if (after.bytes() == before.bytes()) return;

  const std::vector<IndexWork> works = indexWork(file_, definition_, id, before, after);
  for (const IndexWork& work : works) checkUnique(edits, definition_, work, id);
  for (const IndexWork& work : works) {
    if (work.change.keyAfter.empty()) continue;
    IndexEdit(edits, definition_, *work.index).insert(leafEntry(work.change.keyAfter, id));
  }
  write(edits, id, place, after);
  for (const IndexWork& work : works) {
    if (work.change.keyBefore.empty()) continue;
    IndexEdit(edits, definition_, *work.index).remove(leafEntry(work.change.keyBefore, id));
  }
  edits.writeAll();
}

RowUpdater::Place RowUpdater::find(PageEdits& edits, RowId id) {
  const auto pageAt = [&](std::uint32_t number) -> const Page& {
    const Page& page = edits.edit(number);
    checkDataPage(file_, page, definition_.page);
    return page;
  };
  const Page& page = pageAt(id.page);
  const bool there = id.row < rowCount(file_.format(), page);
  const RowSlot slot = there ? rowSlot(file_, page, id.row) : RowSlot{.deleted = true};
  if (slot.deleted || slot.size() == 0) {
    throw RuntimeError(error::kRowDeleted, "Record is deleted: row " + std::to_string(id.row) +
                                               " of page " + std::to_string(id.page) + ", table '" +
                                               definition_.name + "' of '" + file_.path() + "'.");
  }
  const ForwardedRow row =
      slot.forwarded ? followForwards(file_, id, pageAt) : ForwardedRow{id, slot};
  return {row.at, Bytes(edits.edit(row.at.page).bytes).subspan(row.slot.start, row.slot.size())};
}

void RowUpdater::write(PageEdits& edits, RowId id, const Place& place, const RowPatch& row) {
  Page& page = edits.edit(place.at.page);
  if (!row.grown()) {
    const auto start = place.bytes.data() - page.bytes.data();
    std::copy(row.bytes().begin(), row.bytes().end(), page.bytes.data() + start);
    edits.schedule(page.number);
    return;
  }
  const std::uint16_t flags = place.at == id ? 0 : kRowDeleted;
  if (replaceRow(edits.file(), page, place.at.row, row.bytes(), flags)) {
    edits.schedule(page.number);
  } else {
    relocation_.move(edits, id, place.at, row.bytes());
  }
}

}  // namespace jet
