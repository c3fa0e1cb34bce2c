#include "jetcreate/definition_writer.h"

#include <algorithm>

#include "jet/format/bytes.h"
#include "jet/format/creation_format.h"
#include "jet/format/layout.h"

namespace jetcreate {

using namespace jet;

namespace {

std::size_t sharePerPage(const NewFile& file) {
  return file.format().pageSize - kDefinitionContinued;
}

// The engine keeps eight bytes back when it counts what is left.
std::uint16_t freeBytes(const NewFile& file, std::size_t share) {
  if (file.creation().definitionSign != 0) return file.creation().definitionSign;
  const std::size_t left = sharePerPage(file) - share;
  return static_cast<std::uint16_t>(left < 8 ? 0 : left - 8);
}

}  // namespace

std::vector<std::uint32_t> allocateDefinition(NewFile& file, const TableDefinition& definition,
                                              const DefinitionExtras& extras) {
  DefinitionBuffer whole(file);
  whole.putAll(definition, extras);
  const std::size_t size = whole.bytes().size() - kDefinitionContinued;
  std::vector<std::uint32_t> pages;
  for (std::size_t covered = 0; covered < size; covered += sharePerPage(file)) {
    pages.push_back(file.allocate());
  }
  return pages;
}

// The first page is cut from the whole, header included; each further one has a short header.
void writeDefinition(NewFile& file, const TableDefinition& definition,
                     const DefinitionExtras& extras, const std::vector<std::uint32_t>& pages) {
  DefinitionBuffer whole(file);
  whole.putAll(definition, extras);
  Bytes rest = whole.bytes().subspan(kDefinitionContinued);
  for (std::size_t i = 0; i < pages.size(); ++i) {
    std::vector<std::byte> page(file.format().pageSize);
    const Bytes share = rest.first(std::min(rest.size(), sharePerPage(file)));
    rest = rest.subspan(share.size());
    storeLittle(page, 0, PageType::kTableDefinition);
    storeLittle(page, 1, kPageMark);
    std::copy(share.begin(), share.end(), page.begin() + kDefinitionContinued);
    storeLittle(page, kPageFreeSpace, freeBytes(file, share.size()));
    storeLittle(page, kDefinitionNextPage, i + 1 < pages.size() ? pages[i + 1] : 0);
    file.write(pages[i], page);
  }
}

}  // namespace jetcreate
