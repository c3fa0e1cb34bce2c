#include "jet/index/entry_change.h"

#include <algorithm>
#include <string>
#include <utility>

#include "jet/index/index_cursor.h"
#include "jet/index/index_edit.h"
#include "jet/index/key_codec.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using KeyBytes = std::vector<std::byte>;

KeyBytes encodePart(const Column& column, bool ascending,
                    const std::optional<std::vector<std::byte>>& field) {
  KeyBytes part;
  appendKey(column, ascending, field ? std::optional<Bytes>(*field) : std::nullopt, part);
  return part;
}

KeyBytes joined(const std::vector<KeyBytes>& parts) {
  KeyBytes key;
  for (const KeyBytes& part : parts) key.insert(key.end(), part.begin(), part.end());
  return key;
}

// The key of a row among the entries that begin with `prefix`; nothing when there is none. Reads
// without locks: the entry is looked up again, under a lock, before it is taken out.
std::optional<KeyBytes> findKey(PageFile& file, const TableDefinition& definition,
                                const RealIndex& index, Bytes prefix, RowId id) {
  const auto pageAt = [&](std::uint32_t number) {
    return IndexPage(file, file.freshPage(number), definition.page);
  };
  IndexPage page = pageAt(index.rootPage);
  for (std::size_t level = 1; !page.isLeaf(); ++level) {
    const auto child = page.childFor(prefix);
    if (level == kMaxIndexLevels || !child) {
      file.damaged(index.rootPage, "its index has no leaves");
    }
    page = pageAt(page.child(*child));
  }
  for (std::uint32_t passed = 0; file.hasPages(passed + 1); ++passed) {
    for (std::size_t n = page.lowerBound(prefix); n < page.size(); ++n) {
      if (page.compare(n, prefix) != 0) return std::nullopt;
      if (page.rowId(n) != id) continue;
      KeyBytes key = page.keyBytes(n);
      key.resize(key.size() - kEntryRowSize);
      return key;
    }
    if (page.header.next == 0) return std::nullopt;
    page = pageAt(page.header.next);
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
      encoded_.push_back(column.fixed && ordinalType(column.type));
      before_.emplace_back();
      after_.emplace_back();
      if (!encoded_.back()) continue;
      before_.back() = encodePart(column, part.ascending, before(part.column));
      after_.back() = encodePart(column, part.ascending, after(part.column));
    }
  }

  EntryChange change() {
    if (before_ == after_) return {};
    EntryChange change;
    change.nullAfter = std::ranges::any_of(after_, isNull);
    const auto other = std::ranges::find(encoded_, false);
    if (other == encoded_.end()) {
      if (isIndexed(before_)) change.keyBefore = joined(before_);
      if (isIndexed(after_)) change.keyAfter = joined(after_);
      return change;
    }
    const auto firstOther = static_cast<std::size_t>(other - encoded_.begin());
    change.keyBefore = oldKey(firstOther);
    change.keyAfter = newKey(change.keyBefore, firstOther);
    return change;
  }

 private:
  // Of a part of fixed size: its flag alone.
  static bool isNull(const KeyBytes& part) { return part.size() == 1; }

  [[nodiscard]] bool isIndexed(const std::vector<KeyBytes>& parts) const {
    return !index_.ignoreNulls || !std::ranges::all_of(parts, isNull);
  }

  [[nodiscard]] KeyBytes oldKey(std::size_t firstOther) const {
    const KeyBytes prefix =
        joined({before_.begin(), before_.begin() + static_cast<std::ptrdiff_t>(firstOther)});
    auto key = findKey(file_, definition_, index_, prefix, id_);
    if (key) return std::move(*key);
    const bool allNull = std::ranges::all_of(
        before_, [](const KeyBytes& part) { return part.empty() || isNull(part); });
    if (index_.ignoreNulls && allNull) refuse("may leave out the row");
    entryMissing(file_, definition_, index_, id_);
  }

  // The encoded parts before the other ones are told from the front, those after them from the end;
  // what stands between two of the others must not change.
  [[nodiscard]] KeyBytes newKey(KeyBytes key, std::size_t firstOther) const {
    std::size_t lastOther = encoded_.size();
    while (encoded_[lastOther - 1]) --lastOther;
    std::size_t end = key.size();
    for (std::size_t part = encoded_.size(); part-- > lastOther;) end = replace(key, part, end);
    std::size_t start = 0;
    for (std::size_t part = 0; part < firstOther; ++part) {
      start = replace(key, part, start + before_[part].size()) + after_[part].size();
    }
    for (std::size_t part = firstOther; part < lastOther; ++part) {
      if (before_[part] != after_[part]) refuse("has a part between texts");
    }
    return key;
  }

  // Puts a part's new bytes in place of the old ones that end at `end`; gives where they begin.
  std::size_t replace(KeyBytes& key, std::size_t part, std::size_t end) const {
    const KeyBytes& old = before_[part];
    if (end < old.size() || end > key.size()) refuse("has an entry of another shape");
    const auto at = key.begin() + static_cast<std::ptrdiff_t>(end - old.size());
    if (!std::equal(old.begin(), old.end(), at)) refuse("has an entry that is not the row's");
    const auto rest = key.erase(at, at + static_cast<std::ptrdiff_t>(old.size()));
    key.insert(rest, after_[part].begin(), after_[part].end());
    return end - old.size();
  }

  [[noreturn]] void refuse(const std::string& why) const {
    throw RuntimeError(error::kNotUpdatable,
                       "A field of table '" + definition_.name + "' cannot be updated: " +
                           indexName(definition_, index_) + " " + why + " (row " +
                           std::to_string(id_.row) + " of page " + std::to_string(id_.page) + ").");
  }

  PageFile& file_;
  const TableDefinition& definition_;
  const RealIndex& index_;
  RowId id_;
  std::vector<bool> encoded_;
  std::vector<KeyBytes> before_;  // by key column; empty where not encoded
  std::vector<KeyBytes> after_;
};

}  // namespace

EntryChange entryChange(PageFile& file, const TableDefinition& definition, const RealIndex& index,
                        RowId id, const FieldOf& before, const FieldOf& after) {
  return KeyChange(file, definition, index, id, before, after).change();
}

}  // namespace jet
