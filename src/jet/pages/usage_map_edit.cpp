#include "jet/pages/usage_map_edit.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "jet/format/usage_map_layout.h"
#include "jet/pages/data_page.h"

namespace jet {
namespace {

constexpr RowId kFreePages{kUsedPagesMapPage, 0};

// A usage map within the edits: its row, and the map pages that the row may name.
class MapEdit {
 public:
  MapEdit(PageEdits& edits, RowId map) : edits_(edits), map_(map), page_(edits.edit(map.page)) {
    PageFile& file = edits.file();
    checkDataPage(file, page_);
    const Bytes row = presentRow(file, page_, map.row);
    if (row.size() < kUsageMapBits) file.damaged(map.page, "a usage map is too short");
    const auto start = static_cast<std::size_t>(row.data() - page_.bytes.data());
    row_ = MutableBytes(page_.bytes).subspan(start, row.size());
    if (loadU8(row_, 0) > static_cast<std::uint8_t>(UsageMapKind::kReference)) {
      file.damaged(map.page, "a usage map is of no known kind");
    }
  }

  [[nodiscard]] std::optional<bool> get(std::uint32_t page) {
    if (isInline()) {
      if (!inlineReaches(page)) return std::nullopt;
      return mapBit(row_.subspan(kUsageMapBits), page - loadU32(row_, kUsageMapStart));
    }
    Page* bits = mapPage(page, false);
    if (bits == nullptr) return std::nullopt;
    return mapBit(Bytes(bits->bytes).subspan(kUsageMapPageBits), page % perMapPage());
  }

  void set(std::uint32_t page, bool value) {
    // The pages that a map does not reach have their meaning without it.
    if (value == background() && !get(page).has_value()) return;
    if (isInline() && !inlineReaches(page)) becomeReference();
    if (isInline()) {
      storeMapBit(row_.subspan(kUsageMapBits), page - loadU32(row_, kUsageMapStart), value);
      edits_.schedule(map_.page);
      return;
    }
    Page& bits = *mapPage(page, true);
    storeMapBit(MutableBytes(bits.bytes).subspan(kUsageMapPageBits), page % perMapPage(), value);
    edits_.schedule(bits.number);
    edits_.schedule(map_.page);
  }

 private:
  [[nodiscard]] bool isInline() const {
    return loadU8(row_, 0) == static_cast<std::uint8_t>(UsageMapKind::kInline);
  }
  [[nodiscard]] bool inlineReaches(std::uint32_t page) const {
    const std::uint32_t start = loadU32(row_, kUsageMapStart);
    return page >= start && page - start < 8 * (row_.size() - kUsageMapBits);
  }
  [[nodiscard]] std::uint32_t perMapPage() const { return pagesPerMapPage(edits_.format()); }
  [[nodiscard]] bool background() const { return map_ == kFreePages; }

  // The page with the bit of `page`; made when missing, if `make`. Null: there is none.
  Page* mapPage(std::uint32_t page, bool make) {
    const std::size_t at = entryOf(page);
    const std::uint32_t number = loadU32(row_, at);
    if (number == 0) {
      if (!make) return nullptr;
      Page& added = addMapPage();
      storeLittle<std::uint32_t>(row_, at, added.number);
      if (background()) set(added.number, false);
      return &added;
    }
    Page& found = edits_.edit(number);
    if (loadU8(found.bytes, 0) != static_cast<std::uint8_t>(PageType::kUsageMap)) {
      edits_.file().damaged(number, "it should hold a usage map");
    }
    return &found;
  }

  // Where the row of a reference map names the map page for `page`.
  [[nodiscard]] std::size_t entryOf(std::uint32_t page) const {
    const std::size_t at = kUsageMapReferences + kUsageMapReferenceSize * (page / perMapPage());
    if (at + kUsageMapReferenceSize > row_.size()) {
      edits_.file().damaged(map_.page, "a usage map cannot reach page " + std::to_string(page));
    }
    return at;
  }

  // Written and marked allocated before any row names it.
  Page& addMapPage() {
    Page& added = background() ? edits_.create(nextFree()) : allocatePage(edits_);
    std::ranges::fill(added.bytes, background() ? std::byte{0xff} : std::byte{0});
    added.bytes[0] = static_cast<std::byte>(PageType::kUsageMap);
    added.bytes[1] = std::byte{1};
    added.bytes[2] = added.bytes[3] = std::byte{0};
    edits_.schedule(added.number);
    if (!background()) markAllocated(edits_, added.number);
    return added;
  }

  // The row keeps its length, a list of map pages needs less; and it stays the old row until the
  // map pages are scheduled.
  void becomeReference() {
    const std::uint32_t start = loadU32(row_, kUsageMapStart);
    const Bytes bits = row_.subspan(kUsageMapBits);
    std::vector<std::byte> list(row_.size());
    list[0] = static_cast<std::byte>(UsageMapKind::kReference);
    std::vector<std::uint32_t> added;
    for (std::uint32_t i = 0; i < 8 * bits.size(); ++i) {
      const bool value = mapBit(bits, i);
      if (value == background()) continue;
      const std::size_t at = entryOf(start + i);
      if (loadU32(list, at) == 0) {
        added.push_back(addMapPage().number);
        storeLittle<std::uint32_t>(list, at, added.back());
      }
      Page& page = edits_.edit(loadU32(list, at));
      storeMapBit(MutableBytes(page.bytes).subspan(kUsageMapPageBits), (start + i) % perMapPage(),
                  value);
    }
    for (const std::uint32_t number : added) edits_.schedule(number);
    std::ranges::copy(list, row_.begin());
    edits_.schedule(map_.page);
    if (!background()) return;
    for (const std::uint32_t number : added) set(number, false);
  }

 public:
  // The first page from the file's end on that is free in this map, the file's own.
  [[nodiscard]] std::uint32_t nextFree() {
    std::uint32_t page = edits_.file().pageCount();
    while (edits_.holds(page) || !get(page).value_or(true)) ++page;
    return page;
  }

 private:
  PageEdits& edits_;
  RowId map_;
  Page& page_;
  MutableBytes row_;
};

}  // namespace

Page& allocatePage(PageEdits& edits) {
  MapEdit map(edits, kFreePages);
  return edits.create(map.nextFree());
}

void markAllocated(PageEdits& edits, std::uint32_t page) {
  MapEdit(edits, kFreePages).set(page, false);
}

void setUsageBit(PageEdits& edits, RowId map, std::uint32_t page, bool value) {
  MapEdit(edits, map).set(page, value);
}

}  // namespace jet
