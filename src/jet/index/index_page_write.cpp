// The part of IndexPage that changes and stores entries.
#include <algorithm>
#include <cassert>
#include <limits>
#include <utility>

#include "jet/index/index_page.h"

namespace jet {
namespace {

std::size_t commonLength(Bytes a, Bytes b) {
  return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

std::size_t room(const Format& format) { return format.pageSize - format.indexEntries; }

// What the page's field for the prefix length can hold.
std::size_t prefixLimit(const Format& format) {
  return format.indexPrefixSize == 1 ? std::numeric_limits<std::uint8_t>::max()
                                     : std::numeric_limits<std::uint16_t>::max();
}

void storePrefixLength(const Format& format, std::size_t prefix, MutableBytes page) {
  if (format.indexPrefixSize == 1) {
    storeLittle(page, format.indexPrefixLength, static_cast<std::uint8_t>(prefix));
  } else {
    storeLittle(page, format.indexPrefixLength, static_cast<std::uint16_t>(prefix));
  }
}

}  // namespace

void IndexPage::copyEntries() {
  if (inFull_) return;
  std::vector<std::byte> full;
  std::vector<std::uint32_t> ends;
  const Bytes prefix = entries().first(prefix_);
  full.reserve(entries().size() + prefix_ * size());
  ends.reserve(size() + 1);
  for (std::size_t i = 0; i < size(); ++i) {
    if (i != 0) full.insert(full.end(), prefix.begin(), prefix.end());
    const Bytes own = stored(i);
    full.insert(full.end(), own.begin(), own.end());
    ends.push_back(static_cast<std::uint32_t>(full.size()));
  }
  full_ = std::move(full);
  ends_ = std::move(ends);
  prefix_ = 0;
  inFull_ = true;
}

void IndexPage::insert(std::size_t n, Bytes entry) {
  copyEntries();
  const std::uint32_t start = n == 0 ? 0 : ends_[n - 1];
  full_.insert(full_.begin() + static_cast<std::ptrdiff_t>(start), entry.begin(), entry.end());
  ends_.insert(ends_.begin() + static_cast<std::ptrdiff_t>(n), start);
  for (std::size_t i = n; i < ends_.size(); ++i) {
    ends_[i] += static_cast<std::uint32_t>(entry.size());
  }
}

void IndexPage::erase(std::size_t n) {
  copyEntries();
  const std::size_t length = stored(n).size();
  const auto start = full_.begin() + static_cast<std::ptrdiff_t>(ends_[n] - length);
  full_.erase(start, start + static_cast<std::ptrdiff_t>(length));
  ends_.erase(ends_.begin() + static_cast<std::ptrdiff_t>(n));
  for (std::size_t i = n; i < ends_.size(); ++i) ends_[i] -= static_cast<std::uint32_t>(length);
}

bool IndexPage::append(const Format& format, Bytes entry) {
  assert(inFull_);
  const std::size_t common = std::min(entry.size() - trailer(), prefixLimit(format));
  const std::size_t prefix =
      size() == 0 ? common : std::min({appendedPrefix_, common, commonLength(stored(0), entry)});
  if (full_.size() + entry.size() - prefix * size() > room(format)) return false;
  insert(size(), entry);
  appendedPrefix_ = prefix;
  prefixWanted_ = std::numeric_limits<std::size_t>::max();
  return true;
}

IndexPage IndexPage::splitAt(std::size_t n) {
  copyEntries();
  IndexPage right(
      leaf_ ? PageType::kIndexLeaf : PageType::kIndexNode,
      {.owner = header.owner, .tail = std::exchange(header.tail, 0), .level = header.level});
  right.prefixWanted_ = prefixWanted_;
  for (std::size_t i = n; i < size(); ++i) right.insert(right.size(), stored(i));
  ends_.resize(n);
  full_.resize(ends_.empty() ? 0 : ends_.back());
  return right;
}

std::size_t IndexPage::middle() {
  copyEntries();
  std::size_t n = 1;
  while (n + 1 < size() && ends_[n] <= full_.size() / 2) ++n;
  return n;
}

// Never longer than the shortest key: the row (and child) of an entry is kept whole.
std::size_t IndexPage::commonPrefix(const Format& format) const {
  if (size() < 2) return 0;
  std::size_t limit = prefixLimit(format);
  for (std::size_t i = 0; i < size(); ++i) limit = std::min(limit, stored(i).size() - trailer());
  return std::min(limit, commonLength(stored(0), stored(size() - 1)));
}

std::size_t IndexPage::storedSize(std::size_t prefix) const {
  return full_.size() - (size() < 2 ? 0 : prefix * (size() - 1));
}

bool IndexPage::store(const Format& format, MutableBytes page) {
  copyEntries();
  const std::size_t common = commonPrefix(format);
  // The engine does not look for a better prefix until it needs the room; nor is it needed here.
  std::size_t prefix = std::min(prefixWanted_, common);
  if (storedSize(prefix) > room(format)) prefix = common;
  if (storedSize(prefix) > room(format)) return false;

  storeLittle(page, 0, leaf_ ? PageType::kIndexLeaf : PageType::kIndexNode);
  storeLittle(page, 1, std::uint8_t{1});
  storeLittle(page, kPageFreeSpace, static_cast<std::uint16_t>(room(format) - storedSize(prefix)));
  storeLittle(page, kIndexOwner, header.owner);
  storeLittle(page, format.indexPrevious, header.previous);
  storeLittle(page, format.indexNext, header.next);
  storeLittle(page, format.indexTail, header.tail);
  storePrefixLength(format, prefix, page);
  storeLittle(page, format.indexLevel, header.level);
  storeEntries(format, prefix, page);
  return true;
}

void IndexPage::storeEntries(const Format& format, std::size_t prefix, MutableBytes page) const {
  const MutableBytes mask = page.subspan(format.indexMask, format.indexEntries - format.indexMask);
  std::ranges::fill(mask, std::byte{0});
  auto at = page.begin() + static_cast<std::ptrdiff_t>(format.indexEntries);
  for (std::size_t i = 0; i < size(); ++i) {
    at = std::ranges::copy(stored(i).subspan(i == 0 ? 0 : prefix), at).out;
    const auto end = static_cast<std::size_t>(at - page.begin()) - format.indexEntries;
    mask[end / 8] |= static_cast<std::byte>(1U << end % 8);
  }
}

}  // namespace jet
