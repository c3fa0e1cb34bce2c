// How a till changes pages: the members of jet::PageEdits over again, which the linker takes from
// here in place of the engine's library. Everything that is built on them (index trees, usage maps)
// then works as a till does. What differs from the program:
//
//   - a page that was cached is believed under its lock as well, unless another user's commit count
//     has gone up since (PageFile::page): who is not told works on old pages;
//   - pages are written whole, so that an old image undoes what another user wrote on its page;
//   - the second byte of the till's own commit pair is 00h from the first write to the last, as the
//     till's writes need a repair (TillTable::repair) when it dies among them.
#include <csignal>
#include <utility>

#include "jet/format/commit_bytes.h"
#include "jet/pages/page_edits.h"
#include "till_table.h"

namespace {

int writesToLive = 0;

}  // namespace

void till::dieAfterWrites(int writes) { writesToLive = writes; }

namespace jet {

Page& PageEdits::edit(std::uint32_t number) {
  const auto found = entries_.find(number);
  if (found != entries_.end()) return found->second.page;
  PageLock lock = locks_.lockPage(number);
  const PagePtr now = file_.page(number);
  Entry& entry = entries_[number];
  entry = {std::move(lock), *now, now->bytes};
  return entry.page;
}

Page& PageEdits::create(std::uint32_t number) {
  Entry& entry = entries_[number];
  entry.lock = locks_.lockPage(number);
  entry.page = {.number = number, .bytes = std::vector<std::byte>(format().pageSize)};
  return entry.page;
}

void PageEdits::schedule(std::uint32_t number) {
  Entry& entry = entries_.at(number);
  if (entry.scheduled == entry.page.bytes) return;
  writes_.push_back({number, 0, entry.page.bytes});
  entry.scheduled = entry.page.bytes;
}

void PageEdits::writeAll() {
  if (writes_.empty()) return;
  const std::byte underWay{0};
  file_.write(0, commitPairOffset(format().version, locks_.slot()) + 1, {&underWay, 1});
  for (const Write& write : writes_) {
    file_.write(write.page, write.offset, write.bytes);
    if (--writesToLive == 0) std::raise(SIGKILL);
  }
  file_.countCommit();
}

}  // namespace jet
