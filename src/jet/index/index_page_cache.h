// Index pages of one table that were checked and taken apart already; bounded.
//
//   IndexPagePtr root = cache.get(file, index.rootPage, definition.page);
//   if (auto n = root->childFor(key)) IndexPagePtr child = cache.child(file, *root, *n, owner);
//
// A page that was read again since is taken apart again. What one page says of another is compared
// when the two first meet: the child's entries lie between those of its node, the next leaf begins
// after this one's end and points back. Errors: 3049.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "jet/index/index_page.h"
#include "jet/pages/page_file.h"

namespace jet {

using IndexPagePtr = std::shared_ptr<const IndexPage>;

class IndexPageCache {
 public:
  [[nodiscard]] IndexPagePtr get(PageFile& file, std::uint32_t number, std::uint32_t owner);

  // The child at a position of a node, as IndexPage::childFor gives it. Null when the two pages
  // contradict each other: damage, or one of them was changed since the other was read.
  [[nodiscard]] IndexPagePtr child(PageFile& file, const IndexPage& node, std::size_t position,
                                   std::uint32_t owner);

  // Where a search of a tree ended last.
  struct RecentPlace {
    IndexPagePtr leaf;  // null before the first search
    std::size_t entry = 0;
  };
  // Of the tree of this root; lasts as long as this.
  [[nodiscard]] RecentPlace& recentPlace(std::uint32_t root) { return recentPlaces_[root]; }

  // The leaf after `leaf`, which has one. Null as above.
  [[nodiscard]] IndexPagePtr next(PageFile& file, const IndexPage& leaf, std::uint32_t owner);

 private:
  static constexpr std::size_t kMaxPages = 256;

  struct Entry {
    IndexPagePtr page;
    PagePtr checkedUnder;  // the node with which it was compared
  };
  std::unordered_map<std::uint32_t, Entry> pages_;
  std::unordered_map<std::uint32_t, RecentPlace> recentPlaces_;  // by root
};

}  // namespace jet
