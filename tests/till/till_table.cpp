#include "till_table.h"

#include <algorithm>
#include <stdexcept>

#include "jet/index/key_codec.h"
#include "jet/pages/data_page_edit.h"
#include "jet/pages/usage_map.h"
#include "jet/pages/usage_map_edit.h"

namespace till {

using namespace jet;

namespace {

constexpr std::uint16_t kGone = kRowDeleted | kRowForwarded;

StoredField encoded(const Column& column, const values::Variant& value) {
  return column.type == ColumnType::kYesNo || value.isNull() ? encodeMark(column, value)
                                                             : encodeFixed(column, value);
}

}  // namespace

bool TillTable::isTemplate(const Row& row) const {
  const auto& columns = definition_.columns;
  const auto layout = RowLayout::of(file_.format(), row.bytes());
  if (!layout || layout->columns() != columns.size()) return false;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    if (columns[c].isLongValue() && !row.isNull(c)) return false;
  }
  return true;
}

TillTable::RowBytes TillTable::patched(Bytes row, const Fields& fields) const {
  RowPatch patch(file_, 0, definition_, row);
  for (const FieldValue& field : fields) {
    const Column& c = definition_.columns[column(field.name)];
    patch.set(c, encoded(c, field.value));
  }
  return patch.bytes();
}

std::int32_t TillTable::nextNumber(PageEdits& edits) const {
  Page& page = edits.edit(definition_.page);
  const std::size_t at = file_.format().definitionAutonumber;
  const std::uint32_t number = loadU32(page.bytes, at) + 1;
  storeLittle(page.bytes, at, number);
  return static_cast<std::int32_t>(number);
}

RowId TillTable::insert(PageEdits& edits, const RowBytes& row) {
  const RowId id = place(edits, row);
  for (const RealIndex& index : definition_.realIndexes) {
    IndexEdit(edits, definition_, index).insert(entry(index, row, id));
  }
  count(edits, 1);
  return id;
}

RowId TillTable::place(PageEdits& edits, const RowBytes& row) {
  const std::vector<std::uint32_t> withRoom = readUsageMap(file_, definition_.freePages);
  for (auto number = withRoom.rbegin(); number != withRoom.rend(); ++number) {
    if (loadU16(file_.page(*number)->bytes, kPageFreeSpace) < row.size() + kRowOffsetSize) continue;
    Page& page = edits.edit(*number);
    checkDataPage(file_, page, definition_.page);
    const auto slot = appendRow(file_, page, row, 0);
    if (!slot) continue;
    edits.schedule(*number);
    return {*number, *slot};
  }
  Page& page = allocatePage(edits);
  formatDataPage(edits.format(), page, definition_.page);
  edits.schedule(page.number);
  markAllocated(edits, page.number);
  setUsageBit(edits, definition_.ownedPages, page.number, true);
  setUsageBit(edits, definition_.freePages, page.number, true);
  const auto slot = appendRow(file_, page, row, 0);
  edits.schedule(page.number);
  return {page.number, slot.value()};
}

ForwardedRow TillTable::find(PageEdits& edits, RowId id) const {
  const auto pageAt = [&](std::uint32_t number) -> const Page& {
    const Page& page = edits.edit(number);
    checkDataPage(file_, page, definition_.page);
    return page;
  };
  const RowSlot slot = rowSlot(file_, pageAt(id.page), id.row);
  return slot.forwarded ? followForwards(file_, id, pageAt) : ForwardedRow{id, slot};
}

std::vector<std::byte> TillTable::entry(const RealIndex& index, Bytes row, RowId id) const {
  const RowPatch fields(file_, id.page, definition_, row);
  std::vector<std::byte> key;
  for (const IndexColumn& part : index.columns) {
    const Column& column = definition_.columns[part.column];
    const StoredField field = fields.get(column);
    appendKey(column, part.ascending, field ? std::optional<Bytes>(*field) : std::nullopt, key);
  }
  return leafEntry(std::move(key), id);
}

void TillTable::change(PageEdits& edits, RowId id, const Fields& fields) {
  const ForwardedRow place = find(edits, id);
  Page& page = edits.edit(place.at.page);
  const auto bytes = MutableBytes(page.bytes).subspan(place.slot.start, place.slot.size());
  const RowBytes before(bytes.begin(), bytes.end());
  const RowBytes after = patched(before, fields);
  if (after.size() != before.size()) throw std::logic_error("a till's change lengthens no row");
  for (const RealIndex& index : definition_.realIndexes) {
    const auto now = entry(index, after, id);
    if (now != entry(index, before, id)) IndexEdit(edits, definition_, index).insert(now);
  }
  std::ranges::copy(after, bytes.begin());
  edits.schedule(page.number);
  for (const RealIndex& index : definition_.realIndexes) {
    const auto old = entry(index, before, id);
    if (old != entry(index, after, id)) IndexEdit(edits, definition_, index).remove(old);
  }
}

