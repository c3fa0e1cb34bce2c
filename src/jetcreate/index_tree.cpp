#include "jetcreate/index_tree.h"

#include <algorithm>
#include <cassert>

#include "jetcreate/index_level.h"
#include "jetcreate/layout.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::size_t kRowSize = 4;  // at the end of every entry
constexpr std::size_t kLongestEntry = kIndexPageRoom / 2;

bool less(Bytes a, Bytes b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace

void IndexTree::add(Bytes key, RowId row) {
  if (key.size() + kRowSize > kLongestEntry)
    throw RuntimeError(error::kInvalidArgument, "An index key is too long.");
  entries_.push_back({static_cast<std::uint32_t>(bytes_.size()),
                      static_cast<std::uint16_t>(key.size() + kRowSize)});
  bytes_.insert(bytes_.end(), key.begin(), key.end());
  for (int shift : {16, 8, 0}) bytes_.push_back(static_cast<std::byte>(row.page >> shift));
  bytes_.push_back(static_cast<std::byte>(row.row));
}

std::uint32_t IndexTree::countDistinct(const NewFile& file, bool unique) const {
  std::uint32_t distinct = 0;
  Bytes last;
  for (const Entry& entry : entries_) {
    const Bytes key = bytesOf(entry).first(entry.size - kRowSize);
    if (distinct == 0 || !std::equal(key.begin(), key.end(), last.begin(), last.end())) ++distinct;
    last = key;
  }
  if (unique && distinct != entries_.size())
    throw RuntimeError(error::kDuplicateKey,
                       "Duplicate values in a unique index of file '" + file.path() + "'.");
  return distinct;
}

BuiltIndex IndexTree::build(NewFile& file, std::uint32_t owner, bool unique, bool tails) {
  std::sort(entries_.begin(), entries_.end(),
            [this](const Entry& a, const Entry& b) { return less(bytesOf(a), bytesOf(b)); });
  BuiltIndex built;
  built.distinctKeys = countDistinct(file, unique);

  IndexLevel level(file, owner, PageType::kIndexLeaf);
  for (const Entry& entry : entries_) level.add(bytesOf(entry));
  std::vector<IndexChild> children = level.finish();
  built.pages = level.pages();
  while (children.size() > 1) {
    IndexLevel above(file, owner, PageType::kIndexNode);
    // Only the nodes right above the leaves have a tail.
    const bool withTail = tails && built.pages.size() == children.size();
    const std::size_t named = children.size() - (withTail ? 1 : 0);
    for (std::size_t i = 0; i < named; ++i) above.addChild(children[i]);
    if (withTail) above.setTail(children.back());
    children = above.finish();
    built.pages.insert(built.pages.end(), above.pages().begin(), above.pages().end());
  }
  built.root = children[0].page;
  return built;
}

}  // namespace jetcreate
