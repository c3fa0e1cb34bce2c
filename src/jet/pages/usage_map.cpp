#include "jet/pages/usage_map.h"

#include "jet/format/usage_map_layout.h"
#include "jet/pages/data_page.h"

namespace jet {
namespace {

class Collector {
 public:
  Collector(PageFile& file, BeyondEnd beyondEnd) : file_(file), beyondEnd_(beyondEnd) {}

  // `bits`: one a page from `first` on, low bit first.
  void add(std::uint32_t mapPage, std::uint64_t first, Bytes bits) {
    for (std::size_t i = 0; i < bits.size(); ++i) {
      auto byte = loadU8(bits, i);
      for (std::uint64_t page = first + 8 * i; byte != 0; ++page, byte >>= 1) {
        if ((byte & 1) == 0) continue;
        endReached_ = endReached_ || !file_.hasPages(page + 1);
        if (!endReached_) {
          map_.pages.push_back(static_cast<std::uint32_t>(page));
        } else if (beyondEnd_ == BeyondEnd::kDamage) {
          file_.damaged(mapPage, "its usage map names a page after the end");
        }
      }
    }
  }

  void addBitPage(std::uint32_t page) { map_.bitPages.push_back(page); }

  UsageMap take() { return std::move(map_); }

 private:
  PageFile& file_;
  BeyondEnd beyondEnd_;
  bool endReached_ = false;  // pages are named in ascending order
  UsageMap map_;
};

void addReferenced(PageFile& file, std::uint32_t mapPage, Bytes row, Collector& pages) {
  const std::uint64_t perPage = pagesPerMapPage(file.format());
  for (std::size_t i = 0;; ++i) {
    const std::size_t at = kUsageMapReferences + kUsageMapReferenceSize * i;
    if (at + kUsageMapReferenceSize > row.size()) return;
    const std::uint32_t number = loadU32(row, at);
    if (number == 0) continue;
    const PagePtr page = file.freshPage(number);
    if (loadU8(page->bytes, 0) != static_cast<std::uint8_t>(PageType::kUsageMap)) {
      file.damaged(number, "it should hold a usage map of page " + std::to_string(mapPage));
    }
    pages.addBitPage(number);
    pages.add(number, i * perPage, Bytes(page->bytes).subspan(kUsageMapPageBits));
  }
}

}  // namespace

UsageMap readWholeUsageMap(PageFile& file, RowId map, BeyondEnd beyondEnd) {
  const PagePtr page = file.freshPage(map.page);
  checkDataPage(file, *page);
  // A page of maps has no owner; page 1, which holds the file's own maps, names itself.
  const std::uint32_t owner = loadU32(page->bytes, kPageOwner);
  if (owner != 0 && owner != map.page) file.damaged(map.page, "it should hold usage maps");
  const Bytes row = presentRow(file, *page, map.row);
  if (row.size() < kUsageMapBits) file.damaged(map.page, "a usage map is too short");

  Collector pages(file, beyondEnd);
  switch (static_cast<UsageMapKind>(loadU8(row, 0))) {
    case UsageMapKind::kInline:
      pages.add(map.page, loadU32(row, kUsageMapStart), row.subspan(kUsageMapBits));
      break;
    case UsageMapKind::kReference:
      addReferenced(file, map.page, row, pages);
      break;
    default:
      file.damaged(map.page, "a usage map is of no known kind");
  }
  return pages.take();
}

std::vector<std::uint32_t> readUsageMap(PageFile& file, RowId map) {
  return readWholeUsageMap(file, map, BeyondEnd::kDamage).pages;
}

}  // namespace jet