void TillTable::remove(PageEdits& edits, RowId id) {
  const ForwardedRow place = find(edits, id);
  const Bytes bytes = Bytes(edits.edit(place.at.page).bytes);
  const Bytes row = bytes.subspan(place.slot.start, place.slot.size());
  for (const RealIndex& index : definition_.realIndexes) {
    IndexEdit(edits, definition_, index).remove(entry(index, row, id));
  }
  for (const RowId at : {id, place.at}) {
    (void)replaceRow(file_, edits.edit(at.page), at.row, {}, kGone);
    edits.schedule(at.page);
  }
  count(edits, -1);
}

void TillTable::count(PageEdits& edits, std::int32_t difference) const {
  Page& page = edits.edit(definition_.page);
  const std::size_t at = file_.format().definitionRowCount;
  storeLittle(page.bytes, at, loadU32(page.bytes, at) + static_cast<std::uint32_t>(difference));
  edits.schedule(page.number);
}

void TillTable::repair(LockFile& locks) {
  for (const RealIndex& index : definition_.realIndexes) {
    PageEdits edits(file_, locks);
    emptyTree(edits, index);
    edits.writeAll();
  }
  std::int32_t rows = 0;
  std::int64_t last = 0;
  for (auto scan = table_.scan(); scan.next(); ++rows) {
    const Row& row = scan.row();
    PageEdits edits(file_, locks);
    for (const RealIndex& index : definition_.realIndexes) {
      IndexEdit(edits, definition_, index).insert(entry(index, row.bytes(), row.id()));
    }
    edits.writeAll();
    last = std::max(last, row.wholeNumber(0));
  }
  PageEdits edits(file_, locks);
  Page& page = edits.edit(definition_.page);
  storeLittle(page.bytes, file_.format().definitionRowCount, rows);
  const std::size_t at = file_.format().definitionAutonumber;
  storeLittle(page.bytes, at, std::max(loadU32(page.bytes, at), static_cast<std::uint32_t>(last)));
  edits.schedule(page.number);
  edits.writeAll();
}

void TillTable::makeFirstColumnAutonumber(LockFile& locks) {
  const Format& format = file_.format();
  PageEdits edits(file_, locks);
  Page& page = edits.edit(definition_.page);
  const std::size_t columns =
      format.definitionEnd + definition_.realIndexes.size() * format.realIndexCountSize;
  page.bytes[columns + format.columnFlags] |= std::byte{kColumnAutonumber};
  edits.schedule(page.number);
  edits.writeAll();
}

void TillTable::ageRows(LockFile& locks) {
  std::vector<std::pair<RowId, RowBytes>> rows;
  for (auto scan = table_.scan(); scan.next();) {
    const auto layout = RowLayout::of(file_.format(), scan.row().bytes()).value();
    if (layout.columns() == definition_.columns.size()) continue;
    // One byte of the null mask less.
    const std::size_t columns = (layout.columns() - 1) / 8 * 8;
    RowBytes row(layout.row().begin(), layout.row().end() - 1);
    row[0] = static_cast<std::byte>(columns);
    rows.emplace_back(scan.row().id(), row);
  }
  PageEdits edits(file_, locks);
  for (const auto& [id, row] : rows) {
    (void)replaceRow(file_, edits.edit(id.page), id.row, row, 0);
  }
  for (const std::uint32_t number : readUsageMap(file_, definition_.ownedPages)) {
    Page& page = edits.edit(number);
    const std::size_t room = freeSpace(file_, page);
    if (room >= kRowOffsetSize) {
      (void)appendRow(file_, page, RowBytes(room - kRowOffsetSize), kRowDeleted);
    }
    edits.schedule(number);
  }
  edits.writeAll();
}

// One empty leaf; the other pages stay the index's, as leaves that got empty do.
void TillTable::emptyTree(PageEdits& edits, const RealIndex& index) const {
  for (const std::uint32_t number : readUsageMap(file_, index.usageMap)) {
    IndexPage leaf(PageType::kIndexLeaf, {.owner = definition_.page});
    (void)leaf.store(edits.format(), edits.edit(number).bytes);
    edits.schedule(number);
  }
}

}  // namespace till
