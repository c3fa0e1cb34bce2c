#include "jetcreate/header_page.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "jet/format/bytes.h"
#include "jet/format/commit_bytes.h"
#include "jet/format/creation_format.h"
#include "jet/format/layout.h"
#include "jet/format/rc4.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

void putAscii(MutableBytes page, std::size_t offset, std::string_view text) {
  const Bytes bytes = std::as_bytes(std::span(text));
  std::copy(bytes.begin(), bytes.end(), page.begin() + static_cast<std::ptrdiff_t>(offset));
}

// Over the whole width of the field lies the day of creation, as a 32-bit number again and again;
// Jet 3 has no such day.
void putPassword(NewFile& file, const std::string& password, MutableBytes page) {
  const std::size_t size = file.format().headerPasswordSize;
  const std::vector<std::byte> text = file.encoder().encode(password, /*compress=*/false);
  if (text.size() > size) {
    throw RuntimeError(error::kInvalidArgument, "The database password is too long.");
  }
  const MutableBytes field = page.subspan(kHeaderPassword, size);
  std::copy(text.begin(), text.end(), field.begin());
  const auto day = static_cast<std::uint32_t>(std::bit_cast<double>(file.creation().created));
  for (std::size_t i = 0; i < size; ++i) field[i] ^= static_cast<std::byte>(day >> i % 4 * 8);
}

}  // namespace

std::vector<std::byte> headerPage(NewFile& file, const std::string& password) {
  const Format& format = file.format();
  const CreationFormat& creation = file.creation();
  std::vector<std::byte> page(format.pageSize);
  storeLittle(page, 1, kPageMark);
  putAscii(page, kHeaderMagic, creation.name);
  storeLittle(page, kHeaderVersion, creation.versionNumber);
  storeLittle(page, kHeaderMapPointers, rowPointer(kUsedPagesMapPage, 0));
  storeLittle(page, kHeaderMapPointers + 4, rowPointer(kUsedPagesMapPage, 1));
  for (std::uint32_t i = 0; i < 4; ++i) {
    storeLittle(page, kHeaderSystemPages + std::size_t{4} * i, kCataloguePage + i);
  }
  storeLittle(page, kHeaderCodePage, file.codePage());
  storeLittle(page, kHeaderKey, file.kind().encodingKey);
  putPassword(file, password, page);
  storeLittle(page, format.headerBuild, creation.build);
  storeLittle(page, format.headerSortOrder, kGeneralSortOrder);
  storeLittle(page, kHeaderCreated, creation.created);
  storeLittle(page, kHeaderMark, creation.mark);
  putAscii(page, kHeaderMark + sizeof(creation.mark), creation.markText);
  for (int slot = 0; slot < kCommitPairs; ++slot) {
    storeLittle(page, commitPairOffset(format.version, slot), kUnusedCommitPair);
  }
  applyRc4(kHeaderMaskKey, 0, MutableBytes(page).subspan(kHeaderMaskStart, format.headerMaskSize));
  return page;
}

}  // namespace jetcreate
