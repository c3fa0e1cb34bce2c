#include "jet/index/index_page_cache.h"

#include <utility>

namespace jet {

IndexPagePtr IndexPageCache::get(PageFile& file, std::uint32_t number, std::uint32_t owner) {
  PagePtr page = file.page(number);
  const auto found = pages_.find(number);
  if (found != pages_.end() && found->second.page->page() == page) return found->second.page;
  if (found == pages_.end() && pages_.size() >= kMaxPages) pages_.clear();
  auto taken = std::make_shared<const IndexPage>(file, std::move(page), owner);
  pages_[number] = {taken, nullptr};
  return taken;
}

IndexPagePtr IndexPageCache::child(PageFile& file, const IndexPage& node, std::size_t position,
                                   std::uint32_t owner) {
  IndexPagePtr child = get(file, node.child(position), owner);
  PagePtr& checked = pages_[child->page()->number].checkedUnder;
  if (checked == node.page() || child->size() == 0) return child;

  const bool isTail = position == node.size();
  if (position != 0 && child->compare(0, node.keyBytes(position - 1)) <= 0) return nullptr;
  if (!isTail && child->compare(child->size() - 1, node.keyBytes(position)) > 0) return nullptr;
  checked = node.page();
  return child;
}

IndexPagePtr IndexPageCache::next(PageFile& file, const IndexPage& leaf, std::uint32_t owner) {
  IndexPagePtr next = get(file, leaf.header.next, owner);
  if (!next->isLeaf() || next->header.previous != leaf.page()->number) return nullptr;
  if (next->size() == 0 || leaf.size() == 0) return next;
  return next->compare(0, leaf.keyBytes(leaf.size() - 1)) > 0 ? next : nullptr;
}

}  // namespace jet
