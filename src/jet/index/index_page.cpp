#include "jet/index/index_page.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

namespace jet {
namespace {

constexpr std::size_t kRowPointer = 4;
constexpr std::size_t kChildPointer = 4;

int sign(int value) { return (value > 0) - (value < 0); }

// Order of the leading bytes of `entry`, as far as both reach.
int compareLeading(Bytes entry, Bytes key) {
  const std::size_t size = std::min(entry.size(), key.size());
  return size == 0 ? 0 : sign(std::memcmp(entry.data(), key.data(), size));
}

int compareWhole(Bytes a, Bytes b) {
  const int order = compareLeading(a, b);
  return order != 0 ? order : (a.size() > b.size()) - (a.size() < b.size());
}

}  // namespace

IndexPage::IndexPage(const PageFile& file, PagePtr page, std::uint32_t owner)
    : page_(std::move(page)) {
  const Format& format = file.format();
  const Bytes bytes = page_->bytes;
  const auto type = static_cast<PageType>(loadU8(bytes, 0));
  if (type != PageType::kIndexNode && type != PageType::kIndexLeaf) {
    file.damaged(page_->number, "it should be part of an index");
  }
  if (loadU32(bytes, kIndexOwner) != owner) {
    file.damaged(page_->number,
                 "it is not part of an index of the table of page " + std::to_string(owner));
  }
  leaf_ = type == PageType::kIndexLeaf;
  previous_ = loadU32(bytes, format.indexPrevious);
  next_ = loadU32(bytes, format.indexNext);
  tail_ = loadU32(bytes, format.indexTail);
  prefix_ = format.indexPrefixSize == 1 ? loadU8(bytes, format.indexPrefixLength)
                                        : loadU16(bytes, format.indexPrefixLength);
  entries_ = bytes.subspan(format.indexEntries);
  trailer_ = leaf_ ? kRowPointer : kRowPointer + kChildPointer;
  findEntries(file);
  checkOrder(file);
}

void IndexPage::findEntries(const PageFile& file) {
  const Format& format = file.format();
  const Bytes mask =
      Bytes(page_->bytes).subspan(format.indexMask, format.indexEntries - format.indexMask);
  std::size_t start = 0;
  for (std::size_t i = 0; i < mask.size(); ++i) {
    for (unsigned bits = loadU8(mask, i); bits != 0; bits &= bits - 1) {
      const std::size_t end = 8 * i + static_cast<std::size_t>(std::countr_zero(bits));
      const std::size_t whole = end - start + (ends_.empty() ? 0 : prefix_);
      if (end > entries_.size() || end == start || whole < trailer_) {
        file.damaged(page_->number, "an index entry does not fit");
      }
      ends_.push_back(static_cast<std::uint16_t>(end));
      start = end;
    }
  }
  if (!ends_.empty() && prefix_ > ends_[0]) {
    file.damaged(page_->number, "the prefix of its entries does not fit");
  }
}

void IndexPage::checkOrder(const PageFile& file) const {
  for (std::size_t i = 1; i < ends_.size(); ++i) {
    const Bytes before = i == 1 ? stored(0).subspan(prefix_) : stored(i - 1);
    if (compareWhole(withoutChild(before), withoutChild(stored(i))) >= 0) {
      file.damaged(page_->number, "its index entries are out of order");
    }
  }
}

Bytes IndexPage::stored(std::size_t entry) const {
  const std::size_t start = entry == 0 ? 0 : ends_[entry - 1];
  return entries_.subspan(start, ends_[entry] - start);
}

Bytes IndexPage::withoutChild(Bytes entry) const {
  return leaf_ ? entry : entry.first(entry.size() - std::min(entry.size(), kChildPointer));
}

int IndexPage::compare(std::size_t entry, Bytes key) const {
  if (entry == 0) return compareLeading(stored(0), key);
  const Bytes prefix = entries_.first(prefix_);
  const int order = compareLeading(prefix, key);
  if (order != 0 || key.size() <= prefix.size()) return order;
  return compareLeading(stored(entry), key.subspan(prefix.size()));
}

std::size_t IndexPage::lowerBound(Bytes key) const {
  std::size_t low = 0;
  std::size_t high = size();
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (compare(middle, key) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

std::vector<std::byte> IndexPage::keyBytes(std::size_t entry) const {
  std::vector<std::byte> bytes = entryBytes(entry);
  if (!leaf_) bytes.erase(bytes.end() - kChildPointer, bytes.end());
  return bytes;
}

std::vector<std::byte> IndexPage::entryBytes(std::size_t entry) const {
  std::vector<std::byte> bytes;
  if (entry != 0)
    bytes.assign(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(prefix_));
  const Bytes own = stored(entry);
  bytes.insert(bytes.end(), own.begin(), own.end());
  return bytes;
}

RowId IndexPage::rowId(std::size_t entry) const {
  const auto decode = [&](Bytes bytes) {
    const std::size_t at = bytes.size() - trailer_;
    return RowId{loadU24BigEndian(bytes, at), loadU8(bytes, at + 3)};
  };
  const Bytes own = stored(entry);
  return own.size() >= trailer_ ? decode(own) : decode(entryBytes(entry));
}

std::uint32_t IndexPage::child(std::size_t entry) const {
  const Bytes own = stored(entry);
  if (own.size() >= kChildPointer) return loadU32BigEndian(own, own.size() - kChildPointer);
  const std::vector<std::byte> whole = entryBytes(entry);
  return loadU32BigEndian(whole, whole.size() - kChildPointer);
}

IndexPagePtr IndexPageCache::get(PageFile& file, std::uint32_t number, std::uint32_t owner) {
  PagePtr page = file.page(number);
  const auto found = pages_.find(number);
  if (found != pages_.end() && found->second.page->page() == page) return found->second.page;
  if (found == pages_.end() && pages_.size() >= kPages) pages_.clear();
  auto taken = std::make_shared<const IndexPage>(file, std::move(page), owner);
  pages_[number] = {taken, nullptr};
  return taken;
}

IndexPagePtr IndexPageCache::child(PageFile& file, const IndexPage& node, std::size_t entry,
                                   std::uint32_t owner) {
  const bool toTail = entry == node.size() && node.tail() != 0;
  if (!toTail && node.size() == 0) file.damaged(node.page()->number, "a node of an index is empty");
  if (!toTail) entry = std::min(entry, node.size() - 1);
  IndexPagePtr child = get(file, toTail ? node.tail() : node.child(entry), owner);
  PagePtr& checked = pages_[child->page()->number].checkedUnder;
  if (checked == node.page() || child->size() == 0) return child;

  if (entry != 0 && child->compare(0, node.keyBytes(entry - 1)) <= 0) return nullptr;
  if (!toTail && child->compare(child->size() - 1, node.keyBytes(entry)) > 0) return nullptr;
  checked = node.page();
  return child;
}

IndexPagePtr IndexPageCache::next(PageFile& file, const IndexPage& leaf, std::uint32_t owner) {
  IndexPagePtr next = get(file, leaf.next(), owner);
  if (!next->isLeaf() || next->previous() != leaf.page()->number) return nullptr;
  if (next->size() == 0 || leaf.size() == 0) return next;
  return next->compare(0, leaf.keyBytes(leaf.size() - 1)) > 0 ? next : nullptr;
}

}  // namespace jet
