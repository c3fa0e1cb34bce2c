#include "jet/pages/page_edits.h"

#include <algorithm>
#include <cassert>
#include <exception>
#include <utility>

#include "values/runtime_error.h"

namespace jet {

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
    first = static_cast<std::size_t>(std::ranges::mismatch(now, entry.scheduled).in1 - now.begin());
    if (first == now.size()) return;
    while (now[last - 1] == entry.scheduled[last - 1]) --last;
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
