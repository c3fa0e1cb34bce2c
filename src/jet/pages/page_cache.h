// A bounded number of pages in memory, by their numbers. Replacement is the clock algorithm.
//
//   PageCache cache(1024);
//   cache.keep(page);
//   if (const PagePtr* found = cache.find(17)) use(**found);
//
// Private to PageFile, which says what may be kept and for how long. A page that is held elsewhere
// stays alive and unchanged when the cache lets go of it. Page numbers are positions in a vector:
// only pages that the file has may be kept. No errors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/pages/page.h"

namespace jet {

class PageCache {
 public:
  explicit PageCache(std::size_t capacity) : capacity_(capacity) {}  // pages, at least 1

  [[nodiscard]] std::size_t capacity() const { return capacity_; }
  [[nodiscard]] bool has(std::uint32_t number) const { return slotOf(number) != kNoSlot; }

  // Null where it is not kept. The pointer holds until the next call that is not const.
  [[nodiscard]] const PagePtr* find(std::uint32_t number);

  // Takes the place of a page of the same number, or of one that was not used for long.
  void keep(std::shared_ptr<Page> page);

  // A page to read into: one that was let go and that nobody holds, else a new one.
  [[nodiscard]] std::shared_ptr<Page> spare();

  void clear();

 private:
  static constexpr std::uint32_t kNoSlot = UINT32_MAX;

  struct Slot {
    PagePtr page;
    bool used = false;  // since the clock hand last passed
  };

  [[nodiscard]] std::uint32_t slotOf(std::uint32_t number) const {
    return number < slotOf_.size() ? slotOf_[number] : kNoSlot;
  }
  [[nodiscard]] std::uint32_t freeSlot();

  std::size_t capacity_;
  std::vector<Slot> slots_;
  std::size_t hand_ = 0;
  std::vector<std::uint32_t> slotOf_;  // by page number
  std::shared_ptr<Page> spare_;
};

}  // namespace jet
