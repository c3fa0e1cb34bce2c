#include "jet/table.h"

#include "jet/index/key_codec.h"
#include "jet/pages/data_page.h"
#include "jet/pages/usage_map.h"
#include "values/runtime_error.h"

namespace jet {

TableCursor::TableCursor(Table& table) : table_(&table) { rewind(); }

void TableCursor::rewind() {
  pages_ = readUsageMap(table_->file(), table_->definition().ownedPages);
  nextPage_ = 0;
  page_.reset();
  nextRow_ = rowsOnPage_ = 0;
}

bool TableCursor::nextPage() {
  if (nextPage_ == pages_.size()) return false;
  page_ = table_->dataPage(pages_[nextPage_++]);
  nextRow_ = 0;
  rowsOnPage_ = rowCount(table_->file().format(), *page_);
  return true;
}

bool TableCursor::next() {
  for (;;) {
    while (nextRow_ == rowsOnPage_) {
      if (!nextPage()) return false;
    }
    if (table_->rowAt(page_, nextRow_++, row_, Table::Freshness::kCached)) return true;
  }
}

Table::Table(PageFile& file, TextDecoder& text, TableDefinition definition)
    : file_(file), definition_(std::move(definition)), context_{definition_, file, text} {}

Table::~Table() = default;

PagePtr Table::dataPage(std::uint32_t number, Freshness freshness) {
  PagePtr page = freshness == Freshness::kFresh ? file_.freshPage(number) : file_.page(number);
  checkDataPage(file_, *page, definition_.page);
  return page;
}

bool Table::rowAt(const PagePtr& first, std::uint16_t row, Row& out, Freshness freshness) {
  const RowId id{first->number, row};
  const RowSlot slot = rowSlot(file_, *first, row);
  if (slot.deleted) return false;
  if (!slot.forwarded) {
    const Bytes bytes = Bytes(first->bytes).subspan(slot.start, slot.size());
    if (out.page() == first) {
      out.moveTo(id, bytes);
    } else {
      out = Row(context_, id, first, bytes);
    }
    return true;
  }
  PagePtr page;
  const auto pageAt = [&](std::uint32_t number) -> const Page& {
    page = number == first->number ? first : dataPage(number, freshness);
    return *page;
  };
  const ForwardedRow found = followForwards(file_, id, pageAt);
  const Bytes bytes = Bytes(page->bytes).subspan(found.slot.start, found.slot.size());
  out = Row(context_, id, std::move(page), bytes);
  return true;
}

bool Table::tryRead(RowId id, Row& row, Freshness freshness) {
  const PagePtr page = dataPage(id.page, freshness);
  return id.row < rowCount(file_.format(), *page) && rowAt(page, id.row, row, freshness);
}

bool Table::tryReadNext(RowId id, Row& row) {
  const PagePtr& page = row.page();
  if (page != nullptr && page->number == id.page && !file_.isCurrent(*page)) {
    return tryRead(id, row);
  }
  return tryReadInWalk(id, row);
}

bool Table::tryReadInWalk(RowId id, Row& row) {
  const Page* page = row.page().get();
  if (page == nullptr || page->number != id.page) return tryRead(id, row);
  if (id.row >= rowCount(file_.format(), *page)) return false;
  const RowSlot slot = rowSlot(file_, *page, id.row);
  if (slot.deleted) return false;
  if (slot.forwarded) return tryRead(id, row);
  row.moveTo(id, Bytes(page->bytes).subspan(slot.start, slot.size()));
  return true;
}

Row Table::read(RowId id, Freshness freshness) {
  Row row;
  if (tryRead(id, row, freshness)) return row;
  throw RuntimeError(error::kRowDeleted, "Record is deleted: row " + std::to_string(id.row) +
                                             " of page " + std::to_string(id.page) + ", table '" +
                                             name() + "' of '" + file_.path() + "'.");
}

bool Table::canSeek(std::size_t realIndex, std::size_t columns) const {
  const RealIndex& index = definition_.realIndexes.at(realIndex);
  if (columns > index.columns.size()) return false;
  for (std::size_t i = 0; i < columns; ++i) {
    const Column& column = definition_.columns[index.columns[i].column];
    const bool known = hasKeys(column.type, index.columns[i].ascending);
    if (!known && column.weights == nullptr) return false;
  }
  return true;
}

IndexCursor Table::seek(std::size_t realIndex, const KeyRange& range) {
  return {file_, indexPages_, definition_, definition_.realIndexes.at(realIndex), range};
}

}  // namespace jet
