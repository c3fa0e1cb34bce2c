#include "jet/pages/page_file.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "jet/format/rc4.h"
#include "values/runtime_error.h"

namespace jet {

PageFile::PageFile(RandomAccessFile file, const Format& format, std::uint32_t encodingKey,
                   bool readOnly, std::size_t cacheBytes)
    : file_(std::move(file)),
      format_(format),
      key_(encodingKey),
      readOnly_(readOnly),
      capacity_(std::max<std::size_t>(cacheBytes / format.pageSize, 1)) {}

std::uint32_t PageFile::pageCount() const {
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(file_.size() / format_.pageSize, UINT32_MAX));
}

void PageFile::share(std::optional<int> slot, const platform::TickCounter& ticks) {
  commits_.emplace(slot, ticks);
  lookForChanges();
}

PagePtr PageFile::page(std::uint32_t number) {
  if (commits_ && commits_->isLookDue()) lookForChanges();
  const auto found = slotOf_.find(number);
  if (found == slotOf_.end()) return freshPage(number);
  Slot& slot = slots_[found->second];
  slot.used = true;
  return slot.page;
}

PagePtr PageFile::freshPage(std::uint32_t number) {
  PagePtr page = readPage(number);
  keep(page);
  return page;
}

PagePtr PageFile::readPage(std::uint32_t number) const {
  auto page = std::make_shared<Page>();
  page->number = number;
  page->othersChanges = othersChanges_;
  page->bytes.resize(format_.pageSize);
  if (file_.readAt(std::uint64_t{number} * format_.pageSize, page->bytes) < format_.pageSize) {
    damaged(number, "the file ends before it");
  }
  cipher(number, 0, page->bytes);
  return page;
}

void PageFile::cipher(std::uint32_t number, std::size_t offset, MutableBytes bytes) const {
  if (key_ != 0 && number != 0) applyRc4(key_ ^ number, offset, bytes);
}

void PageFile::keep(const PagePtr& page) {
  const auto found = slotOf_.find(page->number);
  if (found != slotOf_.end()) {
    slots_[found->second] = {page, true};
    return;
  }
  if (slots_.size() < capacity_) {
    slotOf_[page->number] = slots_.size();
    slots_.push_back({page, true});
    return;
  }
  // The clock algorithm: the first page that was not used since the hand last passed makes room.
  while (std::exchange(slots_[hand_].used, false)) hand_ = (hand_ + 1) % slots_.size();
  slotOf_.erase(slots_[hand_].page->number);
  slotOf_[page->number] = hand_;
  slots_[hand_] = {page, true};
}

void PageFile::write(std::uint32_t number, std::size_t offset, Bytes bytes) {
  assert(offset + bytes.size() <= format_.pageSize);
  if (readOnly_) {
    throw RuntimeError(error::kReadOnly, "'" + path() + "' was opened for reading only.");
  }
  std::vector<std::byte> stored(bytes.begin(), bytes.end());
  cipher(number, offset, stored);
  file_.writeAt(std::uint64_t{number} * format_.pageSize + offset, stored);

  const auto found = slotOf_.find(number);
  if (found == slotOf_.end()) return;
  Slot& slot = slots_[found->second];
  auto changed = std::make_shared<Page>(*slot.page);
  std::copy(bytes.begin(), bytes.end(),
            changed->bytes.begin() + static_cast<std::ptrdiff_t>(offset));
  slot.page = std::move(changed);
}

void PageFile::forgetPages() {
  slots_.clear();
  slotOf_.clear();
  hand_ = 0;
}

std::uint32_t PageFile::othersChanges() {
  if (commits_ && commits_->isLookDue()) lookForChanges();
  return othersChanges_;
}

void PageFile::lookForChanges() {
  if (!commits_) return;
  std::array<std::byte, kCommitPairsSize> pairs;
  if (file_.readAt(commitPairOffset(format_.version, 0), pairs) < pairs.size()) {
    damaged(0, "the file ends before its commit bytes");
  }
  if (!commits_->look(pairs)) return;
  ++othersChanges_;
  forgetPages();
}

void PageFile::countCommit() {
  if (!commits_) return;
  write(0, commitPairOffset(format_.version, 0) + commits_->ownOffset(), commits_->next());
}

void PageFile::damaged(std::uint32_t page, std::string_view what) const {
  throw RuntimeError(error::kDamaged, "The database '" + path() + "' is damaged: page " +
                                          std::to_string(page) + ": " + std::string(what) + ".");
}

}  // namespace jet
