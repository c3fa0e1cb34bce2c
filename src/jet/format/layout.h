// Offsets and sizes in a Jet file, for reading, marking and creating alike: all that
// differs between Jet 3 (Access 97) and Jet 4 (Access 2000 and later) is one table, `Format`.
//
//   const Format& f = formatOf(Version::kJet4);
//   std::uint16_t rows = loadU16(page, f.dataRowCount);
//
// Offsets and sizes are bytes. docs/jet-format.md draws the shapes and says where each fact is
// from.
#pragma once

#include <cstddef>
#include <cstdint>

#include "jet/format/text_weights.h"

namespace jet {

enum class Version : std::uint8_t {
  kJet3,  // Access 97: pages of 2048 bytes, text in a code page
  kJet4,  // Access 2000 to 2003, and the same pages in .accdb: 4096 bytes, Unicode
};

// First byte of a page.
enum class PageType : std::uint8_t {
  kHeader = 0,
  kData = 1,  // rows of a table, or long values ("LVAL" in place of the owner)
  kTableDefinition = 2,
  kIndexNode = 3,
  kIndexLeaf = 4,
  kUsageMap = 5,
};

struct Format {
  Version version;
  std::size_t pageSize;

  // Header page: the masked region starts at kHeaderMaskStart.
  std::size_t headerMaskSize;
  std::size_t headerPasswordSize;
  std::size_t headerSortOrder;  // 16 bits
  std::size_t headerBuild;      // 32 bits: build number of the engine that made the file
  std::size_t commitPairs;      // jet/format/commit_bytes.h

  // Data page.
  std::size_t dataRowCount;    // 16 bits
  std::size_t dataRowOffsets;  // 16 bits a row

  // Row: bytes of its column count, of each offset and of its variable count;
  // jet/rows/row_layout.h.
  std::size_t countWidth;

  // Bytes of the mark in front of a definition's row count, a column's number, the columns of a
  // real index and the number of a logical one; 0 where there are no marks.
  std::size_t markSize;

  // Table definition, from the start of its first page.
  std::size_t definitionRowCount;     // 32 bits
  std::size_t definitionAutonumber;   // 32 bits: last one given out
  std::size_t definitionStep;         // 32 bits, of the autonumber; 0 where it is always 1
  std::size_t definitionKind;         // 8 bits: kUserTable, kSystemTable
  std::size_t definitionMaxColumns;   // 16 bits, deleted ones included
  std::size_t definitionVarColumns;   // 16 bits
  std::size_t definitionColumns;      // 16 bits
  std::size_t definitionIndexes;      // 32 bits: logical ones
  std::size_t definitionRealIndexes;  // 32 bits
  std::size_t definitionOwnedPages;   // row pointer of a usage map
  std::size_t definitionFreePages;    // row pointer of a usage map
  std::size_t definitionEnd;          // counts of the real indexes follow, then the columns
  std::size_t realIndexCountSize;

  // Column description, from its start.
  std::size_t columnSize;
  std::size_t columnNumber;       // 16 bits: bit in the null mask
  std::size_t columnVarIndex;     // 16 bits: place in the row's variable-column table
  std::size_t columnOrdinal;      // 16 bits: order of display
  std::size_t columnPrecision;    // 8 bits, then scale 8 bits; for text the sort order, 16 bits
  std::size_t columnCodePage;     // 16 bits; 0 where there is none
  std::size_t columnFlags;        // 8 bits: kColumnFixed ...
  std::size_t columnExtraFlags;   // 8 bits: kColumnCompressed; 0 where there are none
  std::size_t columnFixedOffset;  // 16 bits, from the end of the row's column count
  std::size_t columnLength;       // 16 bits: bytes
  std::size_t characterSize;      // bytes that a text's length counts for a character
  std::size_t nameLengthSize;     // of columns and indexes; names are in the file's text form

  // Real index description, from its start: ten columns of 16 + 8 bits stand at realIndexColumns.
  std::size_t realIndexSize;
  std::size_t realIndexColumns;
  std::size_t realIndexUsageMap;  // row pointer
  std::size_t realIndexRoot;      // 32 bits: page
  std::size_t realIndexFlags;     // 8 bits: kIndexUnique ...

  // Logical index description, from its start.
  std::size_t indexSize;
  std::size_t indexNumber;         // 32 bits
  std::size_t indexRealNumber;     // 32 bits: place among the real indexes
  std::size_t indexForeignNumber;  // 32 bits: 0xFFFFFFFF when no relation
  std::size_t indexForeignPage;    // 32 bits
  std::size_t indexKind;           // 8 bits: kIndexPrimary, kIndexForeign

