// The pages of one level of an index tree, filled from left to right and chained.
//
//   IndexLevel leaves(file, owner, PageType::kIndexLeaf);
//   leaves.add(entry);                                  // in order
//   std::vector<IndexChild> children = leaves.finish(); // for the level above
//
// Pages leave out the longest prefix that all their entries share. At least one page is made, empty
// where there are no entries.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "jet/index/index_page.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

struct IndexChild {
  std::uint32_t page = 0;
  std::vector<std::byte> lastKey;  // key and row of its last entry
};

class IndexLevel {
 public:
  IndexLevel(NewFile& file, std::uint32_t owner, jet::PageType type)
      : file_(file), owner_(owner), type_(type), page_(type, {.owner = owner}) {}

  void add(jet::Bytes entry);

  // For the level above: an entry for the child.
  void addChild(const IndexChild& child);

  // The last page of the level names one more child, which has no entry.
  void setTail(IndexChild child) { tail_ = std::move(child); }

  [[nodiscard]] std::vector<IndexChild> finish();
  [[nodiscard]] const std::vector<std::uint32_t>& pages() const { return pages_; }

 private:
  void closePage(bool last);

  NewFile& file_;
  std::uint32_t owner_;
  jet::PageType type_;
  jet::IndexPage page_;  // being filled
  IndexChild tail_;
  std::vector<std::uint32_t> pages_;
  std::vector<IndexChild> children_;
};

}  // namespace jetcreate
