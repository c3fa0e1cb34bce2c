#include "jetcreate/index_level.h"

#include <algorithm>

#include "jetcreate/layout.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::size_t kRowSize = 4;    // page and place at the end of every entry
constexpr std::size_t kChildSize = 4;  // behind them on a node

std::size_t commonPrefix(Bytes a, Bytes b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                  a.begin());
}

}  // namespace

void IndexLevel::add(Bytes entry) {
  const std::size_t trailer = kRowSize + (type_ == PageType::kIndexNode ? kChildSize : 0);
  const std::size_t keySize = entry.size() - trailer;
  const std::size_t prefix =
      entries_.empty() ? keySize
                       : std::min({prefix_, keySize, commonPrefix(entries_.front(), entry)});
  if (!entries_.empty() && size_ + entry.size() - prefix * entries_.size() > kIndexPageRoom) {
    closePage(false);
    return add(entry);
  }
  entries_.emplace_back(entry.begin(), entry.end());
  size_ += entry.size();
  prefix_ = prefix;
}

void IndexLevel::addChild(const IndexChild& child) {
  std::vector<std::byte> entry = child.lastEntry;
  for (int shift : {24, 16, 8, 0}) entry.push_back(static_cast<std::byte>(child.page >> shift));
  add(entry);
}

// A level's pages are handed out one behind the other, so that the next one's number is known
// before it is made.
void IndexLevel::closePage(bool last) {
  const Format& format = formatOf(Version::kJet4);
  if (entries_.size() < 2) prefix_ = 0;
  const std::uint32_t number = file_.allocate();
  std::vector<std::byte> page(kPageSize);
  storeLittle(page, 0, type_);
  storeLittle(page, 1, kPageMark);
  storeLittle(page, kIndexOwner, owner_);
  storeLittle(page, format.indexPrevious, pages_.empty() ? 0 : pages_.back());
  storeLittle(page, format.indexNext, last ? 0 : number + 1);
  storeLittle(page, format.indexTail, last ? tail_.page : 0);
  storeLittle(page, format.indexPrefixLength, static_cast<std::uint16_t>(prefix_));
  std::size_t end = 0;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Bytes stored = Bytes(entries_[i]).subspan(i == 0 ? 0 : prefix_);
    std::copy(stored.begin(), stored.end(),
              page.begin() + static_cast<std::ptrdiff_t>(format.indexEntries + end));
    end += stored.size();
    page[format.indexMask + end / 8] |= std::byte{1} << (end % 8);
  }
  storeLittle(page, kPageFreeSpace, static_cast<std::uint16_t>(kIndexPageRoom - end));
  file_.write(number, page);

  IndexChild child{.page = number, .lastEntry = {}};
  if (last && tail_.page != 0) {
    child.lastEntry = std::move(tail_.lastEntry);
  } else if (!entries_.empty()) {
    child.lastEntry = entries_.back();
    if (type_ == PageType::kIndexNode) child.lastEntry.resize(child.lastEntry.size() - kChildSize);
  }
  pages_.push_back(number);
  children_.push_back(std::move(child));
  entries_.clear();
  size_ = 0;
  prefix_ = 0;
}

std::vector<IndexChild> IndexLevel::finish() {
  closePage(true);
  return std::move(children_);
}

}  // namespace jetcreate
