#include "jet/index/index_page.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <utility>

namespace jet {
namespace {

// Order of the leading bytes, as far as both reach.
int compareLeading(Bytes a, Bytes b) {
  const std::size_t size = std::min(a.size(), b.size());
  return size == 0 ? 0 : std::memcmp(a.data(), b.data(), size);
}

int compareWhole(Bytes a, Bytes b) {
  const int order = compareLeading(a, b);
  return order != 0 ? order : (a.size() > b.size()) - (a.size() < b.size());
}

std::size_t loadPrefixLength(const Format& format, Bytes page) {
  return format.indexPrefixSize == 1 ? loadU8(page, format.indexPrefixLength)
                                     : loadU16(page, format.indexPrefixLength);
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
  header = {.owner = loadU32(bytes, kIndexOwner),
            .previous = loadU32(bytes, format.indexPrevious),
            .next = loadU32(bytes, format.indexNext),
            .tail = loadU32(bytes, format.indexTail),
            .level = loadU8(bytes, format.indexLevel)};
  if (header.owner != owner) {
    file.damaged(page_->number,
                 "it is not part of an index of the table of page " + std::to_string(owner));
  }
  leaf_ = type == PageType::kIndexLeaf;
  prefix_ = prefixWanted_ = loadPrefixLength(format, bytes);
  view_ = bytes.subspan(format.indexEntries);
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
      if (end > view_.size() || end == start || whole < trailer()) {
        file.damaged(page_->number, "an index entry does not fit");
      }
      ends_.push_back(static_cast<std::uint32_t>(end));
      start = end;
    }
  }
  if (!ends_.empty() && prefix_ > ends_[0]) {
    file.damaged(page_->number, "the prefix of its entries does not fit");
  }
}

void IndexPage::checkOrder(const PageFile& file) const {
  if (ends_.empty()) return;
  Bytes before = withoutChild(stored(0).subspan(prefix_));
  for (std::size_t i = 1; i < ends_.size(); ++i) {
    const Bytes entry = withoutChild(stored(i));
    if (compareWhole(before, entry) >= 0) {
      file.damaged(page_->number, "its index entries are out of order");
    }
    before = entry;
  }
}

Bytes IndexPage::withoutChild(Bytes entry) const {
  return leaf_ ? entry : entry.first(entry.size() - std::min(entry.size(), kEntryChildSize));
}

int IndexPage::compare(std::size_t entry, Bytes key) const {
  if (entry == 0) return compareLeading(stored(0), key);
  const Bytes prefix = entries().first(prefix_);
  const int order = compareLeading(prefix, key);
  if (order != 0 || key.size() <= prefix.size()) return order;
  return compareLeading(stored(entry), key.subspan(prefix.size()));
}

std::size_t IndexPage::lowerBound(Bytes key) const {
  if (size() == 0 || compare(0, key) >= 0) return 0;
  // The first entry is below the key, and begins with the prefix that the others leave out.
  if (compareLeading(entries().first(prefix_), key) != 0) return size();
  const Bytes rest = key.subspan(prefix_);
  std::size_t low = 1;
  std::size_t high = size();
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (compareLeading(stored(middle), rest) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

// Most ranges have few entries, or all that follow.
std::size_t IndexPage::upperBound(Bytes key, std::size_t from) const {
  if (from == size() || compare(size() - 1, key) <= 0) return size();
  if (compare(from, key) > 0) return from;
  // With an entry above the key and one that is not, the key begins with the prefix.
  const Bytes rest = key.subspan(prefix_);
  std::size_t n = from + 1;
  while (compareLeading(stored(n), rest) <= 0) ++n;
  return n;
}

std::optional<std::size_t> IndexPage::childFor(Bytes key) const {
  const std::size_t n = lowerBound(key);
  if (n < size() || header.tail != 0) return n;
  if (size() == 0) return std::nullopt;
  return size() - 1;
}

std::uint32_t IndexPage::child(std::size_t position) const {
  if (position == size()) return header.tail;
  const Bytes own = stored(position);
  if (own.size() >= kEntryChildSize) return loadU32BigEndian(own, own.size() - kEntryChildSize);
  const std::vector<std::byte> whole = entryBytes(position);
  return loadU32BigEndian(whole, whole.size() - kEntryChildSize);
}

RowId IndexPage::rowId(std::size_t entry) const {
  const Bytes own = withoutChild(stored(entry));
  return own.size() >= kEntryRowSize ? rowOfEntry(own) : rowOfEntry(keyBytes(entry));
}

std::vector<std::byte> IndexPage::keyBytes(std::size_t entry) const {
  std::vector<std::byte> bytes = entryBytes(entry);
  if (!leaf_) bytes.resize(bytes.size() - kEntryChildSize);
  return bytes;
}

std::vector<std::byte> IndexPage::entryBytes(std::size_t entry) const {
  const Bytes prefix = entries().first(entry == 0 ? 0 : prefix_);
  const Bytes own = stored(entry);
  std::vector<std::byte> bytes(prefix.begin(), prefix.end());
  bytes.insert(bytes.end(), own.begin(), own.end());
  return bytes;
}

std::vector<std::byte> leafEntry(std::vector<std::byte> key, RowId row) {
  for (int shift = 16; shift >= 0; shift -= 8) {
    key.push_back(static_cast<std::byte>(row.page >> shift & 0xff));
  }
  key.push_back(static_cast<std::byte>(row.row));
  return key;
}

std::vector<std::byte> nodeEntry(std::vector<std::byte> lastKey, std::uint32_t child) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    lastKey.push_back(static_cast<std::byte>(child >> shift & 0xff));
  }
  return lastKey;
}

RowId rowOfEntry(Bytes leafEntry) {
  const std::size_t at = leafEntry.size() - kEntryRowSize;
  return {loadU24BigEndian(leafEntry, at), loadU8(leafEntry, at + 3)};
}

}  // namespace jet
