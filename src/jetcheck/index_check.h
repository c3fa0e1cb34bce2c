// One index tree of a table: its pages against each other, its entries against the rows.
//
//   IndexCheck(file, table, number, live, owners, owner, faults).run(pages);
//
// Pages: order of entries within and across pages and their shared prefixes, that a child's entries
// lie between those of its node, equal depth of all leaves, levels, the chain both ways on each
// level. Entries: each names a row that is there, once, under the row's key; every row that belongs
// into the index has one; no two rows have the same key where it is unique.
// After a page that cannot be read, rows that are missing are not listed: they may stand below it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "jet/index/index_page.h"
#include "jet/table.h"
#include "jetcheck/fault_log.h"
#include "jetcheck/page_owners.h"
#include "jetcheck/row_set.h"

namespace jetcheck {

class IndexCheck {
 public:
  // `live`: the table's rows at their first places. `owner`: whose pages the tree's must be.
  IndexCheck(jet::PageFile& file, jet::Table& table, std::size_t realIndex, const RowSet& live,
             const PageOwners& owners, PageOwners::Id owner, FaultLog& faults);

  // `pages`: what the index's usage map gives it. Those that the tree does not reach must be empty
  // leaves: the engine keeps a leaf that got empty.
  void run(const std::vector<std::uint32_t>& pages);

  // "index 'PrimaryKey' of table 'Selling'"; of several that share the tree the first.
  [[nodiscard]] static std::string name(const jet::TableDefinition& definition,
                                        std::size_t realIndex);

 private:
  using KeyBytes = std::vector<std::byte>;

  // The page last visited on a level, counted from the root.
  struct Level {
    std::uint32_t page = 0;
    std::uint32_t next = 0;
  };

  // `bound`: the last key and row that the page may have; empty: any.
  void visit(std::uint32_t number, std::size_t depth, const KeyBytes& bound);
  void visitChildren(const jet::IndexPage& node, std::size_t depth, const KeyBytes& bound);
  void checkUnreached(const std::vector<std::uint32_t>& pages);
  void checkHeader(const jet::IndexPage& page);
  void checkLevel(const jet::IndexPage& node, std::size_t depth);
  void checkPlace(const jet::IndexPage& page, std::size_t depth, const KeyBytes& bound);
  void checkChain(const jet::IndexPage& page, std::size_t depth);
  void checkLeaf(const jet::IndexPage& leaf);
  void checkEntry(std::uint32_t page, const KeyBytes& entry);
  void checkKey(const Place& place, jet::RowId id, jet::Bytes key);
  void checkMissing();
  void fault(std::uint32_t page, const std::string& what);

  jet::PageFile& file_;
  jet::Table& table_;
  const jet::RealIndex& index_;
  const RowSet& live_;
  const PageOwners& owners_;
  PageOwners::Id owner_;
  FaultLog& faults_;
  std::string object_;
  RowSet seen_;
  std::vector<bool> visited_;  // by page
  std::vector<Level> levels_;
  std::size_t leafDepth_ = 0;  // levels above the leaves, plus 1; 0: not known yet
  KeyBytes last_;              // entry of a leaf
  jet::Row row_;
  bool broken_ = false;
};

}  // namespace jetcheck
