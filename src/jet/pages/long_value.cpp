#include "jet/pages/long_value.h"

#include "jet/pages/data_page.h"

namespace jet {
namespace {

// The row of a long-value page; valid while `page` is.
Bytes piece(PageFile& file, RowId pointer, PagePtr& page) {
  page = file.page(pointer.page);
  checkDataPage(file, *page, kLongValueOwner);
  return presentRow(file, *page, pointer.row);
}

void append(Bytes bytes, std::vector<std::byte>& out) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

// Each piece begins with the pointer to the next one; the last one's is 0. That each must bring
// something, and all together no more than the length, also ends a cycle.
void readChain(PageFile& file, RowId pointer, std::size_t length, std::vector<std::byte>& out) {
  while (out.size() < length) {
    if (pointer.page == 0) file.damaged(pointer.page, "a long value ends too soon");
    PagePtr page;
    const Bytes bytes = piece(file, pointer, page);
    if (bytes.size() <= kRowPointerSize || bytes.size() - kRowPointerSize > length - out.size()) {
      file.damaged(pointer.page, "a piece of a long value has the wrong size");
    }
    append(bytes.subspan(kRowPointerSize), out);
    pointer = loadRowPointer(bytes, 0);
  }
}

}  // namespace

Bytes longValue(PageFile& file, std::uint32_t holder, Bytes raw, std::vector<std::byte>& scratch) {
  if (raw.size() < kLongValueHeader) file.damaged(holder, "a long value has no header");
  const std::uint32_t head = loadU32(raw, 0);
  const std::size_t length = head & kLongValueLengthMask;
  const RowId pointer = loadRowPointer(raw, 4);
  if ((head & kLongValueInline) != 0) {
    if (raw.size() - kLongValueHeader < length) {
      file.damaged(holder, "a long value is longer than its row");
    }
    return raw.subspan(kLongValueHeader, length);
  }
  const std::size_t pageSize = file.format().pageSize;
  if (!file.hasPages((length + pageSize - 1) / pageSize)) {
    file.damaged(holder, "a long value is longer than the file");
  }
  scratch.clear();
  if ((head & kLongValueSinglePage) != 0) {
    PagePtr page;
    const Bytes bytes = piece(file, pointer, page);
    if (bytes.size() < length) file.damaged(pointer.page, "a long value is cut short");
    append(bytes.first(length), scratch);
  } else {
    readChain(file, pointer, length, scratch);
  }
  return scratch;
}

}  // namespace jet
