#include "jet/index/index_cursor.h"

#include <utility>

namespace jet {

IndexCursor::IndexCursor(PageFile& file, IndexPageCache& pages, const TableDefinition& definition,
                         const RealIndex& index, const KeyRange& range)
    : file_(&file),
      pages_(&pages),
      recent_(&pages.recentPlace(index.rootPage)),
      owner_(definition.page),
      root_(index.rootPage) {
  KeyInterval keys = encodeRange(definition, index, range);
  first_ = std::move(keys.first);
  last_ = std::move(keys.last);
  atEnd_ = keys.empty;
  if (!atEnd_ && !startsInRecentLeaf()) descend();
}

// Keys are often asked for in their order, so that the next one begins where the one before it
// ended, or later in its leaf: after the leaf's first entry, as those equal to that may begin in
// another leaf.
bool IndexCursor::startsInRecentLeaf() {
  const auto& [leaf, place] = *recent_;
  if (!leaf || leaf->size() == 0 || file_->page(leaf->page()->number) != leaf->page()) return false;
  const bool followsPlace = place != 0 && place < leaf->size() &&
                            leaf->compare(place - 1, first_) < 0 &&
                            leaf->compare(place, first_) >= 0;
  if (!followsPlace && leaf->compare(0, first_) >= 0) return false;
  const std::size_t entry = followsPlace ? place : leaf->lowerBound(first_);
  if (entry == leaf->size()) return false;
  enter(leaf, entry);
  return true;
}

void IndexCursor::enter(IndexPagePtr leaf, std::size_t entry) {
  leaf_ = std::move(leaf);
  entry_ = entry;
  end_ = leaf_->upperBound(last_, entry);
}

void IndexCursor::descend() {
  if (tryDescend()) return;
  file_->forgetPages();
  if (!tryDescend()) file_->damaged(root_, "the pages of its index contradict each other");
}

bool IndexCursor::tryDescend() {
  IndexPagePtr page = pages_->get(*file_, root_, owner_);
  for (std::size_t level = 1; !page->isLeaf(); ++level) {
    if (level == kMaxIndexLevels) file_->damaged(root_, "its index has no leaves");
    const auto position = page->childFor(first_);
    if (!position) file_->damaged(page->page()->number, "a node of an index is empty");
    page = pages_->child(*file_, *page, *position, owner_);
    if (!page) return false;
  }
  const std::size_t entry = page->lowerBound(first_);
  enter(std::move(page), entry);
  *recent_ = {leaf_, entry_};
  return true;
}

bool IndexCursor::nextLeaf() {
  if (leaf_->header.next == 0) return false;
  if (!file_->hasPages(++leavesSeen_)) {
    file_->damaged(leaf_->header.next, "the leaves of an index form a circle");
  }
  IndexPagePtr next = pages_->next(*file_, *leaf_, owner_);
  if (!next) {
    // Again from the last entry that was given, in pages as they are now.
    file_->forgetPages();
    if (leaf_->size() != 0) first_ = leaf_->keyBytes(leaf_->size() - 1);
    descend();
    if (entry_ < leaf_->size() && leaf_->compare(entry_, first_) == 0) ++entry_;
    if (entry_ < leaf_->size() || leaf_->header.next == 0) return entry_ < leaf_->size();
    next = pages_->next(*file_, *leaf_, owner_);
    if (!next) {
      file_->damaged(leaf_->header.next, "it does not go on where the leaf before it ends");
    }
  }
  enter(std::move(next), 0);
  return true;
}

void IndexCursor::endOfRange() {
  atEnd_ = true;
  if (recent_->leaf != leaf_) recent_->leaf = leaf_;
  recent_->entry = entry_;
}

bool IndexCursor::next() {
  while (!atEnd_ && entry_ == end_) {
    if (end_ < leaf_->size()) {
      endOfRange();
    } else {
      atEnd_ = !nextLeaf();
    }
  }
  if (atEnd_) return false;
  rowId_ = leaf_->rowId(entry_++);
  return true;
}

}  // namespace jet
