// Changes to an index tree: an entry goes in, an entry goes out.
//
//   IndexEdit index(edits, definition, realIndex);
//   if (realIndex.unique && index.hasOther(key, id)) ... error 3022
//   index.insert(entry);   // key and row pointer
//   index.remove(entry);
//
// The way from the root to the leaf is locked page by page. Order of writing, so that every lookup
// and every forward walk finds each entry at any moment:
//   a leaf that has room       one write; a node above that must reach further goes first
//   a full page                the new right half (nobody knows it), the usage maps, the node
//                              above (which sends lookups to the right half, where all is), the
//                              page behind (its pointer back), the old page cut down to its half
//   a full root                both halves, the usage maps, then the root becomes their node
//   a leaf that gets empty     the leaf, the pointers of its neighbours, the node above
// An emptied leaf leaves the tree, but is not given back to the file: another program may still
// be standing on it, and finds there the way on. Compacting the file reclaims it.
// Errors: 3049 for a tree that contradicts itself or hangs together in a way not known here.
#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/index/index_node.h"
#include "jet/pages/page_edits.h"

namespace jet {

class IndexEdit {
 public:
  IndexEdit(PageEdits& edits, const TableDefinition& definition, const RealIndex& index)
      : edits_(edits), definition_(definition), index_(index) {}

  // Whether an entry of another row begins with this key.
  [[nodiscard]] bool hasOther(Bytes key, RowId row);

  // An entry that is there already stays as it is.
  void insert(Bytes entry);

  // False when there is no such entry.
  bool remove(Bytes entry);

 private:
  struct Step {
    std::uint32_t page = 0;
    IndexNode node;
    std::size_t child = 0;  // entry that led on; node.size() for the tail
    bool beyond = false;    // the last entry led on, though it is below what was looked for
  };

  void descend(Bytes key);
  void walkRight(Bytes key);
  void store(std::size_t depth, const IndexNode& node, bool appended);
  void raiseAbove(std::size_t depth, const IndexNode& node);
  void split(std::size_t depth, IndexNode node, bool appended);
  void splitRoot(IndexNode node, bool appended);
  [[nodiscard]] Page& newPage();
  void write(Page& page, const IndexNode& node);
  void link(Page& page);
  void nameRight(std::size_t depth, const IndexNode& left, std::uint32_t right,
                 const IndexNode& rightNode);
  void unlink();
  [[nodiscard]] IndexNode nodeAt(std::uint32_t page);

  PageEdits& edits_;
  const TableDefinition& definition_;
  const RealIndex& index_;
  std::vector<Step> path_;  // root first
  bool strayed_ = false;    // the leaf was reached by its neighbour, not by the node above
};

}  // namespace jet
