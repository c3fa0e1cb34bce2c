#include "jetcreate/data_pages.h"

#include <algorithm>
#include <cassert>

#include "jet/format/layout.h"
#include "jetcreate/layout.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::size_t kOffsetSize = 2;

// A row pointer holds the row in one byte.
constexpr std::uint16_t kMaxRows = 255;

// A page with less room than this is as good as full: the engine would look at it in vain.
constexpr std::size_t kRoomWorthListing = 256;

}  // namespace

std::size_t DataPages::room() const { return end_ - kDataHeaderSize - rows_ * kOffsetSize; }

RowId DataPages::placeFor(std::size_t size) {
  if (!page_.empty() && (room() < size + kOffsetSize || rows_ == kMaxRows)) closePage();
  if (page_.empty()) {
    page_.assign(kPageSize, std::byte{0});
    rows_ = 0;
    end_ = kPageSize;
    owned_.push_back(file_.allocate());
  }
  assert(room() >= size + kOffsetSize);
  return {owned_.back(), rows_};
}

RowId DataPages::add(Bytes row, std::uint16_t flags) {
  const RowId id = placeFor(row.size());
  end_ -= row.size();
  std::copy(row.begin(), row.end(), page_.begin() + static_cast<std::ptrdiff_t>(end_));
  storeLittle(page_, kDataHeaderSize + rows_ * kOffsetSize,
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
  storeLittle(page_, formatOf(Version::kJet4).dataRowCount, rows_);
  file_.write(owned_.back(), page_);
  if (room() >= kRoomWorthListing) withRoom_.push_back(owned_.back());
  page_.clear();
}

}  // namespace jetcreate
