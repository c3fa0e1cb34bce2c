#include "jet/pages/page_edits.h"

#include <cassert>
#include <cstring>
#include <exception>
#include <utility>

#include "values/runtime_error.h"

namespace jet {
namespace {

// Pages that are compared differ in few bytes: blocks of this size are compared at once.
constexpr std::size_t kBlock = 64;

bool sameBlock(Bytes left, Bytes right, std::size_t start) {
  return std::memcmp(left.data() + start, right.data() + start, kBlock) == 0;
}

std::size_t commonPrefix(Bytes left, Bytes right) {
  std::size_t size = 0;
  while (size + kBlock <= left.size() && sameBlock(left, right, size)) size += kBlock;
  while (size < left.size() && left[size] == right[size]) ++size;
  return size;
}

// Where the bytes begin that both end with. They differ somewhere.
std::size_t commonSuffix(Bytes left, Bytes right) {
  std::size_t start = left.size();
  while (start >= kBlock && sameBlock(left, right, start - kBlock)) start -= kBlock;
  while (left[start - 1] == right[start - 1]) --start;
  return start;
}

}  // namespace

Page& PageEdits::edit(std::uint32_t number) {
  const auto found = entries_.find(number);
  if (found != entries_.end()) return found->second.page;
  PageLock lock = locks_.lockPage(number);
  file_.lookForChanges();
  const PagePtr now = file_.freshPage(number);
  Entry& entry = entries_[number];
  entry.lock = std::move(lock);
  entry.page = *now;
  entry.scheduled = now->bytes;
  return entry.page;
}

Page& PageEdits::create(std::uint32_t number) {
  PageLock lock = locks_.lockPage(number);
  Entry& entry = entries_[number];
  assert(entry.page.bytes.empty());
  entry.lock = std::move(lock);
  entry.page.number = number;
  entry.page.bytes.assign(format().pageSize, std::byte{0});
  return entry.page;
}

void PageEdits::schedule(std::uint32_t number) {
  Entry& entry = entries_.at(number);
  const std::vector<std::byte>& now = entry.page.bytes;
  std::size_t first = 0;
  std::size_t last = now.size();
  if (!entry.scheduled.empty()) {
    first = commonPrefix(now, entry.scheduled);
    if (first == now.size()) return;
    last = commonSuffix(now, entry.scheduled);
  }
  writes_.push_back({number,
                     first,
                     {now.begin() + static_cast<std::ptrdiff_t>(first),
                      now.begin() + static_cast<std::ptrdiff_t>(last)}});
  entry.scheduled = now;
}

void PageEdits::writeAll() {
  for (const Write& write : std::exchange(writes_, {})) {
    std::exception_ptr failure;
    try {
      file_.write(write.page, write.offset, write.bytes);
    } catch (const RuntimeError&) {
      failure = std::current_exception();
    }
    file_.countCommit();  // also after a failure: part of the bytes may be in the file
    if (failure) std::rethrow_exception(failure);
  }
}

}  // namespace jet
