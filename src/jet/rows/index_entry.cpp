#include "jet/rows/index_entry.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "jet/index/index_key.h"
#include "jet/index/index_node.h"
#include "jet/index/index_page.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::size_t kMaxLevels = 16;
constexpr std::size_t kRowPointer = 4;
// In front of each part: whether it is Null, so that Nulls sort to the front.
constexpr std::byte kNull{0x00};
constexpr std::byte kValue{0x7f};

// The part of a key that a stored field makes, ascending; every byte is turned over for descending.
std::vector<std::byte> encodePart(const Column& column, bool ascending, const StoredField& field) {
  std::vector<std::byte> part(1, kValue);
  if (column.type == ColumnType::kYesNo) {
    part.push_back(field ? std::byte{0x00} : std::byte{0xff});  // Yes, being -1, comes first
  } else if (!field || field->empty()) {
    part.front() = kNull;
  } else {
    const bool negative = (field->back() & std::byte{0x80}) != std::byte{0};
    const bool real = column.type == ColumnType::kSingle || column.type == ColumnType::kDouble ||
                      column.type == ColumnType::kDateTime;
    const std::byte turned = real && negative ? std::byte{0xff} : std::byte{0x00};
    std::byte sign{0x80};  // of the highest byte, unless the type has none
    if (column.type == ColumnType::kByte || turned != std::byte{0}) sign = std::byte{0};
    for (auto byte = field->rbegin(); byte != field->rend(); ++byte) {
      part.push_back(*byte ^ turned ^ std::exchange(sign, std::byte{0}));
    }
  }
  if (!ascending) {
    for (std::byte& byte : part) byte = ~byte;
  }
  return part;
}

// The entry of a row among those that begin with `prefix`; nothing when there is none. Reads
// without locks: the entry is looked up again, under a lock, before it is taken out.
std::optional<std::vector<std::byte>> findEntry(PageFile& file, const TableDefinition& definition,
                                                const RealIndex& index, Bytes prefix, RowId id) {
  const auto pageAt = [&](std::uint32_t number) {
    return IndexPage(file, file.freshPage(number), definition.page);
  };
  IndexPage page = pageAt(index.rootPage);
  for (std::size_t level = 1; !page.isLeaf(); ++level) {
    const std::size_t n = page.lowerBound(prefix);
    if (level == kMaxLevels || (page.size() == 0 && page.tail() == 0)) {
      file.damaged(index.rootPage, "its index has no leaves");
    }
    std::uint32_t child = n < page.size() ? page.child(n) : page.tail();
    if (child == 0) child = page.child(page.size() - 1);
    page = pageAt(child);
  }
  for (std::uint32_t passed = 0; passed < file.pageCount(); ++passed) {
    for (std::size_t n = page.lowerBound(prefix); n < page.size(); ++n) {
      if (page.compare(n, prefix) != 0) return std::nullopt;
      if (page.rowId(n) == id) return page.entryBytes(n);
    }
    if (page.next() == 0) return std::nullopt;
    page = pageAt(page.next());
  }
  file.damaged(index.rootPage, "the leaves of its index form a circle");
}

class KeyChange {
 public:
  KeyChange(PageFile& file, const TableDefinition& definition, const RealIndex& index, RowId id,
            const FieldOf& before, const FieldOf& after)
      : file_(file), definition_(definition), index_(index), id_(id) {
    for (const IndexColumn& part : index.columns) {
      const Column& column = definition.columns[part.column];
      known_.push_back(column.fixed && hasKeyEncoding(column.type));
      if (!known_.back()) {
        before_.emplace_back();
        after_.emplace_back();
        continue;
      }
      before_.push_back(encodePart(column, part.ascending, before(part.column)));
      after_.push_back(encodePart(column, part.ascending, after(part.column)));
      const bool nullBefore = before_.back().size() == 1;
      const bool nullAfter = after_.back().size() == 1;
      allNullBefore_ = allNullBefore_ && nullBefore;
      allNullAfter_ = allNullAfter_ && nullAfter;
      change_.nullAfter = change_.nullAfter || nullAfter;
    }
  }

