#include "jetcreate/definition_buffer.h"

#include <algorithm>
#include <numeric>

#include "jet/format/byte_buffer.h"
#include "jet/format/creation_format.h"
#include "jet/format/layout.h"

namespace jetcreate {

using namespace jet;

namespace {

constexpr std::uint32_t kNoRelation = 0xffffffff;
constexpr std::uint16_t kNoMoreLongValues = 0xffff;
constexpr std::size_t kDistinctKeys = 4;     // 32 bits, of the counts of a real index
constexpr std::size_t kIndexColumnSize = 3;  // of a column's place in a real index

std::uint32_t pointer(RowId row) { return rowPointer(row.page, row.row); }

std::vector<std::size_t> listedColumns(const CreationFormat& creation,
                                       const TableDefinition& definition,
                                       const DefinitionExtras& extras) {
  std::vector<std::size_t> listed;
  for (std::size_t i = 0; i < definition.columns.size(); ++i) {
    if (extras.omitted.empty() || !extras.omitted[i]) listed.push_back(i);
  }
  if (definition.system && creation.systemColumnsByName) {
    std::sort(listed.begin(), listed.end(), [&](std::size_t a, std::size_t b) {
      return definition.columns[a].name < definition.columns[b].name;
    });
  }
  return listed;
}

}  // namespace

void DefinitionBuffer::putName(const std::string& name) {
  const std::vector<std::byte> bytes = encoder_.encode(name, /*compress=*/false);
  const MutableBytes size = out_.grow(format_.nameLengthSize);
  for (std::size_t i = 0; i < size.size(); ++i) {
    size[i] = static_cast<std::byte>(bytes.size() >> 8 * i);
  }
  out_.put(Bytes(bytes));
}

// Free space, next page and length are set when the whole is known and cut into pages.
void DefinitionBuffer::putHead(const TableDefinition& definition, std::size_t columns) {
  const MutableBytes head = out_.grow(format_.definitionEnd);
  storeMark(head, format_.definitionRowCount, kTableMark);
  storeLittle(head, format_.definitionRowCount, definition.rowCount);
  storeLittle(head, format_.definitionAutonumber, definition.autonumber);
  if (format_.definitionStep != 0) storeLittle(head, format_.definitionStep, std::uint32_t{1});
  storeLittle(head, format_.definitionKind, definition.system ? kSystemTable : kUserTable);
  storeLittle(head, format_.definitionMaxColumns, definition.maxColumns);
  storeLittle(head, format_.definitionVarColumns, definition.varColumns);
  storeLittle(head, format_.definitionColumns, static_cast<std::uint16_t>(columns));
  storeLittle(head, format_.definitionIndexes,
              static_cast<std::uint32_t>(definition.indexes.size()));
  storeLittle(head, format_.definitionRealIndexes,
              static_cast<std::uint32_t>(definition.realIndexes.size()));
  storeLittle(head, format_.definitionOwnedPages, pointer(definition.ownedPages));
  storeLittle(head, format_.definitionFreePages, pointer(definition.freePages));
}

void DefinitionBuffer::putKeyCounts(const TableDefinition& definition,
                                    const DefinitionExtras& extras) {
  for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
    const MutableBytes counts = out_.grow(format_.realIndexCountSize);
    if (i < extras.distinctKeys.size()) storeLittle(counts, kDistinctKeys, extras.distinctKeys[i]);
  }
}

void DefinitionBuffer::putColumn(const TableDefinition& definition, const Column& column) {
  const MutableBytes part = out_.grow(format_.columnSize);
  storeLittle(part, 0, column.type);
  storeMark(part, format_.columnNumber, kTableMark);
  storeLittle(part, format_.columnNumber, column.number);
  storeLittle(part, format_.columnVarIndex, column.varIndex);
  if (!definition.system) storeLittle(part, format_.columnOrdinal, column.ordinal);
  if (column.type == ColumnType::kNumeric) {
    storeLittle(part, format_.columnPrecision, column.precision);
    storeLittle(part, format_.columnPrecision + 1, column.scale);
  } else {
    storeLittle(part, format_.columnPrecision, kGeneralSortOrder);
    if (format_.columnCodePage != 0) storeLittle(part, format_.columnCodePage, codePage_);
  }
  storeLittle(part, format_.columnFlags, column.flags);
  if (format_.columnExtraFlags != 0 && column.compressed) {
    storeLittle(part, format_.columnExtraFlags, kColumnCompressed);
  }
  storeLittle(part, format_.columnFixedOffset, column.fixedOffset);
  storeLittle(part, format_.columnLength, column.length);
}

