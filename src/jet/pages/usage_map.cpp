#include "jet/pages/usage_map.h"

#include "jet/pages/data_page.h"

namespace jet {
namespace {

constexpr std::size_t kInlineBits = 5;      // behind the kind and the start page
constexpr std::size_t kReferencePages = 1;  // behind the kind

class Collector {
 public:
  Collector(const PageFile& file, BeyondEnd beyondEnd)
      : file_(file), pageCount_(file.pageCount()), beyondEnd_(beyondEnd) {}

  // `bits`: one a page from `first` on, low bit first.
  void add(std::uint32_t mapPage, std::uint64_t first, Bytes bits) {
    for (std::size_t i = 0; i < bits.size(); ++i) {
      auto byte = loadU8(bits, i);
      for (std::uint64_t page = first + 8 * i; byte != 0; ++page, byte >>= 1) {
        if ((byte & 1) == 0) continue;
        if (page < pageCount_) {
          map_.pages.push_back(static_cast<std::uint32_t>(page));
        } else if (beyondEnd_ == BeyondEnd::kDamage) {
          file_.damaged(mapPage, "its usage map names a page behind the end");
        }
      }
    }
  }

  void addBitPage(std::uint32_t page) { map_.bitPages.push_back(page); }

  UsageMap take() { return std::move(map_); }

 private:
  const PageFile& file_;
  std::uint32_t pageCount_;
  BeyondEnd beyondEnd_;
  UsageMap map_;
};

void addReferenced(PageFile& file, std::uint32_t mapPage, Bytes row, Collector& pages) {
  const std::uint64_t pagesPerMap = 8 * (file.format().pageSize - kUsageMapPageBits);
  for (std::size_t i = 0; kReferencePages + 4 * i + 4 <= row.size(); ++i) {
    const std::uint32_t number = loadU32(row, kReferencePages + 4 * i);
    if (number == 0) continue;
    const PagePtr page = file.freshPage(number);
    if (loadU8(page->bytes, 0) != static_cast<std::uint8_t>(PageType::kUsageMap)) {
      file.damaged(number, "it should hold a usage map of page " + std::to_string(mapPage));
    }
    pages.addBitPage(number);
    pages.add(number, i * pagesPerMap, Bytes(page->bytes).subspan(kUsageMapPageBits));
  }
}

}  // namespace

UsageMap readWholeUsageMap(PageFile& file, RowId map, BeyondEnd beyondEnd) {
  const PagePtr page = file.freshPage(map.page);
  checkDataPage(file, *page);
  const Bytes row = presentRow(file, *page, map.row);
  if (row.size() < kInlineBits) file.damaged(map.page, "a usage map is too short");

  Collector pages(file, beyondEnd);
  switch (static_cast<UsageMapKind>(loadU8(row, 0))) {
    case UsageMapKind::kInline:
      pages.add(map.page, loadU32(row, 1), row.subspan(kInlineBits));
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
