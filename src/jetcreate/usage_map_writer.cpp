#include "jetcreate/usage_map_writer.h"

#include <algorithm>

#include "jet/format/byte_buffer.h"
#include "jet/format/layout.h"
#include "jet/pages/usage_map.h"
#include "jetcreate/layout.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::uint32_t kInlinePages = 512;
constexpr std::uint32_t kReferences = 17;
constexpr std::uint32_t kPagesPerReference = (kPageSize - kUsageMapPageBits) * 8;

void setBit(MutableBytes bits, std::uint32_t bit) { bits[bit / 8] |= std::byte{1} << (bit % 8); }

std::vector<std::byte> newBitPage() {
  std::vector<std::byte> page(kPageSize);
  storeLittle(page, 0, PageType::kUsageMap);
  storeLittle(page, 1, kPageMark);
  return page;
}

std::vector<std::byte> rowOfReferences(const NewFile& file,
                                       const std::vector<std::uint32_t>& references) {
  if (references.size() > kReferences) {
    throw RuntimeError(error::kFileTooLarge,
                       "File '" + file.path() + "' got too large for its usage maps.");
  }
  ByteBuffer row;
  row.put(UsageMapKind::kReference);
  for (std::uint32_t page : references) row.put(page);
  row.putZeros(kUsageMapRowSize - row.size());
  return {row.bytes().begin(), row.bytes().end()};
}

std::vector<std::byte> inlineRow(std::uint32_t start) {
  std::vector<std::byte> row(kUsageMapRowSize);
  storeLittle(row, 0, UsageMapKind::kInline);
  storeLittle(row, 1, start);
  return row;
}

}  // namespace

std::vector<std::byte> encodeUsageMap(NewFile& file, const std::vector<std::uint32_t>& pages) {
  const std::uint32_t start = pages.empty() || pages.back() < kInlinePages ? 0 : pages[0] / 8 * 8;
  if (pages.empty() || pages.back() - start < kInlinePages) {
    std::vector<std::byte> row = inlineRow(start);
    for (std::uint32_t page : pages) setBit(MutableBytes(row).subspan(5), page - start);
    return row;
  }
  std::vector<std::uint32_t> references(pages.back() / kPagesPerReference + 1);
  for (std::uint32_t r = 0; r < references.size(); ++r) {
    const auto from = std::lower_bound(pages.begin(), pages.end(), r * kPagesPerReference);
    const auto to = std::lower_bound(from, pages.end(), (r + 1) * kPagesPerReference);
    if (from == to) continue;  // no page of bits at all: none of those pages is in the set
    std::vector<std::byte> bits = newBitPage();
    for (auto page = from; page != to; ++page) {
      setBit(MutableBytes(bits).subspan(kUsageMapPageBits), *page % kPagesPerReference);
    }
    references[r] = file.allocate();
    file.write(references[r], bits);
  }
  return rowOfReferences(file, references);
}

std::vector<std::byte> encodeFreePages(NewFile& file) {
  if (file.pageCount() <= kInlinePages) {
    std::vector<std::byte> row = inlineRow(0);
    for (std::uint32_t page = file.pageCount(); page < kInlinePages; ++page) {
      setBit(MutableBytes(row).subspan(5), page);
    }
    return row;
  }
  std::vector<std::uint32_t> references;
  while (references.size() * kPagesPerReference < file.pageCount()) {
    references.push_back(file.allocate());
  }
  for (std::uint32_t r = 0; r < references.size(); ++r) {
    std::vector<std::byte> bits = newBitPage();
    const std::uint32_t first = r * kPagesPerReference;
    const std::uint32_t used = std::min(kPagesPerReference, file.pageCount() - first);
    for (std::uint32_t page = used; page < kPagesPerReference; ++page) {
      setBit(MutableBytes(bits).subspan(kUsageMapPageBits), page);
    }
    file.write(references[r], bits);
  }
  return rowOfReferences(file, references);
}

}  // namespace jetcreate
