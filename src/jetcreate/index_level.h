// The pages of one level of an index tree, filled from left to right and chained.
//
//   IndexLevel leaves(file, owner, PageType::kIndexLeaf);
//   leaves.add(entry);                                  // in order
//   std::vector<IndexChild> children = leaves.finish(); // for the level above
//
// At least one page is made, though it be empty.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "jetcreate/new_file.h"

namespace jetcreate {

struct IndexChild {
  std::uint32_t page = 0;
  std::vector<std::byte> lastEntry;  // without the child that an entry of a node names
};

class IndexLevel {
 public:
  IndexLevel(NewFile& file, std::uint32_t owner, jet::PageType type)
      : file_(file), owner_(owner), type_(type) {}

  void add(jet::Bytes entry);

  // On a node: the child's last entry, then its page.
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
  IndexChild tail_;
  std::vector<std::vector<std::byte>> entries_;  // of the page being filled
  std::size_t size_ = 0;                         // of entries_ when nothing is left out
  std::size_t prefix_ = 0;                       // bytes that all of them begin with
  std::vector<std::uint32_t> pages_;
  std::vector<IndexChild> children_;
};

}  // namespace jetcreate
