#include "jetcheck/index_check.h"

#include <algorithm>

#include "jet/index/index_edit.h"
#include "jetcheck/row_key.h"
#include "values/runtime_error.h"

namespace jetcheck {

using jet::Bytes;
using jet::IndexPage;
using jet::RowId;

namespace {

std::string rowName(RowId id) {
  return "row " + std::to_string(id.row) + " of page " + std::to_string(id.page);
}

bool isBelow(Bytes a, Bytes b) { return std::ranges::lexicographical_compare(a, b); }

}  // namespace

IndexCheck::IndexCheck(jet::PageFile& file, jet::Table& table, std::size_t realIndex,
                       const RowSet& live, const PageOwners& owners, PageOwners::Id owner,
                       FaultLog& faults)
    : file_(file),
      table_(table),
      index_(table.definition().realIndexes[realIndex]),
      live_(live),
      owners_(owners),
      owner_(owner),
      faults_(faults),
      object_(name(table.definition(), realIndex)),
      seen_(live.emptied()),
      visited_(file.pageCount()) {}

std::string IndexCheck::name(const jet::TableDefinition& definition, std::size_t realIndex) {
  for (const jet::Index& index : definition.indexes) {
    if (index.realIndex != realIndex) continue;
    return "index '" + index.name + "' of table '" + definition.name + "'";
  }
  return "index " + std::to_string(realIndex) + " of table '" + definition.name + "'";
}

void IndexCheck::fault(std::uint32_t page, const std::string& what) {
  faults_.add({.page = page, .object = object_}, what);
}

void IndexCheck::run(const std::vector<std::uint32_t>& pages) {
  visit(index_.rootPage, 0, {});
  for (const Level& level : levels_) {
    if (level.next == 0 || broken_) continue;
    fault(level.page,
          "it goes on with page " + std::to_string(level.next) + ", which its tree does not have");
  }
  if (broken_) return;
  checkMissing();
  checkUnreached(pages);
}

void IndexCheck::checkUnreached(const std::vector<std::uint32_t>& pages) {
  for (const std::uint32_t number : pages) {
    if (number >= visited_.size() || visited_[number]) continue;
    faults_.guard(object_, [&] {
      const IndexPage page(file_, file_.page(number), table_.definition().page);
      if (!page.isLeaf() || page.size() != 0) fault(number, "its tree does not have it");
    });
  }
}

void IndexCheck::visit(std::uint32_t number, std::size_t depth, const KeyBytes& bound) {
  if (number >= visited_.size()) {
    fault(number, "its tree has it, the file ends before it");
    broken_ = true;
    return;
  }
  if (depth == jet::kMaxIndexLevels || visited_[number]) {
    fault(number, "its tree has it twice");
    broken_ = true;
    return;
  }
  visited_[number] = true;
  const bool read = faults_.guard(object_, [&] {
    const IndexPage page(file_, file_.page(number), table_.definition().page);
    checkHeader(page);
    checkPlace(page, depth, bound);
    checkChain(page, depth);
    if (page.isLeaf()) {
      checkLeaf(page);
    } else {
      visitChildren(page, depth, bound);
      checkLevel(page, depth);
    }
  });
  broken_ = broken_ || !read;
}

void IndexCheck::visitChildren(const IndexPage& node, std::size_t depth, const KeyBytes& bound) {
  if (node.size() == 0 && node.header.tail == 0) {
    fault(node.page()->number, "a node has no child");
    broken_ = true;
  }
  for (std::size_t i = 0; i < node.size(); ++i) visit(node.child(i), depth + 1, node.keyBytes(i));
  if (node.header.tail != 0) visit(node.header.tail, depth + 1, bound);
}

void IndexCheck::checkHeader(const IndexPage& page) {
  const jet::Format& format = file_.format();
  const Bytes bytes = page.page()->bytes;
  const std::size_t room = format.pageSize - format.indexEntries - page.storedBytes();
  if (jet::loadU16(bytes, jet::kPageFreeSpace) != room) {
    fault(page.page()->number, "it should have " + std::to_string(room) + " free bytes, it says " +
                                   std::to_string(jet::loadU16(bytes, jet::kPageFreeSpace)));
  }
  if (page.isLeaf() && page.header.tail != 0) fault(page.page()->number, "a leaf with a tail");
}

// Files made by other programs have level 0 on all pages.
void IndexCheck::checkLevel(const IndexPage& node, std::size_t depth) {
  const std::size_t level = leafDepth_ == 0 ? 0 : leafDepth_ - 1 - depth;
  if (node.header.level == 0 || leafDepth_ == 0 || node.header.level == level) return;
  fault(node.page()->number, "a node of level " + std::to_string(node.header.level) +
                                 " where level " + std::to_string(level) + " stands");
}

void IndexCheck::checkPlace(const IndexPage& page, std::size_t depth, const KeyBytes& bound) {
  const std::uint32_t number = page.page()->number;
  if (owners_.of(number) != owner_) {
    fault(number, "it belongs to " + owners_.name(owners_.of(number)));
  }
  if (page.isLeaf()) {
    if (leafDepth_ == 0) leafDepth_ = depth + 1;
    if (leafDepth_ != depth + 1) fault(number, "a leaf on another level than the others");
    if (page.header.level != 0) {
      fault(number, "a leaf of level " + std::to_string(page.header.level));
    }
  }
  if (page.size() == 0) return;
  if (!last_.empty() && !isBelow(last_, page.keyBytes(0))) {
    fault(number, "its first entry is not above the last one of the leaf before it");
  }
  if (!bound.empty() && isBelow(bound, page.keyBytes(page.size() - 1))) {
    fault(number, "its last entry is above that of its node");
  }
}

void IndexCheck::checkChain(const IndexPage& page, std::size_t depth) {
  const std::uint32_t number = page.page()->number;
  if (levels_.size() <= depth) levels_.resize(depth + 1);
  Level& level = levels_[depth];
  if (page.header.previous != level.page) {
    fault(number, "the page before it is " + std::to_string(level.page) + ", it says " +
                      std::to_string(page.header.previous));
  }
  if (level.page != 0 && level.next != number) {
    fault(level.page, "the page after it is " + std::to_string(number) + ", it says " +
                          std::to_string(level.next));
  }
  level = {number, page.header.next};
}

void IndexCheck::checkLeaf(const IndexPage& leaf) {
  for (std::size_t n = 0; n < leaf.size(); ++n) checkEntry(leaf.page()->number, leaf.keyBytes(n));
}

void IndexCheck::checkEntry(std::uint32_t page, const KeyBytes& entry) {
  const RowId id = jet::rowOfEntry(entry);
  const Place place{.page = page, .object = object_};
  if (!live_.contains(id)) {
    faults_.add(place, "an entry names " + rowName(id) + ", which is not there");
  } else if (!seen_.insert(id)) {
    faults_.add(place, "two entries name " + rowName(id));
  } else {
    checkKey(place, id, Bytes(entry).first(entry.size() - jet::kEntryRowSize));
  }
  last_ = entry;
}

// A row that cannot be read was reported with its table.
void IndexCheck::checkKey(const Place& place, RowId id, Bytes key) try {
  if (!table_.tryReadNext(id, row_)) return;
  const RowKey expected = rowKey(table_.definition(), index_, row_);
  if (!expected.matches(key)) {
    faults_.add(place, "the entry of " + rowName(id) + " is not its key");
  } else if (expected.allNull && index_.ignoreNulls) {
    faults_.add(place, "an entry of " + rowName(id) + ", which is Null");
  } else if (expected.anyNull) {
    if (index_.required) faults_.add(place, "a Null of " + rowName(id));
  } else if (index_.unique && !last_.empty() &&
             std::ranges::equal(key, Bytes(last_).first(last_.size() - jet::kEntryRowSize))) {
    faults_.add(place, rowName(id) + " has the key of " + rowName(jet::rowOfEntry(last_)));
  }
} catch (const RuntimeError& problem) {
  if (problem.number() != error::kDamaged) throw;
}

void IndexCheck::checkMissing() {
  live_.forEachMissingIn(seen_, [&](RowId id) {
    try {
      if (!table_.tryReadNext(id, row_)) return;
      const RowKey key = rowKey(table_.definition(), index_, row_);
      if (key.allNull && index_.ignoreNulls) return;
    } catch (const RuntimeError& problem) {
      if (problem.number() != error::kDamaged) throw;
      return;
    }
    faults_.add({.page = id.page, .row = id.row, .object = object_}, "the row has no entry");
  });
}

}  // namespace jetcheck
