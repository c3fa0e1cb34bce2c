// The pages of one level of an index tree, filled from left to right and chained.
//
//   IndexLevel leaves(file, owner, 0);
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
  // `level`: distance from the leaves.
  IndexLevel(NewFile& file, std::uint32_t owner, std::uint8_t level)
      : file_(file), owner_(owner), level_(level), page_(emptyPage()) {}

  void add(jet::Bytes entry);

  // For the level above: an entry for the child.
  void addChild(const IndexChild& child);

  // The last page of the level names one more child, which has no entry.
  void setTail(IndexChild child) { tail_ = std::move(child); }

  [[nodiscard]] std::vector<IndexChild> finish();
  [[nodiscard]] const std::vector<std::uint32_t>& pages() const { return pages_; }

 private:
  void closePage(bool last);
  [[nodiscard]] jet::IndexPage emptyPage() const {
    return {level_ == 0 ? jet::PageType::kIndexLeaf : jet::PageType::kIndexNode,
            {.owner = owner_, .level = file_.creation().indexLevels ? level_ : std::uint8_t{0}}};
  }

  NewFile& file_;
  std::uint32_t owner_;
  std::uint8_t level_;
  jet::IndexPage page_;  // being filled
  IndexChild tail_;
  std::vector<std::uint32_t> pages_;
  std::vector<IndexChild> children_;
};

}  // namespace jetcreate
