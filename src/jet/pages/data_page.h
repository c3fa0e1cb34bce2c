// A data page: rows of a table, long values or usage maps, filled from its end.
//
//   checkDataPage(file, page, definitionPage);
//   RowSlot slot = rowSlot(file, page, 3);
//   Bytes row = Bytes(page.bytes).subspan(slot.start, slot.size());
//
// Free functions over a page that was read; used for changing pages as well. Errors: 3049.
#pragma once

#include <cstdint>
#include <functional>

#include "jet/format/bytes.h"
#include "jet/format/row_id.h"
#include "jet/pages/page_file.h"

namespace jet {

struct RowSlot {
  std::uint16_t start = 0;
  std::uint16_t end = 0;  // one past the last byte
  bool deleted = false;
  bool forwarded = false;

  [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(end - start); }
};

// A data page whose owner is `owner` and whose table of row offsets fits.
void checkDataPage(const PageFile& file, const Page& page, std::uint32_t owner);

// The same for any owner: for pages that hold usage maps.
void checkDataPage(const PageFile& file, const Page& page);

// Of a checked page.
[[nodiscard]] inline std::uint16_t rowCount(const Format& format, const Page& page) {
  return loadU16(page.bytes, format.dataRowCount);
}

[[noreturn]] void rowOutside(const PageFile& file, const Page& page, std::uint16_t row);

// Of a checked page; `row` must be below its row count. Inline, as it is called for every row.
[[nodiscard]] inline RowSlot rowSlot(const PageFile& file, const Page& page, std::uint16_t row) {
  const Format& format = file.format();
  const std::size_t at = format.dataRowOffsets + 2 * std::size_t{row};
  const std::uint16_t offset = loadU16(page.bytes, at);
  const std::size_t end =
      row == 0 ? format.pageSize : loadU16(page.bytes, at - 2) & std::size_t{kRowOffsetMask};
  const RowSlot slot{.start = static_cast<std::uint16_t>(offset & kRowOffsetMask),
                     .end = static_cast<std::uint16_t>(end),
                     .deleted = (offset & kRowDeleted) != 0,
                     .forwarded = (offset & kRowForwarded) != 0};
  const std::size_t rowsStart = format.dataRowOffsets + 2 * std::size_t{rowCount(format, page)};
  if (slot.start < rowsStart || slot.start > slot.end || slot.end > format.pageSize) {
    rowOutside(file, page, row);
  }
  return slot;
}

// The bytes of a row that must be there: damage when it is not or is deleted.
[[nodiscard]] Bytes presentRow(const PageFile& file, const Page& page, std::uint16_t row);

// Where the bytes of a forwarded row are: `at` is not where the row was looked for.
struct ForwardedRow {
  RowId at;
  RowSlot slot;  // of a row that arrived: it has the flag of a deleted one, so that scans skip it
};

// Gives a page, checked as a data page of the row's table; the last one asked for holds the row.
using CheckedPage = std::function<const Page&(std::uint32_t number)>;

// Follows the forward pointer of the row at `from`, whose slot says that it has one. Pointers that
// lead nowhere or in a cycle are damage.
[[nodiscard]] ForwardedRow followForwards(const PageFile& file, RowId from,
                                          const CheckedPage& pageAt);

// Row pointers in a file: place on the page in the low byte, page in the three above.
[[nodiscard]] inline RowId loadRowPointer(Bytes bytes, std::size_t offset) {
  return {loadU24(bytes, offset + 1), loadU8(bytes, offset)};
}

}  // namespace jet
