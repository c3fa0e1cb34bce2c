#include "jet/index/index_node.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "jet/index/index_page.h"

namespace jet {
namespace {

constexpr std::size_t kChildPointer = 4;

}  // namespace

int compareLeading(Bytes a, Bytes b) {
  const std::size_t size = std::min(a.size(), b.size());
  return size == 0 ? 0 : std::memcmp(a.data(), b.data(), size);
}

IndexNode::IndexNode(const PageFile& file, const Page& page, std::uint32_t tableOwner)
    : owner(tableOwner) {
  const Format& format = file.format();
  const IndexPage read(file, std::make_shared<const Page>(page), tableOwner);
  leaf_ = read.isLeaf();
  previous = loadU32(page.bytes, format.indexPrevious);
  next = read.next();
  tail = read.tail();
  level = loadU8(page.bytes, format.indexMask - 1);
  bytes_.reserve(2 * format.pageSize);
  ends_.reserve(read.size() + 1);
  for (std::size_t i = 0; i < read.size(); ++i) {
    const std::vector<std::byte> entry = read.entryBytes(i);
    bytes_.insert(bytes_.end(), entry.begin(), entry.end());
    ends_.push_back(bytes_.size());
  }
  prefix_ = format.indexPrefixSize == 1 ? loadU8(page.bytes, format.indexPrefixLength)
                                        : loadU16(page.bytes, format.indexPrefixLength);
}

Bytes IndexNode::entry(std::size_t n) const {
  const std::size_t start = n == 0 ? 0 : ends_[n - 1];
  return Bytes(bytes_).subspan(start, ends_[n] - start);
}

std::uint32_t IndexNode::child(std::size_t n) const {
  const Bytes bytes = entry(n);
  return loadU32BigEndian(bytes, bytes.size() - kChildPointer);
}

std::vector<std::byte> IndexNode::withoutChild(std::size_t n) const {
  const Bytes bytes = entry(n).first(entry(n).size() - (leaf_ ? 0 : kChildPointer));
  return {bytes.begin(), bytes.end()};
}

std::size_t IndexNode::lowerBound(Bytes key) const {
  std::size_t low = 0;
  std::size_t high = size();
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (compareLeading(entry(middle), key) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

void IndexNode::insert(std::size_t n, Bytes added) {
  const std::size_t start = n == 0 ? 0 : ends_[n - 1];
  bytes_.insert(bytes_.begin() + static_cast<std::ptrdiff_t>(start), added.begin(), added.end());
  ends_.insert(ends_.begin() + static_cast<std::ptrdiff_t>(n), start);
  for (std::size_t i = n; i < ends_.size(); ++i) ends_[i] += added.size();
}

void IndexNode::erase(std::size_t n) {
  const std::size_t length = entry(n).size();
  const auto start = bytes_.begin() + static_cast<std::ptrdiff_t>(ends_[n] - length);
  bytes_.erase(start, start + static_cast<std::ptrdiff_t>(length));
  ends_.erase(ends_.begin() + static_cast<std::ptrdiff_t>(n));
  for (std::size_t i = n; i < ends_.size(); ++i) ends_[i] -= length;
}

IndexNode IndexNode::splitAt(std::size_t n) {
  IndexNode right(leaf_);
  right.owner = owner;
  right.level = level;
  right.prefix_ = prefix_;
  for (std::size_t i = n; i < size(); ++i) right.insert(right.size(), entry(i));
  ends_.resize(n);
  bytes_.resize(ends_.empty() ? 0 : ends_.back());
  right.tail = std::exchange(tail, 0);
  return right;
}

std::size_t IndexNode::middle() const {
  std::size_t n = 1;
  while (n + 1 < size() && ends_[n] <= bytes_.size() / 2) ++n;
  return n;
}

// Never longer than the shortest key: the row (and child) of an entry is kept whole.
std::size_t IndexNode::commonPrefix() const {
  if (size() < 2) return 0;
  const Bytes first = entry(0);
  const Bytes last = entry(size() - 1);
  std::size_t limit = first.size();
  for (std::size_t i = 0; i < size(); ++i) limit = std::min(limit, entry(i).size() - trailer());
  limit = std::min(limit, std::size_t{255});  // Jet 3 keeps it in a byte
  const auto differ = std::mismatch(
      first.begin(), first.begin() + static_cast<std::ptrdiff_t>(limit), last.begin());
  return static_cast<std::size_t>(differ.first - first.begin());
}

std::size_t IndexNode::storedSize(std::size_t prefix) const {
  return bytes_.size() - (size() < 2 ? 0 : prefix * (size() - 1));
}

bool IndexNode::store(const Format& format, Page& page) const {
  const std::size_t room = format.pageSize - format.indexEntries;
  const std::size_t common = commonPrefix();
  // The engine does not look for a better prefix until it needs the room; nor is it needed here.
  std::size_t prefix = std::min(prefix_, common);
  if (storedSize(prefix) > room) prefix = common;
  if (storedSize(prefix) > room) return false;

  MutableBytes bytes = page.bytes;
  bytes[0] = static_cast<std::byte>(leaf_ ? PageType::kIndexLeaf : PageType::kIndexNode);
  bytes[1] = std::byte{1};
  storeLittle<std::uint32_t>(bytes, kIndexOwner, owner);
  storeLittle<std::uint32_t>(bytes, format.indexPrevious, previous);
  storeLittle<std::uint32_t>(bytes, format.indexNext, next);
  storeLittle<std::uint32_t>(bytes, format.indexTail, tail);
  bytes[format.indexPrefixLength] = static_cast<std::byte>(prefix);
  if (format.indexPrefixSize == 2) bytes[format.indexPrefixLength + 1] = std::byte{0};
  bytes[format.indexMask - 1] = static_cast<std::byte>(level);
  const MutableBytes mask = bytes.subspan(format.indexMask, format.indexEntries - format.indexMask);
  std::ranges::fill(mask, std::byte{0});
  std::size_t end = 0;
  for (std::size_t i = 0; i < size(); ++i) {
    const Bytes stored = entry(i).subspan(i == 0 ? 0 : prefix);
    std::ranges::copy(stored,
                      bytes.begin() + static_cast<std::ptrdiff_t>(format.indexEntries + end));
    end += stored.size();
    mask[end / 8] |= static_cast<std::byte>(1U << end % 8);
  }
  storeLittle<std::uint16_t>(bytes, kPageFreeSpace, static_cast<std::uint16_t>(room - end));
  return true;
}

}  // namespace jet
