#include "jet/table_definition_reader.h"

#include <algorithm>
#include <utility>

#include "jet/format/bytes.h"
#include "jet/pages/data_page.h"

namespace jet {
namespace {

// 255 columns and 32 indexes with names of 64 characters fill far fewer pages.
constexpr std::size_t kMaxDefinitionPages = 256;
constexpr std::uint16_t kNoMoreLongValues = 0xffff;

bool isKnown(std::uint8_t type) { return (type >= 1 && type <= 12) || (type >= 15 && type <= 20); }

// Goes through the definition's parts in their order; every step is checked against its end.
class DefinitionReader {
 public:
  DefinitionReader(PageFile& file, TextDecoder& text, std::uint32_t page, const std::string& name)
      : file_(file), text_(text), format_(file.format()) {
    definition_.page = page;
    definition_.name = name;
  }

  TableDefinition read() {
    readParts();
    return std::move(definition_);
  }

  // With the part after the names of the indexes, which reading rows does not need.
  WholeDefinition readWhole() {
    readParts();
    WholeDefinition whole;
    for (;;) {
      const std::uint16_t number = loadU16(take(sizeof(number)), 0);
      if (number == kNoMoreLongValues) break;
      const Bytes maps = take(2 * kRowPointerSize);
      whole.longValues.push_back({.column = columnNumbered(number),
                                  .ownedPages = loadRowPointer(maps, 0),
                                  .freePages = loadRowPointer(maps, kRowPointerSize)});
    }
    if (position_ != loadU32(bytes_, kDefinitionLength)) damaged("it is not as long as it says");
    whole.table = std::move(definition_);
    whole.pages = std::move(pages_);
    return whole;
  }

 private:
  void readParts() {
    gatherPages();
    readHead();
    readColumns();
    readRealIndexes();
    readIndexes();
    sortColumns();
  }

  [[noreturn]] void damaged(const std::string& what) const {
    file_.damaged(definition_.page, "definition of table '" + definition_.name + "': " + what);
  }

  // The pages' shares put together: of the first the whole page, of the others what follows their
  // header.
  void gatherPages() {
    std::uint32_t next = definition_.page;
    for (std::size_t pages = 0; next != 0; ++pages) {
      if (pages == kMaxDefinitionPages) damaged("its pages form a cycle");
      const PagePtr page = file_.freshPage(next);
      if (loadU8(page->bytes, 0) != static_cast<std::uint8_t>(PageType::kTableDefinition)) {
        damaged("page " + std::to_string(next) + " is not part of a definition");
      }
      const Bytes share = Bytes(page->bytes).subspan(pages == 0 ? 0 : kDefinitionContinued);
      bytes_.insert(bytes_.end(), share.begin(), share.end());
      pages_.push_back(next);
      next = loadU32(page->bytes, kDefinitionNextPage);
    }
  }

  Bytes take(std::size_t size) {
    if (bytes_.size() - position_ < size) damaged("it is cut short");
    const Bytes taken = Bytes(bytes_).subspan(position_, size);
    position_ += size;
    return taken;
  }

  std::string takeName() {
    const Bytes size = take(format_.nameLengthSize);
    const Bytes name = take(format_.nameLengthSize == 1 ? loadU8(size, 0) : loadU16(size, 0));
    return text_.decoded(name);
  }

  void readHead() {
    const Bytes head = take(format_.definitionEnd);
    definition_.rowCount = loadU32(head, format_.definitionRowCount);
    definition_.autonumber = loadU32(head, format_.definitionAutonumber);
    definition_.system = loadU8(head, format_.definitionKind) == kSystemTable;
    definition_.maxColumns = loadU16(head, format_.definitionMaxColumns);
    definition_.varColumns = loadU16(head, format_.definitionVarColumns);
    definition_.ownedPages = loadRowPointer(head, format_.definitionOwnedPages);
    definition_.freePages = loadRowPointer(head, format_.definitionFreePages);
    columnCount_ = loadU16(head, format_.definitionColumns);
    indexCount_ = loadU32(head, format_.definitionIndexes);
    realIndexCount_ = loadU32(head, format_.definitionRealIndexes);
    // Before anything is reserved: each of them takes this much at least.
    if (columnCount_ * format_.columnSize + std::uint64_t{indexCount_} * format_.indexSize +
            std::uint64_t{realIndexCount_} * format_.realIndexSize >
        bytes_.size()) {
      damaged("it claims more columns and indexes than it holds");
    }
    if (columnCount_ > definition_.maxColumns) damaged("it has more columns than its rows");
    take(realIndexCount_ * format_.realIndexCountSize);
  }

  void readColumns() {
    for (std::size_t i = 0; i < columnCount_; ++i) {
      definition_.columns.push_back(toColumn(take(format_.columnSize)));
    }
    for (Column& column : definition_.columns) {
      column.name = takeName();
      checkColumn(column);
    }
  }

