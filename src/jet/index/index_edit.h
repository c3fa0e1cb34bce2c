// Changes to an index tree: an entry goes in, an entry goes out.
//
//   IndexEdit index(edits, definition, realIndex);
//   if (realIndex.unique && index.hasOther(key, id)) ... error 3022
//   index.insert(leafEntry(key, id));
//   index.remove(leafEntry(oldKey, id));
//
// The pages from the root to the leaf are locked one by one. Order of writing, so that every lookup
// and every forward walk finds each entry at any moment:
//   a leaf that has room       one write; a node above that must reach further goes first
//   a full page                the new right half (nobody knows it), the usage maps, the node
//                              above (which sends lookups to the right half, where all is), the
//                              next page (its pointer back), the old page cut down to its half
//   a full root                both halves, the usage maps, then the root becomes their node
//   a leaf that gets empty     the leaf, the pointers of its neighbours, the node above
// An emptied leaf leaves the tree, but is not given back to the file: another program may still
// be reading it, and finds the next leaf there. Compacting the file reclaims it.
// Errors: 3049 for an entry that is to go out and is not there, for a tree that contradicts itself
// or hangs together in a way not known here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/row_id.h"
#include "jet/format/table_definition.h"
#include "jet/index/index_page.h"
#include "jet/pages/page_edits.h"

namespace jet {

class IndexEdit {
 public:
  IndexEdit(PageEdits& edits, const TableDefinition& definition, const RealIndex& index)
      : edits_(edits), definition_(definition), index_(index) {}

  // Whether an entry of another row has this key.
  [[nodiscard]] bool hasOther(Bytes key, RowId row);

  // An entry that is there already stays as it is.
  void insert(Bytes entry);
  void remove(Bytes entry);

 private:
  struct Step {
    std::uint32_t number = 0;
    IndexPage page;
    std::size_t child = 0;  // position of the child that was descended into
    bool beyond = false;    // that is the last entry, though the key is above it
  };

  void descend(Bytes key);
  void walkRight(Bytes key);
  void store(std::size_t depth, IndexPage page, bool appended);
  void raiseAbove(std::size_t depth, const IndexPage& page);
  void split(std::size_t depth, IndexPage left, bool appended);
  void splitRoot(IndexPage left, bool appended);
  [[nodiscard]] Page& newPage();
  void write(Page& target, IndexPage& page);
  void link(Page& page);
  void relinkPrevious(std::uint32_t number, std::uint32_t previous);
  void nameRight(std::size_t depth, const IndexPage& left, std::uint32_t rightNumber,
                 const IndexPage& right);
  void unlink();
  [[nodiscard]] IndexPage pageAt(std::uint32_t number);

  PageEdits& edits_;
  const TableDefinition& definition_;
  const RealIndex& index_;
  std::vector<Step> path_;           // root first
  bool reachedByNeighbour_ = false;  // the leaf, and not by the node above it
};

// "index 'name' of table 'name'".
[[nodiscard]] std::string indexName(const TableDefinition& definition, const RealIndex& index);

// Error 3049 that names file, table, index and row.
[[noreturn]] void entryMissing(const PageFile& file, const TableDefinition& definition,
                               const RealIndex& index, RowId row);

}  // namespace jet
