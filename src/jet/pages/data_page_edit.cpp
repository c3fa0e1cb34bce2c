#include "jet/pages/data_page_edit.h"

#include <cassert>
#include <cstring>

namespace jet {
namespace {

std::size_t offsetsEnd(const Format& format, const Page& page) {
  return format.dataRowOffsets + 2 * std::size_t{rowCount(format, page)};
}

// Where the lowest row starts. Each slot is checked on the way.
std::size_t rowsStart(const PageFile& file, const Page& page) {
  std::size_t start = file.format().pageSize;
  for (std::uint16_t row = 0; row < rowCount(file.format(), page); ++row) {
    start = rowSlot(file, page, row).start;
  }
  return start;
}

void storeFreeSpace(const PageFile& file, Page& page) {
  storeLittle<std::uint16_t>(page.bytes, kPageFreeSpace,
                             static_cast<std::uint16_t>(freeSpace(file, page)));
}

}  // namespace

std::size_t freeSpace(const PageFile& file, const Page& page) {
  return rowsStart(file, page) - offsetsEnd(file.format(), page);
}

bool replaceRow(const PageFile& file, Page& page, std::uint16_t row, Bytes bytes,
                std::uint16_t flags) {
  const Format& format = file.format();
  const RowSlot slot = rowSlot(file, page, row);
  if (bytes.size() > slot.size() + freeSpace(file, page)) return false;

  // Everything below the row moves by the difference, and with it the offsets of those rows.
  const std::size_t low = rowsStart(file, page);
  const std::size_t start = slot.end - bytes.size();
  const std::size_t below = slot.start - low;
  std::memmove(page.bytes.data() + start - below, page.bytes.data() + low, below);
  if (!bytes.empty()) std::memcpy(page.bytes.data() + start, bytes.data(), bytes.size());
  for (std::size_t r = row; r < rowCount(format, page); ++r) {
    const std::size_t at = format.dataRowOffsets + 2 * r;
    const std::uint16_t old = loadU16(page.bytes, at);
    const std::size_t moved = (old & kRowOffsetMask) + start - slot.start;
    const int kept = r == row ? flags : old & ~kRowOffsetMask;
    storeLittle<std::uint16_t>(page.bytes, at, static_cast<std::uint16_t>(moved | kept));
  }
  storeFreeSpace(file, page);
  return true;
}

std::optional<std::uint16_t> appendRow(const PageFile& file, Page& page, Bytes bytes,
                                       std::uint16_t flags) {
  const Format& format = file.format();
  const std::uint16_t row = rowCount(format, page);
  if (row >= kMaxRowsOnPage || bytes.size() + 2 > freeSpace(file, page)) return std::nullopt;
  const std::size_t start = rowsStart(file, page) - bytes.size();
  std::memcpy(page.bytes.data() + start, bytes.data(), bytes.size());
  storeLittle<std::uint16_t>(page.bytes, format.dataRowOffsets + 2 * std::size_t{row},
                             static_cast<std::uint16_t>(start | flags));
  storeLittle<std::uint16_t>(page.bytes, format.dataRowCount, static_cast<std::uint16_t>(row + 1));
  storeFreeSpace(file, page);
  return row;
}

void formatDataPage(const Format& format, Page& page, std::uint32_t owner) {
  std::fill(page.bytes.begin(), page.bytes.end(), std::byte{0});
  page.bytes[0] = static_cast<std::byte>(PageType::kData);
  page.bytes[1] = std::byte{1};  // as on every page of these kinds
  storeLittle<std::uint32_t>(page.bytes, kPageOwner, owner);
  storeLittle<std::uint16_t>(page.bytes, kPageFreeSpace,
                             static_cast<std::uint16_t>(format.pageSize - format.dataRowOffsets));
}

}  // namespace jet
