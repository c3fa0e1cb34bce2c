#include "jetcreate/definition_writer.h"

#include <algorithm>
#include <numeric>

#include "jet/format/byte_buffer.h"
#include "jet/format/creation_constants.h"
#include "jet/format/layout.h"
#include "jet/format/text_codec.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::uint32_t kNoRelation = 0xffffffff;

std::uint32_t pointer(RowId row) { return rowPointer(row.page, row.row); }

// The engine lists a system table's columns by name, a user's in the order of their making.
std::vector<std::size_t> listedColumns(const TableDefinition& definition,
                                       const DefinitionExtras& extras) {
  std::vector<std::size_t> listed;
  for (std::size_t i = 0; i < definition.columns.size(); ++i) {
    if (extras.omitted.empty() || !extras.omitted[i]) listed.push_back(i);
  }
  if (definition.system) {
    std::sort(listed.begin(), listed.end(), [&](std::size_t a, std::size_t b) {
      return definition.columns[a].name < definition.columns[b].name;
    });
  }
  return listed;
}

void putName(const std::string& name, ByteBuffer& out) {
  const std::vector<std::byte> bytes = encodeText(name, /*compress=*/false);
  out.put(static_cast<std::uint16_t>(bytes.size()));
  out.put(Bytes(bytes));
}

void putHeader(const TableDefinition& definition, std::size_t columns, ByteBuffer& out) {
  out.put(PageType::kTableDefinition);
  out.put(kPageMark);
  out.put(std::uint16_t{0});  // free space, and
  out.put(std::uint32_t{0});  // the next page: set when the whole is cut into pages
  out.put(std::uint32_t{0});  // length of the whole
  out.put(kTableMark);
  out.put(definition.rowCount);
  out.put(definition.autonumber);
  out.put(std::uint32_t{1});  // step of the autonumber
  out.putZeros(12);           // unknown; zero in new tables
  out.put(definition.system ? kSystemTable : kUserTable);
  out.put(definition.maxColumns);
  out.put(definition.varColumns);
  out.put(static_cast<std::uint16_t>(columns));
  out.put(static_cast<std::uint32_t>(definition.indexes.size()));
  out.put(static_cast<std::uint32_t>(definition.realIndexes.size()));
  out.put(pointer(definition.ownedPages));
  out.put(pointer(definition.freePages));
}

void putColumn(const TableDefinition& definition, const Column& column, ByteBuffer& out) {
  out.put(column.type);
  out.put(kTableMark);
  out.put(column.number);
  out.put(column.varIndex);
  out.put(definition.system ? std::uint16_t{0} : column.ordinal);
  if (column.type == ColumnType::kNumeric) {
    out.put(column.precision);
    out.put(column.scale);
    out.put(std::uint16_t{0});
  } else {
    out.put(kSortOrder);
  }
  out.put(column.flags);
  out.put(column.compressed ? kColumnCompressed : std::uint8_t{0});
  out.put(std::uint32_t{0});
  out.put(column.fixedOffset);
  out.put(column.length);
}

void putRealIndex(const TableDefinition& definition, const RealIndex& index, ByteBuffer& out) {
  out.put(kRealIndexMark);
  for (std::size_t i = 0; i < kIndexColumns; ++i) {
    const bool used = i < index.columns.size();
    out.put(used ? definition.columns[index.columns[i].column].number : kIndexNoColumn);
    out.put(used && index.columns[i].ascending ? kIndexAscending : std::uint8_t{0});
  }
  out.put(pointer(index.usageMap));
  out.put(index.rootPage);
  out.putZeros(4);  // unknown
  out.put(static_cast<std::uint8_t>(kRealIndexInUse | (index.unique ? kIndexUnique : 0) |
                                    (index.ignoreNulls ? kIndexIgnoreNulls : 0) |
                                    (index.required ? kIndexRequired : 0)));
  out.putZeros(5);
}

