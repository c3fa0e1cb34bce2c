// A page of an index tree with all its entries spelled out, to be changed and stored again.
//
//   IndexNode node(file, page, definition.page);
//   node.insert(node.lowerBound(entry), entry);
//   if (!node.store(format, page)) ... it no longer fits: split it
//
// An entry of a leaf is the encoded key and the row; a node's has the page of a child behind them,
// whose entries are none above it. A node's `tail` is one more child, for what is above all its
// entries. Errors: 3049 for a page that is not of the index.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/pages/page_file.h"

namespace jet {

class IndexNode {
 public:
  // An empty one.
  explicit IndexNode(bool leaf) : leaf_(leaf) {}
  IndexNode(const PageFile& file, const Page& page, std::uint32_t owner);

  [[nodiscard]] bool isLeaf() const { return leaf_; }
  [[nodiscard]] std::size_t size() const { return ends_.size(); }
  [[nodiscard]] Bytes entry(std::size_t n) const;
  [[nodiscard]] std::uint32_t child(std::size_t n) const;
  [[nodiscard]] std::vector<std::byte> withoutChild(std::size_t n) const;

  // First entry that is not below `key`, as far as both reach; size() when there is none.
  [[nodiscard]] std::size_t lowerBound(Bytes key) const;

  void insert(std::size_t n, Bytes entry);
  void erase(std::size_t n);

  // The entries from n on, taken away into a node of their own with this one's tail.
  [[nodiscard]] IndexNode splitAt(std::size_t n);

  // Where half of the bytes stand in front; at least 1, below size().
  [[nodiscard]] std::size_t middle() const;

  // Makes the page say what the node says; its owner and siblings included. False, and the page
  // untouched, when the entries do not fit even with their common prefix left out.
  [[nodiscard]] bool store(const Format& format, Page& page) const;

  // For store(): the definition page of the table, the pages beside this one, the extra child, and
  // the distance from the leaves.
  std::uint32_t owner = 0;
  std::uint32_t previous = 0;
  std::uint32_t next = 0;
  std::uint32_t tail = 0;
  std::uint8_t level = 0;

 private:
  [[nodiscard]] std::size_t trailer() const { return leaf_ ? 4 : 8; }
  [[nodiscard]] std::size_t commonPrefix() const;
  [[nodiscard]] std::size_t storedSize(std::size_t prefix) const;

  bool leaf_ = true;
  std::size_t prefix_ = 0;  // bytes left out as the page was read
  std::vector<std::byte> bytes_;
  std::vector<std::size_t> ends_;  // of each entry in bytes_
};

// Order of the leading bytes of two entries or keys, as far as both reach.
[[nodiscard]] int compareLeading(Bytes a, Bytes b);

}  // namespace jet
