#include "jetcreate/data_pages.h"

#include <algorithm>
#include <cassert>

#include "jet/format/creation_format.h"
#include "jet/format/layout.h"

namespace jetcreate {

using namespace jet;

namespace {

// A page with fewer free bytes counts as full: hardly a row would fit on it.
constexpr std::size_t kRoomWorthListing = 256;

}  // namespace

std::size_t DataPages::room() const {
  return end_ - file_.format().dataRowOffsets - rows_ * kRowOffsetSize;
}

RowId DataPages::placeFor(std::size_t size) {
  if (!page_.empty() && (room() < size + kRowOffsetSize || rows_ == kMaxRowsOnPage)) closePage();
  if (page_.empty()) {
    page_.assign(file_.format().pageSize, std::byte{0});
    rows_ = 0;
    end_ = file_.format().pageSize;
    owned_.push_back(file_.allocate());
  }
  assert(room() >= size + kRowOffsetSize);
  return {owned_.back(), rows_};
}

RowId DataPages::add(Bytes row, std::uint16_t flags) {
  const RowId id = placeFor(row.size());
  end_ -= row.size();
  std::copy(row.begin(), row.end(), page_.begin() + static_cast<std::ptrdiff_t>(end_));
  storeLittle(page_, file_.format().dataRowOffsets + rows_ * kRowOffsetSize,
              static_cast<std::uint16_t>(end_ | flags));
  ++rows_;
  return id;
}

void DataPages::closePage() {
  if (page_.empty()) return;
  storeLittle(page_, 0, PageType::kData);
  storeLittle(page_, 1, kPageMark);
  storeLittle(page_, kPageFreeSpace, static_cast<std::uint16_t>(room()));
  storeLittle(page_, kPageOwner, owner_);
  storeLittle(page_, file_.format().dataRowCount, rows_);
  file_.write(owned_.back(), page_);
  if (room() >= kRoomWorthListing) withRoom_.push_back(owned_.back());
  page_.clear();
}

}  // namespace jetcreate
