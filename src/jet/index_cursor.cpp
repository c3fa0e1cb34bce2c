#include "jet/index_cursor.h"

#include "jet/index_key.h"

namespace jet {
namespace {

constexpr int kMostLevels = 16;  // a tree of 2 GiB has five

}  // namespace

IndexCursor::IndexCursor(PageFile& file, IndexPageCache& pages, const TableDefinition& definition,
                         const RealIndex& index, const KeyRange& range)
    : file_(&file), pages_(&pages), owner_(definition.page) {
  KeyInterval keys = encodeRange(definition, index, range);
  first_ = std::move(keys.first);
  last_ = std::move(keys.last);
  atEnd_ = keys.empty;
  if (!atEnd_) descend(index.rootPage);
}

void IndexCursor::descend(std::uint32_t root) {
  leaf_ = pages_->get(*file_, root, owner_);
  for (int level = 1; !leaf_->isLeaf(); ++level) {
    if (level == kMostLevels) file_->damaged(root, "its index has no leaves");
    const std::size_t entry = leaf_->lowerBound(first_);
    std::uint32_t child = leaf_->tail();
    if (entry < leaf_->size()) {
      child = leaf_->child(entry);
    } else if (child == 0) {
      if (leaf_->size() == 0) file_->damaged(leaf_->page()->number, "a node of an index is empty");
      child = leaf_->child(leaf_->size() - 1);
    }
    leaf_ = pages_->get(*file_, child, owner_);
  }
  entry_ = leaf_->lowerBound(first_);
}

bool IndexCursor::nextLeaf() {
  const std::uint32_t next = leaf_->next();
  if (next == 0) return false;
  if (++leavesSeen_ > file_->pageCount()) {
    file_->damaged(next, "the leaves of an index form a circle");
  }
  const IndexPagePtr before = std::move(leaf_);
  leaf_ = pages_->get(*file_, next, owner_);
  if (!leaf_->isLeaf()) file_->damaged(next, "it should be a leaf of an index");
  entry_ = 0;
  return true;
}

bool IndexCursor::next() {
  while (!atEnd_ && entry_ == leaf_->size()) atEnd_ = !nextLeaf();
  if (!atEnd_ && leaf_->compare(entry_, last_) > 0) atEnd_ = true;
  if (atEnd_) return false;
  rowId_ = leaf_->rowId(entry_++);
  return true;
}

}  // namespace jet
