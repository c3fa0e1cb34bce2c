#include "jet/index/index_edit.h"

#include <algorithm>
#include <utility>

#include "jet/pages/usage_map_edit.h"

namespace jet {
namespace {

constexpr std::size_t kMaxLevels = 16;  // a tree of 2 GiB has five

std::vector<std::byte> withChild(std::vector<std::byte> entry, std::uint32_t child) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    entry.push_back(static_cast<std::byte>(child >> shift & 0xff));
  }
  return entry;
}

RowId rowOf(Bytes leafEntry) {
  const std::size_t at = leafEntry.size() - 4;
  return {loadU24BigEndian(leafEntry, at), loadU8(leafEntry, at + 3)};
}

}  // namespace

IndexNode IndexEdit::nodeAt(std::uint32_t page) {
  return {edits_.file(), edits_.edit(page), definition_.page};
}

void IndexEdit::descend(Bytes key) {
  path_.clear();
  strayed_ = false;
  std::uint32_t page = index_.rootPage;
  for (;;) {
    path_.push_back({page, nodeAt(page)});
    Step& step = path_.back();
    if (step.node.isLeaf()) break;
    if (path_.size() == kMaxLevels) edits_.file().damaged(page, "its index has no leaves");
    step.child = step.node.lowerBound(key);
    if (step.child < step.node.size()) {
      page = step.node.child(step.child);
    } else if (step.node.tail != 0) {
      page = step.node.tail;
    } else if (step.node.size() != 0) {
      step.child = step.node.size() - 1;
      step.beyond = true;
      page = step.node.child(step.child);
    } else {
      edits_.file().damaged(page, "a node of an index is empty");
    }
  }
  walkRight(key);
}

// To the leaf where the key belongs when that stands behind the one that the nodes led to.
void IndexEdit::walkRight(Bytes key) {
  std::uint32_t passed = 0;
  for (;;) {
    const IndexNode& leaf = path_.back().node;
    if (leaf.next == 0 || leaf.lowerBound(key) < leaf.size()) return;
    const std::uint32_t next = leaf.next;
    if (++passed > edits_.file().pageCount()) {
      edits_.file().damaged(next, "the leaves of an index form a circle");
    }
    IndexNode node = nodeAt(next);
    if (!node.isLeaf()) edits_.file().damaged(next, "it should be a leaf of an index");
    if (node.size() != 0 && compareLeading(node.entry(0), key) > 0) return;
    path_.back() = {next, std::move(node)};
    strayed_ = true;
  }
}

bool IndexEdit::hasOther(Bytes key, RowId row) {
  descend(key);
  IndexNode leaf = path_.back().node;
  std::size_t n = leaf.lowerBound(key);
  for (std::uint32_t passed = 0;; ++n) {
    while (n == leaf.size()) {
      if (leaf.next == 0 || ++passed > edits_.file().pageCount()) return false;
      leaf = nodeAt(leaf.next);
      n = leaf.lowerBound(key);
    }
    if (leaf.entry(n).size() != key.size() + 4 || compareLeading(leaf.entry(n), key) != 0) {
      return false;
    }
    if (rowOf(leaf.entry(n)) != row) return true;
  }
}

void IndexEdit::insert(Bytes entry) {
  descend(entry);
  IndexNode leaf = path_.back().node;
  const std::size_t n = leaf.lowerBound(entry);
  if (n < leaf.size() && compareLeading(leaf.entry(n), entry) == 0) return;
  leaf.insert(n, entry);
  store(path_.size() - 1, leaf, leaf.next == 0 && n + 1 == leaf.size());
}

void IndexEdit::store(std::size_t depth, const IndexNode& node, bool appended) {
  Page& page = edits_.edit(path_[depth].page);
  Page changed = page;
  if (!node.store(edits_.format(), changed)) {
    if (depth == 0) {
      splitRoot(node, appended);
    } else {
      split(depth, node, appended);
    }
    return;
  }
  raiseAbove(depth, node);
  page = std::move(changed);
  edits_.schedule(page.number);
}

// The node above says how far its last child reaches; where it has no tail, that may have to grow.
void IndexEdit::raiseAbove(std::size_t depth, const IndexNode& node) {
  if (depth == 0 || node.size() == 0) return;
  if (depth + 1 == path_.size() && strayed_) return;
  const Step& above = path_[depth - 1];
  if (!above.beyond) return;
  IndexNode raised = above.node;
  const std::vector<std::byte> last = node.withoutChild(node.size() - 1);
  if (compareLeading(raised.entry(above.child), last) >= 0) return;
  raised.erase(above.child);
  raised.insert(above.child, withChild(last, path_[depth].page));
  store(depth - 1, raised, false);
}

