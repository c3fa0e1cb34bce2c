#include "jet/index/index_edit.h"

#include <memory>
#include <string>
#include <utility>

#include "jet/index/index_cursor.h"
#include "jet/pages/usage_map_edit.h"
#include "values/runtime_error.h"

namespace jet {

IndexPage IndexEdit::pageAt(std::uint32_t number) {
  return {edits_.file(), std::make_shared<const Page>(edits_.edit(number)), definition_.page};
}

void IndexEdit::descend(Bytes key) {
  path_.clear();
  reachedByNeighbour_ = false;
  for (std::uint32_t number = index_.rootPage;;) {
    path_.push_back({number, pageAt(number)});
    Step& step = path_.back();
    if (step.page.isLeaf()) break;
    if (path_.size() == kMaxIndexLevels) edits_.file().damaged(number, "its index has no leaves");
    const auto child = step.page.childFor(key);
    if (!child) edits_.file().damaged(number, "a node of an index is empty");
    step.child = *child;
    step.beyond = *child < step.page.size() && step.page.compare(*child, key) < 0;
    number = step.page.child(*child);
  }
  walkRight(key);
}

// To the leaf where the key belongs when it comes after the one that the nodes led to.
void IndexEdit::walkRight(Bytes key) {
  std::uint32_t passed = 0;
  for (;;) {
    const IndexPage& leaf = path_.back().page;
    if (leaf.header.next == 0 || leaf.lowerBound(key) < leaf.size()) return;
    const std::uint32_t number = leaf.header.next;
    if (!edits_.file().hasPages(++passed)) {
      edits_.file().damaged(number, "the leaves of an index form a circle");
    }
    IndexPage next = pageAt(number);
    if (!next.isLeaf()) edits_.file().damaged(number, "it should be a leaf of an index");
    if (next.size() != 0 && next.compare(0, key) > 0) return;
    path_.back() = {number, std::move(next)};
    reachedByNeighbour_ = true;
  }
}

bool IndexEdit::hasOther(Bytes key, RowId row) {
  descend(key);
  IndexPage leaf = path_.back().page;
  std::size_t n = leaf.lowerBound(key);
  for (std::uint32_t passed = 0;; ++n) {
    while (n == leaf.size()) {
      if (leaf.header.next == 0 || !edits_.file().hasPages(++passed)) return false;
      leaf = pageAt(leaf.header.next);
      n = leaf.lowerBound(key);
    }
    const bool sameKey =
        leaf.compare(n, key) == 0 && leaf.entryBytes(n).size() == key.size() + kEntryRowSize;
    if (!sameKey) return false;
    if (leaf.rowId(n) != row) return true;
  }
}

void IndexEdit::insert(Bytes entry) {
  descend(entry);
  IndexPage leaf = path_.back().page;
  const std::size_t n = leaf.lowerBound(entry);
  if (n < leaf.size() && leaf.compare(n, entry) == 0) return;
  leaf.insert(n, entry);
  const bool appended = leaf.header.next == 0 && n + 1 == leaf.size();
  store(path_.size() - 1, std::move(leaf), appended);
}

void IndexEdit::store(std::size_t depth, IndexPage page, bool appended) {
  Page& target = edits_.edit(path_[depth].number);
  std::vector<std::byte> changed = target.bytes;
  if (!page.store(edits_.format(), changed)) {
    if (depth == 0) {
      splitRoot(std::move(page), appended);
    } else {
      split(depth, std::move(page), appended);
    }
    return;
  }
  raiseAbove(depth, page);
  target.bytes = std::move(changed);
  edits_.schedule(target.number);
}

// The node above says how far its last child reaches; where it has no tail, that may have to grow.
void IndexEdit::raiseAbove(std::size_t depth, const IndexPage& page) {
  if (depth == 0 || page.size() == 0) return;
  if (depth + 1 == path_.size() && reachedByNeighbour_) return;
  const Step& above = path_[depth - 1];
  if (!above.beyond) return;
  IndexPage raised = above.page;
  std::vector<std::byte> last = page.keyBytes(page.size() - 1);
  if (raised.compare(above.child, last) >= 0) return;
  raised.erase(above.child);
  raised.insert(above.child, nodeEntry(std::move(last), path_[depth].number));
  store(depth - 1, std::move(raised), false);
}

Page& IndexEdit::newPage() { return allocatePage(edits_); }

void IndexEdit::write(Page& target, IndexPage& page) {
  if (!page.store(edits_.format(), target.bytes)) {
    edits_.file().damaged(target.number, "an index entry is longer than half a page");
  }
  edits_.schedule(target.number);
}

void IndexEdit::link(Page& page) {
  markAllocated(edits_, page.number);
  setUsageBit(edits_, index_.usageMap, page.number, true);
}

void IndexEdit::split(std::size_t depth, IndexPage left, bool appended) {
  const std::uint32_t leftNumber = path_[depth].number;
  if (depth + 1 == path_.size() && reachedByNeighbour_) {
    edits_.file().damaged(leftNumber, "a full leaf of an index is not known to the node above it");
  }
  IndexPage right = left.splitAt(appended ? left.size() - 1 : left.middle());
  Page& rightPage = newPage();
  right.header.previous = leftNumber;
  right.header.next = left.header.next;
  left.header.next = rightPage.number;
  write(rightPage, right);
  link(rightPage);
  nameRight(depth, left, rightPage.number, right);
  if (right.header.next != 0) relinkPrevious(right.header.next, rightPage.number);
  write(edits_.edit(leftNumber), left);
}

void IndexEdit::relinkPrevious(std::uint32_t number, std::uint32_t previous) {
  IndexPage page = pageAt(number);
  page.header.previous = previous;
  write(edits_.edit(number), page);
}

// In the node above, what led to the left half now leads to the right one, and the left one gets an
// entry before it.
void IndexEdit::nameRight(std::size_t depth, const IndexPage& left, std::uint32_t rightNumber,
                          const IndexPage& right) {
  const Step& above = path_[depth - 1];
  IndexPage node = above.page;
  if (above.child == node.size()) {
    // A tail that is a leaf while the node's other children are nodes has no place among them.
    if (node.size() != 0 && pageAt(node.child(0)).isLeaf() != left.isLeaf()) {
      edits_.file().damaged(above.number, "the tail of an index node is of another level");
    }
    node.header.tail = rightNumber;
  } else {
    std::vector<std::byte> bound =
        above.beyond ? right.keyBytes(right.size() - 1) : node.keyBytes(above.child);
    node.erase(above.child);
    node.insert(above.child, nodeEntry(std::move(bound), rightNumber));
  }
  node.insert(above.child, nodeEntry(left.keyBytes(left.size() - 1), path_[depth].number));
  store(depth - 1, std::move(node), false);
}

void IndexEdit::splitRoot(IndexPage left, bool appended) {
  IndexPage root(PageType::kIndexNode, {.owner = left.header.owner,
                                        .level = static_cast<std::uint8_t>(left.header.level + 1)});
  IndexPage right = left.splitAt(appended ? left.size() - 1 : left.middle());
  Page& leftPage = newPage();
  Page& rightPage = newPage();
  left.header.previous = 0;
  left.header.next = rightPage.number;
  right.header.previous = leftPage.number;
  write(rightPage, right);
  write(leftPage, left);
  link(leftPage);
  link(rightPage);
  root.insert(0, nodeEntry(left.keyBytes(left.size() - 1), leftPage.number));
  root.header.tail = rightPage.number;
  write(edits_.edit(path_[0].number), root);
}

void IndexEdit::remove(Bytes entry) {
  descend(entry);
  Step& leaf = path_.back();
  const std::size_t n = leaf.page.lowerBound(entry);
  if (n == leaf.page.size() || leaf.page.compare(n, entry) != 0) {
    entryMissing(edits_.file(), definition_, index_, rowOfEntry(entry));
  }
  leaf.page.erase(n);
  write(edits_.edit(leaf.number), leaf.page);
  if (leaf.page.size() == 0) unlink();
}

// An empty leaf stays where its node would have no entry left without it.
void IndexEdit::unlink() {
  if (path_.size() < 2 || reachedByNeighbour_) return;
  const IndexPageHeader& leaf = path_.back().page.header;
  const Step& above = path_[path_.size() - 2];
  IndexPage node = above.page;
  if (node.size() < 2) return;
  if (above.child == node.size()) {
    node.header.tail = node.child(node.size() - 1);
    node.erase(node.size() - 1);
  } else {
    node.erase(above.child);
  }
  if (leaf.previous != 0) {
    IndexPage before = pageAt(leaf.previous);
    before.header.next = leaf.next;
    write(edits_.edit(leaf.previous), before);
  }
  if (leaf.next != 0) relinkPrevious(leaf.next, leaf.previous);
  write(edits_.edit(above.number), node);
}

std::string indexName(const TableDefinition& definition, const RealIndex& index) {
  const auto position = static_cast<std::size_t>(&index - definition.realIndexes.data());
  std::string name = "index " + std::to_string(position);
  for (const Index& logical : definition.indexes) {
    if (logical.realIndex == position) name = "index '" + logical.name + "'";
  }
  return name + " of table '" + definition.name + "'";
}

void entryMissing(const PageFile& file, const TableDefinition& definition, const RealIndex& index,
                  RowId row) {
  throw RuntimeError(error::kDamaged, "'" + file.path() + "': " + indexName(definition, index) +
                                          " has no entry for row " + std::to_string(row.row) +
                                          " of page " + std::to_string(row.page) + ".");
}

}  // namespace jet
