// One page of an index tree, taken apart: where its entries stand and what they say.
//
// An entry is the encoded key, then the row it is for (page: three bytes, row: one, the high byte
// first); on a node also the page of the child whose last entry it repeats. Entries compare byte by
// byte. Those behind the first leave out the first one's `prefix` leading bytes.
// Errors: 3049.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jet/pages/page_file.h"

namespace jet {

class IndexPage {
 public:
  // Checks the page's kind, owner, entries and their order.
  IndexPage(const PageFile& file, PagePtr page, std::uint32_t owner);

  [[nodiscard]] const PagePtr& page() const { return page_; }
  [[nodiscard]] bool isLeaf() const { return leaf_; }
  [[nodiscard]] std::uint32_t previous() const { return previous_; }
  [[nodiscard]] std::uint32_t next() const { return next_; }
  [[nodiscard]] std::uint32_t tail() const { return tail_; }
  [[nodiscard]] std::size_t size() const { return ends_.size(); }

  // Order of an entry's leading bytes against `key`: below, at (the entry begins with it), above 0.
  [[nodiscard]] int compare(std::size_t entry, Bytes key) const;

  // First entry whose leading bytes are not below `key`; size() when there is none.
  [[nodiscard]] std::size_t lowerBound(Bytes key) const;

  [[nodiscard]] RowId rowId(std::size_t entry) const;
  [[nodiscard]] std::uint32_t child(std::size_t entry) const;  // of a node

  // Key and row of an entry, without a node's child.
  [[nodiscard]] std::vector<std::byte> keyBytes(std::size_t entry) const;

  // The whole entry, its left-out prefix put back.
  [[nodiscard]] std::vector<std::byte> entryBytes(std::size_t entry) const;

 private:
  [[nodiscard]] Bytes stored(std::size_t entry) const;
  [[nodiscard]] Bytes withoutChild(Bytes entry) const;
  void findEntries(const PageFile& file);
  void checkOrder(const PageFile& file) const;

  PagePtr page_;
  bool leaf_ = false;
  std::uint32_t previous_ = 0;
  std::uint32_t next_ = 0;
  std::uint32_t tail_ = 0;
  Bytes entries_;                    // the page from its first entry on
  std::size_t prefix_ = 0;           // bytes
  std::size_t trailer_ = 0;          // bytes behind the key: row pointer, child page
  std::vector<std::uint16_t> ends_;  // of each entry in entries_
};

using IndexPagePtr = std::shared_ptr<const IndexPage>;

// Index pages of one table taken apart already; bounded. A page that was read again since is taken
// apart again. What one page says of another is compared when the two first meet: the child's
// entries lie between those of its node, the next leaf begins behind this one's end and points
// back.
class IndexPageCache {
 public:
  [[nodiscard]] IndexPagePtr get(PageFile& file, std::uint32_t number, std::uint32_t owner);

  // The child to go on in for `entry` of a node; for entry == size(), where keys behind them all
  // are. Null when the two pages contradict each other: damage, or one of them was changed since
  // the other was read.
  [[nodiscard]] IndexPagePtr child(PageFile& file, const IndexPage& node, std::size_t entry,
                                   std::uint32_t owner);

  // The leaf behind `leaf`, which has one. Null as above.
  [[nodiscard]] IndexPagePtr next(PageFile& file, const IndexPage& leaf, std::uint32_t owner);

 private:
  static constexpr std::size_t kPages = 256;

  struct Entry {
    IndexPagePtr page;
    PagePtr checkedUnder;  // the node with which it was compared
  };
  std::unordered_map<std::uint32_t, Entry> pages_;
};

}  // namespace jet