void DefinitionBuffer::putRealIndex(const TableDefinition& definition, const RealIndex& index) {
  const MutableBytes part = out_.grow(format_.realIndexSize);
  storeMark(part, format_.realIndexColumns, kRealIndexMark);
  for (std::size_t i = 0; i < kIndexColumns; ++i) {
    const std::size_t place = format_.realIndexColumns + kIndexColumnSize * i;
    if (i >= index.columns.size()) {
      storeLittle(part, place, kIndexNoColumn);
      continue;
    }
    storeLittle(part, place, definition.columns[index.columns[i].column].number);
    if (index.columns[i].ascending) storeLittle(part, place + 2, kIndexAscending);
  }
  storeLittle(part, format_.realIndexUsageMap, pointer(index.usageMap));
  storeLittle(part, format_.realIndexRoot, index.rootPage);
  storeLittle(
      part, format_.realIndexFlags,
      static_cast<std::uint8_t>(creation_.realIndexFlags | (index.unique ? kIndexUnique : 0) |
                                (index.ignoreNulls ? kIndexIgnoreNulls : 0) |
                                (index.required ? kIndexRequired : 0)));
}

void DefinitionBuffer::putIndex(const TableDefinition& definition, const Index& index,
                                std::size_t number) {
  const std::uint8_t cascade = definition.system ? kSystemCascade : creation_.userIndexCascade;
  const MutableBytes part = out_.grow(format_.indexSize);
  storeMark(part, format_.indexNumber, kTableMark);
  storeLittle(part, format_.indexNumber, static_cast<std::uint32_t>(number));
  storeLittle(part, format_.indexRealNumber, static_cast<std::uint32_t>(index.realIndex));
  storeLittle(part, format_.indexForeignNumber, kNoRelation);
  storeLittle(part, format_.indexKind - 2, cascade);  // of updates,
  storeLittle(part, format_.indexKind - 1, cascade);  // and of deletions
  if (index.primary) storeLittle(part, format_.indexKind, kIndexPrimary);
}

void DefinitionBuffer::putIndexes(const TableDefinition& definition) {
  for (const RealIndex& index : definition.realIndexes) putRealIndex(definition, index);
  std::vector<std::size_t> byName(definition.indexes.size());
  std::iota(byName.begin(), byName.end(), std::size_t{0});
  std::sort(byName.begin(), byName.end(), [&](std::size_t a, std::size_t b) {
    return definition.indexes[a].name < definition.indexes[b].name;
  });
  for (std::size_t i : byName) putIndex(definition, definition.indexes[i], i);
  for (std::size_t i : byName) putName(definition.indexes[i].name);
}

void DefinitionBuffer::putAll(const TableDefinition& definition, const DefinitionExtras& extras) {
  const std::vector<std::size_t> listed = listedColumns(creation_, definition, extras);
  putHead(definition, listed.size());
  putKeyCounts(definition, extras);
  for (std::size_t i : listed) putColumn(definition, definition.columns[i]);
  for (std::size_t i : listed) putName(definition.columns[i].name);
  putIndexes(definition);
  for (std::size_t i : listed) {
    if (!definition.columns[i].isLongValue()) continue;
    const auto maps = extras.longValues.find(i);
    const LongValueMaps none;
    const LongValueMaps& used = maps == extras.longValues.end() ? none : maps->second;
    out_.put(definition.columns[i].number);
    out_.put(pointer(used.ownedPages));
    out_.put(pointer(used.freePages));
  }
  out_.put(kNoMoreLongValues);
  out_.set(kDefinitionLength, static_cast<std::uint32_t>(out_.size()));
}

}  // namespace jetcreate
