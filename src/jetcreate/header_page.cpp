#include "jetcreate/header_page.h"

#include <algorithm>
#include <bit>
#include <string_view>

#include "jet/format/bytes.h"
#include "jet/format/commit_bytes.h"
#include "jet/format/creation_constants.h"
#include "jet/format/layout.h"
#include "jet/format/rc4.h"
#include "jet/format/text_codec.h"
#include "jetcreate/new_file.h"
#include "values/runtime_error.h"

namespace jetcreate {

using namespace jet;

namespace {

void putAscii(MutableBytes page, std::size_t offset, std::string_view text) {
  const Bytes bytes = std::as_bytes(std::span(text));
  std::copy(bytes.begin(), bytes.end(), page.begin() + static_cast<std::ptrdiff_t>(offset));
}

// Over the whole width of the field lies the day of creation, as a 32-bit number again and again.
void putPassword(MutableBytes page, const std::string& password) {
  const std::size_t size = newFormat().headerPasswordSize;
  const std::vector<std::byte> text = encodeText(password, /*compress=*/false);
  if (text.size() > size) {
    throw RuntimeError(error::kInvalidArgument, "The database password is too long.");
  }
  const MutableBytes field = page.subspan(kHeaderPassword, size);
  std::copy(text.begin(), text.end(), field.begin());
  const auto day = static_cast<std::uint32_t>(std::bit_cast<double>(kCreatedBits));
  for (std::size_t i = 0; i < size; ++i) field[i] ^= static_cast<std::byte>(day >> i % 4 * 8);
}

}  // namespace

std::vector<std::byte> headerPage(std::uint32_t encodingKey, const std::string& password) {
  std::vector<std::byte> page(newFormat().pageSize);
  storeLittle(page, 1, kPageMark);
  putAscii(page, kHeaderMagic, "Standard Jet DB");
  storeLittle(page, kHeaderVersion, std::uint32_t{1});
  storeLittle(page, kHeaderMapPointers, rowPointer(kUsedPagesMapPage, 0));
  storeLittle(page, kHeaderMapPointers + 4, rowPointer(kUsedPagesMapPage, 1));
  for (std::uint32_t i = 0; i < 4; ++i) {
    storeLittle(page, kHeaderSystemPages + std::size_t{4} * i, kCataloguePage + i);
  }
  storeLittle(page, kHeaderCodePage, kCodePage);
  storeLittle(page, kHeaderKey, encodingKey);
  putPassword(page, password);
  storeLittle(page, kHeaderBuild, kEngineBuild);
  storeLittle(page, kHeaderJet4SortOrder, kSortOrder);
  storeLittle(page, kHeaderCreated, kCreatedBits);
  storeLittle(page, kHeaderFormatMark, kFormatMark);
  putAscii(page, kHeaderFormatMark + 4, "4.0");
  for (int slot = 0; slot < kCommitPairs; ++slot) {
    storeLittle(page, commitPairOffset(Version::kJet4, slot), kUnusedCommitPair);
  }
  applyRc4(kHeaderMaskKey, 0,
           MutableBytes(page).subspan(kHeaderMaskStart, newFormat().headerMaskSize));
  return page;
}

}  // namespace jetcreate
