#include "jet/pages/page_cache.h"

#include <algorithm>
#include <utility>

namespace jet {

const PagePtr* PageCache::find(std::uint32_t number) {
  const std::uint32_t found = slotOf(number);
  if (found == kNoSlot) return nullptr;
  slots_[found].used = true;
  return &slots_[found].page;
}

void PageCache::keep(std::shared_ptr<Page> page) {
  const std::uint32_t number = page->number;
  if (number >= slotOf_.size()) slotOf_.resize(std::size_t{number} + 1, kNoSlot);
  if (slotOf_[number] == kNoSlot) slotOf_[number] = freeSlot();
  slots_[slotOf_[number]] = {std::move(page), true};
}

std::uint32_t PageCache::freeSlot() {
  if (slots_.size() < capacity_) {
    slots_.emplace_back();
    return static_cast<std::uint32_t>(slots_.size() - 1);
  }
  // The first page that was not used since the hand last passed makes room.
  while (std::exchange(slots_[hand_].used, false)) hand_ = (hand_ + 1) % slots_.size();
  PagePtr old = std::move(slots_[hand_].page);
  slotOf_[old->number] = kNoSlot;
  // Nobody else sees it any more, so it may be written to again.
  if (old.use_count() == 1) spare_ = std::const_pointer_cast<Page>(std::move(old));
  return static_cast<std::uint32_t>(hand_);
}

std::shared_ptr<Page> PageCache::spare() {
  return spare_ != nullptr ? std::exchange(spare_, nullptr) : std::make_shared<Page>();
}

void PageCache::clear() {
  slots_.clear();
  hand_ = 0;
  std::ranges::fill(slotOf_, kNoSlot);
}

}  // namespace jet
