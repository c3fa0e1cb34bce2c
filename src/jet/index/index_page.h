// One page of an index tree: read, searched, changed and stored.
//
//   IndexPage leaf(file, file.page(number), definition.page);
//   if (std::size_t n = leaf.lowerBound(key); n < leaf.size()) use(leaf.rowId(n));
//
//   leaf.insert(leaf.lowerBound(entry), entry);
//   if (!leaf.store(format, page.bytes)) ... it no longer fits: split it
//
// An entry is the encoded key, then its row; on a node then the page of a child, whose last key and
// row it repeats. Entries compare byte by byte. On the page those after the first leave out the
// `prefix` leading bytes that they share with it. A node's tail is one more child, without an
// entry, for keys above all entries.
//
// A page that is only read is a view of the file's page and cheap to copy; the first change copies
// its entries, in full. Errors: 3049 for a page that is not of the index or contradicts itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jet/pages/page_file.h"

namespace jet {

struct IndexPageHeader {
  std::uint32_t owner = 0;     // definition page of the table
  std::uint32_t previous = 0;  // pages beside this one on its level; 0: none
  std::uint32_t next = 0;
  std::uint32_t tail = 0;  // of a node; 0: none
  std::uint8_t level = 0;  // distance from the leaves
};

class IndexPage {
 public:
  // An empty one.
  IndexPage(PageType type, const IndexPageHeader& head)
      : header(head), leaf_(type == PageType::kIndexLeaf), inFull_(true) {}

  // Checks the page's kind, owner, entries and their order.
  IndexPage(const PageFile& file, PagePtr page, std::uint32_t owner);

  // As it was read; null for one that was made empty.
  [[nodiscard]] const PagePtr& page() const { return page_; }
  [[nodiscard]] bool isLeaf() const { return leaf_; }
  [[nodiscard]] std::size_t size() const { return ends_.size(); }

  // Bytes of the entries as they stand on the page that was read.
  [[nodiscard]] std::size_t storedBytes() const { return ends_.empty() ? 0 : ends_.back(); }

  // Order of an entry's leading bytes against `key`: below, at (the entry begins with it), above 0.
  [[nodiscard]] int compare(std::size_t entry, Bytes key) const;

  // First entry whose leading bytes are not below `key`; size() when there is none.
  [[nodiscard]] std::size_t lowerBound(Bytes key) const;

  // First entry from `from` on whose leading bytes are above `key`; size() when there is none.
  [[nodiscard]] std::size_t upperBound(Bytes key, std::size_t from) const;

  // Position of the child to descend into for `key`: an entry, or size() for the tail. A node
  // without a tail has the keys above its entries in its last child. Nothing for an empty node.
  [[nodiscard]] std::optional<std::size_t> childFor(Bytes key) const;

  // Page of the child at a position as above.
  [[nodiscard]] std::uint32_t child(std::size_t position) const;

  [[nodiscard]] RowId rowId(std::size_t entry) const;

  // Key and row of an entry, without a node's child.
  [[nodiscard]] std::vector<std::byte> keyBytes(std::size_t entry) const;

  // The whole entry, its prefix included.
  [[nodiscard]] std::vector<std::byte> entryBytes(std::size_t entry) const;

  void insert(std::size_t n, Bytes entry);
  void erase(std::size_t n);

  // For pages filled in order: adds an entry after the others. False, with nothing changed, when
  // the page has no room for it even with the longest prefix, which store() then uses.
  [[nodiscard]] bool append(const Format& format, Bytes entry);

  // The entries from n on, moved into a page of their own together with this one's tail.
  [[nodiscard]] IndexPage splitAt(std::size_t n);

  // Where half of the bytes stand before it; at least 1, below size(). For a page of two entries
  // or more.
  [[nodiscard]] std::size_t middle();

  // Writes header and entries into the bytes of a page. False, with the bytes untouched, when the
  // entries do not fit even with the longest prefix.
  [[nodiscard]] bool store(const Format& format, MutableBytes page);

  IndexPageHeader header;

 private:
  [[nodiscard]] Bytes entries() const { return inFull_ ? Bytes(full_) : view_; }
  [[nodiscard]] std::size_t trailer() const {
    return leaf_ ? kEntryRowSize : kEntryRowSize + kEntryChildSize;
  }
  [[nodiscard]] Bytes stored(std::size_t entry) const {
    const std::size_t start = entry == 0 ? 0 : ends_[entry - 1];
    return entries().subspan(start, ends_[entry] - start);
  }
  [[nodiscard]] Bytes withoutChild(Bytes entry) const;
  void findEntries(const PageFile& file);
  void checkOrder(const PageFile& file) const;
  void copyEntries();
  [[nodiscard]] std::size_t commonPrefix(const Format& format) const;
  [[nodiscard]] std::size_t storedSize(std::size_t prefix) const;
  void storeEntries(const Format& format, std::size_t prefix, MutableBytes page) const;

  PagePtr page_;
  Bytes view_;  // of page_, from its first entry on
  bool leaf_;
  bool inFull_ = false;             // the entries stand in full_, with no prefix left out
  std::size_t prefix_ = 0;          // bytes left out in entries()
  std::size_t prefixWanted_ = 0;    // at most as many are left out by store(), if they fit so
  std::size_t appendedPrefix_ = 0;  // common to all entries; kept by append()
  std::vector<std::byte> full_;
  std::vector<std::uint32_t> ends_;  // of each entry in entries()
};

// An entry of a leaf: the key, then the row.
[[nodiscard]] std::vector<std::byte> leafEntry(std::vector<std::byte> key, RowId row);

// An entry of a node: the last key and row of a child, then its page.
[[nodiscard]] std::vector<std::byte> nodeEntry(std::vector<std::byte> lastKey, std::uint32_t child);

// The row of a leaf's entry.
[[nodiscard]] RowId rowOfEntry(Bytes leafEntry);

}  // namespace jet
