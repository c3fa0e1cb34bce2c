#include "jetcreate/usage_map_writer.h"

#include <algorithm>

#include "jet/format/byte_buffer.h"
#include "jet/format/creation_format.h"
#include "jet/format/usage_map_layout.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

std::size_t rowSize(const Format& format) { return kUsageMapBits + format.usageMapBytes; }
std::uint32_t inlinePages(const Format& format) {
  return static_cast<std::uint32_t>(8 * format.usageMapBytes);
}

// In a row of that size; bytes at its end that are too few for one more stay unused.
std::size_t maxReferences(const Format& format) {
  return (rowSize(format) - kUsageMapReferences) / kUsageMapReferenceSize;
}

std::vector<std::byte> newBitPage(const Format& format) {
  std::vector<std::byte> page(format.pageSize);
  storeLittle(page, 0, PageType::kUsageMap);
  storeLittle(page, 1, kPageMark);
  return page;
}

std::vector<std::byte> rowOfReferences(const NewFile& file,
                                       const std::vector<std::uint32_t>& references) {
  if (references.size() > maxReferences(file.format())) {
    throw RuntimeError(error::kFileTooLarge,
                       "File '" + file.path() + "' got too large for its usage maps.");
  }
  ByteBuffer row;
  row.put(UsageMapKind::kReference);
  for (std::uint32_t page : references) row.put(page);
  row.putZeros(rowSize(file.format()) - row.size());
  return {row.bytes().begin(), row.bytes().end()};
}

std::vector<std::byte> inlineRow(const Format& format, std::uint32_t start) {
  std::vector<std::byte> row(rowSize(format));
  storeLittle(row, 0, UsageMapKind::kInline);
  storeLittle(row, kUsageMapStart, start);
  return row;
}

}  // namespace

std::vector<std::byte> encodeUsageMap(NewFile& file, const std::vector<std::uint32_t>& pages) {
  const Format& format = file.format();
  const std::uint32_t inlined = inlinePages(format);
  const std::uint32_t start = pages.empty() || pages.back() < inlined ? 0 : pages[0] / 8 * 8;
  if (pages.empty() || pages.back() - start < inlined) {
    std::vector<std::byte> row = inlineRow(format, start);
    for (std::uint32_t page : pages) {
      storeMapBit(MutableBytes(row).subspan(kUsageMapBits), page - start, true);
    }
    return row;
  }
  const std::uint32_t perPage = pagesPerMapPage(format);
  std::vector<std::uint32_t> references(pages.back() / perPage + 1);
  for (std::uint32_t r = 0; r < references.size(); ++r) {
    const auto from = std::lower_bound(pages.begin(), pages.end(), r * perPage);
    const auto to = std::lower_bound(from, pages.end(), (r + 1) * perPage);
    if (from == to) continue;  // no page of bits at all: none of those pages is in the set
    std::vector<std::byte> bits = newBitPage(format);
    for (auto page = from; page != to; ++page) {
      storeMapBit(MutableBytes(bits).subspan(kUsageMapPageBits), *page % perPage, true);
    }
    references[r] = file.allocate();
    file.write(references[r], bits);
  }
  return rowOfReferences(file, references);
}

std::vector<std::byte> encodeFreePages(NewFile& file) {
  const Format& format = file.format();
  if (file.pageCount() <= inlinePages(format)) {
    std::vector<std::byte> row = inlineRow(format, 0);
    for (std::uint32_t page = file.pageCount(); page < inlinePages(format); ++page) {
      storeMapBit(MutableBytes(row).subspan(kUsageMapBits), page, true);
    }
    return row;
  }
  const std::uint32_t perPage = pagesPerMapPage(format);
  std::vector<std::uint32_t> references;
  while (references.size() * perPage < file.pageCount()) references.push_back(file.allocate());
  for (std::uint32_t r = 0; r < references.size(); ++r) {
    std::vector<std::byte> bits = newBitPage(format);
    const std::uint32_t first = r * perPage;
    const std::uint32_t used = std::min(perPage, file.pageCount() - first);
    for (std::uint32_t page = used; page < perPage; ++page) {
      storeMapBit(MutableBytes(bits).subspan(kUsageMapPageBits), page, true);
    }
    file.write(references[r], bits);
  }
  return rowOfReferences(file, references);
}

}  // namespace jetcreate