  EntryChange work() {
    const auto unknown = std::ranges::find(known_, false);
    if (unknown == known_.end()) {
      change_.keyBefore = joined(before_);
      change_.keyAfter = joined(after_);
      if (index_.ignoreNulls && allNullBefore_) change_.keyBefore.clear();
      if (index_.ignoreNulls && allNullAfter_) change_.keyAfter.clear();
      return change_;
    }
    takeOverUnknown(static_cast<std::size_t>(unknown - known_.begin()));
    return change_;
  }

 private:
  static std::vector<std::byte> joined(const std::vector<std::vector<std::byte>>& parts) {
    std::vector<std::byte> key;
    for (const auto& part : parts) key.insert(key.end(), part.begin(), part.end());
    return key;
  }

  // The known parts in front of the unknown ones are told from the front, those behind from the
  // end; what stands between two unknown ones must not change.
  void takeOverUnknown(std::size_t firstUnknown) {
    const std::vector<std::vector<std::byte>> front(
        before_.begin(), before_.begin() + static_cast<std::ptrdiff_t>(firstUnknown));
    const std::vector<std::byte> prefix = joined(front);
    const auto entry = findEntry(file_, definition_, index_, prefix, id_);
    if (!entry) return refuse("has no entry for the row");
    std::vector<std::byte> key(entry->begin(), entry->end() - kRowPointer);
    change_.keyBefore = key;

    std::size_t lastUnknown = known_.size();
    while (known_[lastUnknown - 1]) --lastUnknown;
    std::size_t end = key.size();
    for (std::size_t part = known_.size(); part-- > lastUnknown;) end = replace(key, part, end);
    std::size_t start = 0;
    for (std::size_t part = 0; part < firstUnknown; ++part) {
      start = replace(key, part, start + before_[part].size()) + after_[part].size();
    }
    for (std::size_t part = firstUnknown; part < lastUnknown; ++part) {
      if (known_[part] && before_[part] != after_[part]) refuse("has a part between texts");
    }
    change_.keyAfter = std::move(key);
  }

  // Puts a part's new bytes in place of the old ones that end at `end`; gives where they begin.
  std::size_t replace(std::vector<std::byte>& key, std::size_t part, std::size_t end) {
    const auto& old = before_[part];
    if (end < old.size() || end > key.size()) refuse("has an entry of another shape");
    const auto at = key.begin() + static_cast<std::ptrdiff_t>(end - old.size());
    if (!std::equal(old.begin(), old.end(), at)) refuse("has an entry that is not the row's");
    const auto behind = key.erase(at, at + static_cast<std::ptrdiff_t>(old.size()));
    key.insert(behind, after_[part].begin(), after_[part].end());
    return end - old.size();
  }

  [[noreturn]] void refuse(const std::string& why) const {
    throw RuntimeError(error::kNotUpdatable,
                       "A field of table '" + definition_.name + "' cannot be updated: its index " +
                           std::to_string(&index_ - definition_.realIndexes.data()) + " " + why +
                           " (row " + std::to_string(id_.row) + " of page " +
                           std::to_string(id_.page) + ").");
  }

  PageFile& file_;
  const TableDefinition& definition_;
  const RealIndex& index_;
  RowId id_;
  std::vector<bool> known_;
  std::vector<std::vector<std::byte>> before_;  // empty where not known
  std::vector<std::vector<std::byte>> after_;
  bool allNullBefore_ = true;
  bool allNullAfter_ = true;
  EntryChange change_;
};

}  // namespace

EntryChange changedEntry(PageFile& file, const TableDefinition& definition, const RealIndex& index,
                         RowId id, const FieldOf& before, const FieldOf& after) {
  return KeyChange(file, definition, index, id, before, after).work();
}

std::vector<std::byte> entryOf(std::vector<std::byte> key, RowId id) {
  for (int shift = 16; shift >= 0; shift -= 8) {
    key.push_back(static_cast<std::byte>(id.page >> shift & 0xff));
  }
  key.push_back(static_cast<std::byte>(id.row));
  return key;
}

}  // namespace jet
