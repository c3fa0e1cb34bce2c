#include "jetcreate/index_level.h"

#include <cassert>
#include <utility>

namespace jetcreate {

using namespace jet;

void IndexLevel::add(Bytes entry) {
  const Format& format = file_.format();
  if (page_.append(format, entry)) return;
  closePage(false);
  [[maybe_unused]] const bool fits = page_.append(format, entry);
  assert(fits);
}

void IndexLevel::addChild(const IndexChild& child) { add(nodeEntry(child.lastKey, child.page)); }

// The pages of a level are allocated one after the other, so that the number of the next one is
// known before it is made.
void IndexLevel::closePage(bool last) {
  const Format& format = file_.format();
  const std::uint32_t number = file_.allocate();
  page_.header.previous = pages_.empty() ? 0 : pages_.back();
  page_.header.next = last ? 0 : number + 1;
  page_.header.tail = last ? tail_.page : 0;
  std::vector<std::byte> bytes(format.pageSize);
  [[maybe_unused]] const bool fits = page_.store(format, bytes);
  assert(fits);
  file_.write(number, bytes);

  IndexChild child{.page = number, .lastKey = {}};
  if (page_.header.tail != 0) {
    child.lastKey = std::move(tail_.lastKey);
  } else if (page_.size() != 0) {
    child.lastKey = page_.keyBytes(page_.size() - 1);
  }
  pages_.push_back(number);
  children_.push_back(std::move(child));
  page_ = emptyPage();
}

std::vector<IndexChild> IndexLevel::finish() {
  closePage(true);
  return std::move(children_);
}

}  // namespace jetcreate
