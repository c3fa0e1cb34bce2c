#include "jet/pages/data_page.h"

#include <string>

namespace jet {
namespace {

constexpr int kMaxForwards = 16;  // the engine makes one; more than a few are a cycle

}  // namespace

void checkDataPage(const PageFile& file, const Page& page, std::uint32_t owner) {
  checkDataPage(file, page);
  if (loadU32(page.bytes, kPageOwner) != owner) {
    file.damaged(page.number,
                 owner == kLongValueOwner
                     ? "it should hold long values"
                     : "it does not belong to the table of page " + std::to_string(owner));
  }
}

void checkDataPage(const PageFile& file, const Page& page) {
  const Format& format = file.format();
  if (loadU8(page.bytes, 0) != static_cast<std::uint8_t>(PageType::kData)) {
    file.damaged(page.number, "it should hold rows");
  }
  if (format.dataRowOffsets + 2 * std::size_t{rowCount(format, page)} > format.pageSize) {
    file.damaged(page.number, "it claims more rows than it has room for");
  }
}

void rowOutside(const PageFile& file, const Page& page, std::uint16_t row) {
  file.damaged(page.number, "row " + std::to_string(row) + " lies outside the page");
}

Bytes presentRow(const PageFile& file, const Page& page, std::uint16_t row) {
  if (row >= rowCount(file.format(), page)) {
    file.damaged(page.number, "it has no row " + std::to_string(row));
  }
  const RowSlot slot = rowSlot(file, page, row);
  if (slot.deleted) file.damaged(page.number, "row " + std::to_string(row) + " is deleted");
  return Bytes(page.bytes).subspan(slot.start, slot.size());
}

ForwardedRow followForwards(const PageFile& file, RowId from, const CheckedPage& pageAt) {
  const Page* page = &pageAt(from.page);
  ForwardedRow row{from, rowSlot(file, *page, from.row)};
  for (int forwards = 0; row.slot.forwarded; ++forwards) {
    if (row.slot.size() < kRowPointerSize || forwards == kMaxForwards) {
      file.damaged(row.at.page, "row " + std::to_string(row.at.row) + " points nowhere");
    }
    row.at = loadRowPointer(page->bytes, row.slot.start);
    page = &pageAt(row.at.page);
    if (row.at.row >= rowCount(file.format(), *page)) {
      file.damaged(row.at.page, "it has no row " + std::to_string(row.at.row));
    }
    row.slot = rowSlot(file, *page, row.at.row);
  }
  return row;
}

}  // namespace jet