  // Index page.
  std::size_t indexPrevious;      // 32 bits
  std::size_t indexNext;          // 32 bits
  std::size_t indexTail;          // 32 bits
  std::size_t indexPrefixLength;  // of indexPrefixSize bytes
  std::size_t indexPrefixSize;
  std::size_t indexLevel;  // 8 bits: distance from the leaves
  std::size_t indexMask;   // bit n: an entry ends n bytes after indexEntries
  std::size_t indexEntries;

  // Bytes of an inline usage map after its start page, as the engine makes them.
  std::size_t usageMapBytes;

  // Limits of the engine.
  std::size_t maxRowSize;   // longer rows are refused
  std::size_t maxPageLong;  // bytes of one row on a long-value page

  TextWeights textWeights;
};

[[nodiscard]] const Format& formatOf(Version version);

// Header page, the same in both versions.
constexpr std::size_t kHeaderMagic = 0x04;      // "Standard Jet DB" or "Standard ACE DB"
constexpr std::size_t kHeaderVersion = 0x14;    // 8 bits: 0 Jet 3, 1 Jet 4, 2 and on .accdb
constexpr std::size_t kHeaderMaskStart = 0x18;  // RC4 with kHeaderMaskKey from here
constexpr std::uint32_t kHeaderMaskKey = 0x6b39dac7;
constexpr std::size_t kHeaderCodePage = 0x3c;  // 16 bits
constexpr std::size_t kHeaderKey = 0x3e;       // 32 bits: 0 when pages are not encoded
constexpr std::size_t kHeaderPassword = 0x42;
constexpr std::size_t kHeaderCreated = 0x72;  // double: days since 1899-12-30; 0 in Jet 3

constexpr std::uint32_t kUsedPagesMapPage = 1;  // the whole file's usage map: row 0 of page 1
constexpr std::uint32_t kCataloguePage = 2;     // definition of MSysObjects

// Page headers, the same in both versions.
constexpr std::size_t kPageFreeSpace = 2;  // 16 bits
constexpr std::size_t kPageOwner = 4;  // 32 bits: page of the table definition, or kLongValueOwner
constexpr std::uint32_t kLongValueOwner = 0x4c41564c;  // "LVAL"
constexpr std::size_t kDefinitionNextPage = 4;         // 32 bits, of a table definition page
constexpr std::size_t kDefinitionLength = 8;           // 32 bits, on the first page only
constexpr std::size_t kDefinitionContinued = 8;        // where a further page's share begins
constexpr std::size_t kUsageMapPageBits = 4;
constexpr std::size_t kIndexOwner = 4;  // 32 bits: page of the table definition

// After the key of an index entry, the high byte first.
constexpr std::size_t kEntryRowSize = 4;    // page, 24 bits, and row, 8 bits
constexpr std::size_t kEntryChildSize = 4;  // on a node: page, 32 bits

// Row pointers: the row's place on its page in the low byte, the page in the three above.
constexpr std::size_t kRowPointerSize = 4;
constexpr std::size_t kMaxRowsOnPage = 255;

// Row offsets of a data page.
constexpr std::size_t kRowOffsetSize = 2;
constexpr std::uint16_t kRowOffsetMask = 0x1fff;
constexpr std::uint16_t kRowForwarded = 0x4000;  // four bytes stand here: a pointer to the row
constexpr std::uint16_t kRowDeleted = 0x8000;    // gone; also set where a forwarded row arrived

// Long values: 12 bytes in the row, the first four being length and these two bits.
constexpr std::size_t kLongValueHeader = 12;
constexpr std::uint32_t kLongValueLengthMask = 0x3fffffff;
constexpr std::uint32_t kLongValueInline = 0x80000000;
constexpr std::uint32_t kLongValueSinglePage = 0x40000000;

constexpr std::uint8_t kUserTable = 0x4e;
constexpr std::uint8_t kSystemTable = 0x53;

constexpr std::uint8_t kColumnFixed = 0x01;
constexpr std::uint8_t kColumnNullable = 0x02;
constexpr std::uint8_t kColumnAutonumber = 0x04;
constexpr std::uint8_t kColumnAutoGuid = 0x40;
constexpr std::uint8_t kColumnHyperlink = 0x80;
constexpr std::uint8_t kColumnCompressed = 0x01;  // of the extra flags

constexpr std::size_t kIndexColumns = 10;  // places in a real index description
constexpr std::uint16_t kIndexNoColumn = 0xffff;
constexpr std::uint8_t kIndexAscending = 0x01;
constexpr std::uint8_t kIndexUnique = 0x01;
constexpr std::uint8_t kIndexIgnoreNulls = 0x02;
constexpr std::uint8_t kIndexRequired = 0x08;
constexpr std::uint8_t kIndexPrimary = 0x01;  // kinds of logical indexes
constexpr std::uint8_t kIndexForeign = 0x02;

}  // namespace jet