  [[nodiscard]] Column toColumn(Bytes bytes) const {
    const std::uint8_t type = loadU8(bytes, 0);
    if (!isKnown(type)) damaged("a column is of the unknown type " + std::to_string(type));
    Column column;
    column.type = static_cast<ColumnType>(type);
    column.number = loadU16(bytes, format_.columnNumber);
    column.ordinal = loadU16(bytes, format_.columnOrdinal);
    column.flags = loadU8(bytes, format_.columnFlags);
    column.fixed = (column.flags & kColumnFixed) != 0;
    column.fixedOffset = loadU16(bytes, format_.columnFixedOffset);
    column.varIndex = loadU16(bytes, format_.columnVarIndex);
    column.length = loadU16(bytes, format_.columnLength);
    if (column.type == ColumnType::kNumeric) {
      column.precision = loadU8(bytes, format_.columnPrecision);
      column.scale = loadU8(bytes, format_.columnPrecision + 1);
    }
    if (column.type == ColumnType::kText && hasGeneralOrder(bytes)) {
      column.weights = &format_.textWeights;
    }
    column.autonumber = (column.flags & (kColumnAutonumber | kColumnAutoGuid)) != 0;
    column.compressed = format_.columnExtraFlags != 0 &&
                        (loadU8(bytes, format_.columnExtraFlags) & kColumnCompressed) != 0;
    return column;
  }

  // Jet 4 has the order's version in the fourth byte; the "General" of Access 2010 has other
  // weights.
  [[nodiscard]] bool hasGeneralOrder(Bytes bytes) const {
    constexpr std::size_t kVersionAt = 3;
    return loadU16(bytes, format_.columnPrecision) == kGeneralSortOrder &&
           (format_.version == Version::kJet3 ||
            loadU8(bytes, format_.columnPrecision + kVersionAt) == 0);
  }

  void checkColumn(const Column& column) const {
    const std::size_t size = fixedSize(column.type);
    if (column.number >= definition_.maxColumns) {
      damaged("column '" + column.name + "' has no place in its rows");
    }
    if (column.fixed && size != 0 && column.length != size) {
      damaged("column '" + column.name + "' has the wrong length for its type");
    }
    if (column.fixed && column.isLongValue()) {
      damaged("column '" + column.name + "' is a long value of fixed length");
    }
    if (column.scale > 28) damaged("column '" + column.name + "' has too many decimals");
  }

  void readRealIndexes() {
    for (std::size_t i = 0; i < realIndexCount_; ++i) {
      const Bytes bytes = take(format_.realIndexSize);
      RealIndex index;
      for (std::size_t c = 0; c < kIndexColumns; ++c) {
        const std::size_t at = format_.realIndexColumns + 3 * c;
        const std::uint16_t number = loadU16(bytes, at);
        if (number == kIndexNoColumn) continue;
        index.columns.push_back(
            {columnNumbered(number), (loadU8(bytes, at + 2) & kIndexAscending) != 0});
      }
      const std::uint8_t flags = loadU8(bytes, format_.realIndexFlags);
      index.usageMap = loadRowPointer(bytes, format_.realIndexUsageMap);
      index.rootPage = loadU32(bytes, format_.realIndexRoot);
      index.unique = (flags & kIndexUnique) != 0;
      index.ignoreNulls = (flags & kIndexIgnoreNulls) != 0;
      index.required = (flags & kIndexRequired) != 0;
      definition_.realIndexes.push_back(std::move(index));
    }
  }

  [[nodiscard]] std::size_t columnNumbered(std::uint16_t number) const {
    const auto& columns = definition_.columns;
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const Column& c) { return c.number == number; });
    if (found == columns.end()) damaged("it describes a column that the table has not");
    return static_cast<std::size_t>(found - columns.begin());
  }

  void readIndexes() {
    for (std::size_t i = 0; i < indexCount_; ++i) {
      const Bytes bytes = take(format_.indexSize);
      const std::uint8_t kind = loadU8(bytes, format_.indexKind);
      Index index;
      index.realIndex = loadU32(bytes, format_.indexRealNumber);
      if (index.realIndex >= realIndexCount_) damaged("an index has no tree");
      index.primary = kind == kIndexPrimary;
      index.foreign = kind == kIndexForeign;
      definition_.indexes.push_back(std::move(index));
    }
    for (Index& index : definition_.indexes) index.name = takeName();
  }

  // Until here columns stood in the definition's order. In system tables that is the alphabet, and
  // every ordinal is 0.
  void sortColumns() {
    std::vector<std::size_t> order(columnCount_);
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    const auto place = [&](std::size_t i) {
      return std::pair(definition_.columns[i].ordinal, definition_.columns[i].number);
    };
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return place(a) < place(b); });
    std::vector<Column> sorted;
    std::vector<std::size_t> positionOf(columnCount_);
    for (const std::size_t from : order) {
      positionOf[from] = sorted.size();
      sorted.push_back(std::move(definition_.columns[from]));
    }
    definition_.columns = std::move(sorted);
    for (RealIndex& index : definition_.realIndexes) {
      for (IndexColumn& column : index.columns) column.column = positionOf[column.column];
    }
  }

  PageFile& file_;
  TextDecoder& text_;
  const Format& format_;
  TableDefinition definition_;
  std::vector<std::uint32_t> pages_;
  std::vector<std::byte> bytes_;
  std::size_t position_ = 0;
  std::size_t columnCount_ = 0;
  std::uint32_t indexCount_ = 0;
  std::uint32_t realIndexCount_ = 0;
};

}  // namespace

WholeDefinition readWholeDefinition(PageFile& file, TextDecoder& text, std::uint32_t page,
                                    const std::string& name) {
  return DefinitionReader(file, text, page, name).readWhole();
}

TableDefinition readTableDefinition(PageFile& file, TextDecoder& text, std::uint32_t page,
                                    const std::string& name) {
  return DefinitionReader(file, text, page, name).read();
}

}  // namespace jet