Page& IndexEdit::newPage() { return allocatePage(edits_); }

void IndexEdit::write(Page& page, const IndexNode& node) {
  if (!node.store(edits_.format(), page)) {
    edits_.file().damaged(page.number, "an index entry is longer than half a page");
  }
  edits_.schedule(page.number);
}

void IndexEdit::link(Page& page) {
  giveAway(edits_, page.number);
  setUsageBit(edits_, index_.usageMap, page.number, true);
}

void IndexEdit::split(std::size_t depth, IndexNode node, bool appended) {
  const std::uint32_t leftNumber = path_[depth].page;
  if (depth + 1 == path_.size() && strayed_) {
    edits_.file().damaged(leftNumber, "a full leaf of an index is not known to the node above it");
  }
  IndexNode rightNode = node.splitAt(appended ? node.size() - 1 : node.middle());
  Page& right = newPage();
  rightNode.previous = leftNumber;
  rightNode.next = node.next;
  node.next = right.number;
  write(right, rightNode);
  link(right);
  nameRight(depth, node, right.number, rightNode);
  if (rightNode.next != 0) {
    IndexNode behind = nodeAt(rightNode.next);
    behind.previous = right.number;
    write(edits_.edit(rightNode.next), behind);
  }
  write(edits_.edit(leftNumber), node);
}

// In the node above, what led to the left half now leads to the right one, and the left one stands
// in front of it.
void IndexEdit::nameRight(std::size_t depth, const IndexNode& left, std::uint32_t right,
                          const IndexNode& rightNode) {
  const Step& above = path_[depth - 1];
  IndexNode node = above.node;
  const auto leftEntry = withChild(left.withoutChild(left.size() - 1), path_[depth].page);
  if (above.child == node.size()) {
    // A tail that is a leaf while the node's other children are nodes has no place among them.
    if (node.size() != 0 && nodeAt(node.child(0)).isLeaf() != left.isLeaf()) {
      edits_.file().damaged(above.page, "the tail of an index node is of another level");
    }
    node.tail = right;
  } else {
    std::vector<std::byte> bound = node.withoutChild(above.child);
    if (above.beyond) bound = rightNode.withoutChild(rightNode.size() - 1);
    node.erase(above.child);
    node.insert(above.child, withChild(std::move(bound), right));
  }
  node.insert(above.child, leftEntry);
  store(depth - 1, node, false);
}

void IndexEdit::splitRoot(IndexNode node, bool appended) {
  const std::uint32_t rootNumber = path_[0].page;
  IndexNode root(false);
  root.owner = node.owner;
  root.level = static_cast<std::uint8_t>(node.level + 1);
  IndexNode rightNode = node.splitAt(appended ? node.size() - 1 : node.middle());
  Page& left = newPage();
  Page& right = newPage();
  node.previous = 0;
  node.next = right.number;
  rightNode.previous = left.number;
  write(right, rightNode);
  write(left, node);
  link(left);
  link(right);
  root.insert(0, withChild(node.withoutChild(node.size() - 1), left.number));
  root.tail = right.number;
  write(edits_.edit(rootNumber), root);
}

bool IndexEdit::remove(Bytes entry) {
  descend(entry);
  Step& step = path_.back();
  const std::size_t n = step.node.lowerBound(entry);
  if (n == step.node.size() || compareLeading(step.node.entry(n), entry) != 0) return false;
  step.node.erase(n);
  write(edits_.edit(step.page), step.node);
  if (step.node.size() == 0) unlink();
  return true;
}

// An empty leaf stays where its node would have no entry left without it.
void IndexEdit::unlink() {
  if (path_.size() < 2 || strayed_) return;
  const Step& leaf = path_.back();
  const Step& above = path_[path_.size() - 2];
  IndexNode node = above.node;
  if (node.size() < 2) return;
  if (above.child == node.size()) {
    node.tail = node.child(node.size() - 1);
    node.erase(node.size() - 1);
  } else {
    node.erase(above.child);
  }
  if (leaf.node.previous != 0) {
    IndexNode before = nodeAt(leaf.node.previous);
    before.next = leaf.node.next;
    write(edits_.edit(leaf.node.previous), before);
  }
  if (leaf.node.next != 0) {
    IndexNode behind = nodeAt(leaf.node.next);
    behind.previous = leaf.node.previous;
    write(edits_.edit(leaf.node.next), behind);
  }
  write(edits_.edit(above.page), node);
}

}  // namespace jet