void putIndex(const TableDefinition& definition, const Index& index, std::size_t number,
              ByteBuffer& out) {
  const std::uint8_t cascade = definition.system ? kSystemCascade : std::uint8_t{0};
  out.put(kTableMark);
  out.put(static_cast<std::uint32_t>(number));
  out.put(static_cast<std::uint32_t>(index.realIndex));
  out.put(std::uint8_t{0});  // kind of the related table
  out.put(kNoRelation);
  out.put(std::uint32_t{0});
  out.put(cascade);
  out.put(cascade);
  out.put(index.primary ? kIndexPrimary : std::uint8_t{0});
  out.putZeros(4);
}

void putIndexes(const TableDefinition& definition, ByteBuffer& out) {
  for (const RealIndex& index : definition.realIndexes) putRealIndex(definition, index, out);
  std::vector<std::size_t> byName(definition.indexes.size());
  std::iota(byName.begin(), byName.end(), std::size_t{0});
  std::sort(byName.begin(), byName.end(), [&](std::size_t a, std::size_t b) {
    return definition.indexes[a].name < definition.indexes[b].name;
  });
  for (std::size_t i : byName) putIndex(definition, definition.indexes[i], i, out);
  for (std::size_t i : byName) putName(definition.indexes[i].name, out);
}

ByteBuffer encode(const TableDefinition& definition, const DefinitionExtras& extras) {
  const std::vector<std::size_t> listed = listedColumns(definition, extras);
  ByteBuffer out;
  putHeader(definition, listed.size(), out);
  for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
    out.put(std::uint32_t{0});
    out.put(i < extras.distinctKeys.size() ? extras.distinctKeys[i] : 0);
    out.put(std::uint32_t{0});
  }
  for (std::size_t i : listed) putColumn(definition, definition.columns[i], out);
  for (std::size_t i : listed) putName(definition.columns[i].name, out);
  putIndexes(definition, out);
  for (std::size_t i : listed) {
    if (!definition.columns[i].isLongValue()) continue;
    const auto maps = extras.longValues.find(i);
    const LongValueMaps none;
    const LongValueMaps& used = maps == extras.longValues.end() ? none : maps->second;
    out.put(definition.columns[i].number);
    out.put(pointer(used.ownedPages));
    out.put(pointer(used.freePages));
  }
  out.put(std::uint16_t{0xffff});
  out.set(kDefinitionLength, static_cast<std::uint32_t>(out.size()));
  return out;
}

// The first page is cut from the whole, header included; each further one has a short header.
std::size_t sharePerPage() { return newFormat().pageSize - kDefinitionContinued; }

}  // namespace

std::vector<std::uint32_t> allocateDefinition(NewFile& file, const TableDefinition& definition,
                                              const DefinitionExtras& extras) {
  std::vector<std::uint32_t> pages;
  const std::size_t size = encode(definition, extras).size() - kDefinitionContinued;
  for (std::size_t covered = 0; covered < size; covered += sharePerPage()) {
    pages.push_back(file.allocate());
  }
  return pages;
}

void writeDefinition(NewFile& file, const TableDefinition& definition,
                     const DefinitionExtras& extras, const std::vector<std::uint32_t>& pages) {
  const ByteBuffer whole = encode(definition, extras);
  Bytes rest = whole.bytes().subspan(kDefinitionContinued);
  for (std::size_t i = 0; i < pages.size(); ++i) {
    std::vector<std::byte> page(newFormat().pageSize);
    const Bytes share = rest.first(std::min(rest.size(), sharePerPage()));
    rest = rest.subspan(share.size());
    storeLittle(page, 0, PageType::kTableDefinition);
    storeLittle(page, 1, kPageMark);
    std::copy(share.begin(), share.end(), page.begin() + kDefinitionContinued);
    // The engine keeps eight bytes back when it counts what is left.
    const std::size_t left = sharePerPage() - share.size();
    storeLittle(page, kPageFreeSpace, static_cast<std::uint16_t>(left < 8 ? 0 : left - 8));
    storeLittle(page, kDefinitionNextPage, i + 1 < pages.size() ? pages[i + 1] : 0);
    file.write(pages[i], page);
  }
}

}  // namespace jetcreate
