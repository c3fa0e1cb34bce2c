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
      cache_(std::max<std::size_t>(cacheBytes / format.pageSize, 1)) {}

std::uint32_t PageFile::pageCount() const {
  return static_cast<std::uint32_t>(
      std::min<std::uint64_t>(file_.size() / format_.pageSize, UINT32_MAX));
}

bool PageFile::hasPages(std::uint64_t count) {
  if (count > knownPages_) knownPages_ = pageCount();
  return count <= knownPages_;
}

void PageFile::share(std::optional<int> slot, const platform::TickCounter& ticks) {
  commits_.emplace(slot, ticks);
  lookForChanges();
}

PagePtr PageFile::page(std::uint32_t number) {
  if (commits_ && commits_->isLookDue()) lookForChanges();
  if (const PagePtr* found = cache_.find(number)) return *found;
  // A part of the cache at most: what is in use stays.
  const std::size_t most = std::max<std::size_t>(cache_.capacity() / 4, 1);
  return readRun(
      number, static_cast<std::uint32_t>(std::min<std::size_t>(readAhead_.runFrom(number), most)));
}

PagePtr PageFile::freshPage(std::uint32_t number) { return readRun(number, 1); }

// Pages of the run that are cached already stay as they are.
PagePtr PageFile::readRun(std::uint32_t first, std::uint32_t count) {
  const std::size_t size = format_.pageSize;
  run_.resize(std::max(run_.size(), count * size));
  const std::size_t got =
      file_.readAt(std::uint64_t{first} * size, MutableBytes(run_).first(count * size));
  if (got < size) damaged(first, "the file ends before it");
  PagePtr page = keep(first, Bytes(run_).first(size));
  for (std::size_t i = 1; i < got / size; ++i) {
    const auto number = static_cast<std::uint32_t>(first + i);
    if (!cache_.has(number)) keep(number, Bytes(run_).subspan(i * size, size));
  }
  return page;
}

PagePtr PageFile::keep(std::uint32_t number, Bytes stored) {
  std::shared_ptr<Page> page = cache_.spare();
  page->number = number;
  page->othersChanges = othersChanges_;
  page->bytes.assign(stored.begin(), stored.end());
  cipher(number, 0, page->bytes);
  PagePtr kept = page;
  cache_.keep(std::move(page));
  return kept;
}

void PageFile::cipher(std::uint32_t number, std::size_t offset, MutableBytes bytes) const {
  if (key_ != 0 && number != 0) applyRc4(key_ ^ number, offset, bytes);
}

void PageFile::write(std::uint32_t number, std::size_t offset, Bytes bytes) {
  assert(offset + bytes.size() <= format_.pageSize);
  if (readOnly_) {
    throw RuntimeError(error::kReadOnly, "'" + path() + "' was opened for reading only.");
  }
  std::vector<std::byte> stored(bytes.begin(), bytes.end());
  cipher(number, offset, stored);
  file_.writeAt(std::uint64_t{number} * format_.pageSize + offset, stored);

  const PagePtr* found = cache_.find(number);
  if (found == nullptr) return;
  auto changed = std::make_shared<Page>(**found);
  std::copy(bytes.begin(), bytes.end(),
            changed->bytes.begin() + static_cast<std::ptrdiff_t>(offset));
  cache_.keep(std::move(changed));
}

void PageFile::forgetPages() { cache_.clear(); }

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
