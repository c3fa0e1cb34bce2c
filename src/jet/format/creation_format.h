// What only the creation of a file needs beside layout.h: the marks that a reader skips, and what
// differs between the kinds of files, in one table.
//
//   const CreationFormat& creation = creationFormat(FileFormat::kJet3);
//   const Format& format = formatOf(creation.version);
//
// Values without a known meaning are those that every file seen of the engine carries at that
// place; they are named for what they look like. No .accdb file was seen: those rows differ from
// Jet 4 in the name and the version number only, which is what tells such files apart.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "jet/format/layout.h"
#include "jet/format/table_definition.h"

namespace jet {

enum class FileFormat : std::uint8_t {
  kJet3,   // Access 97
  kJet4,   // Access 2000 to 2003
  kAce12,  // .accdb of Access 2007
  kAce14,  // .accdb of Access 2010
};

// Security ids as system tables hold them. From Jet 4 on they are hidden with a key that the engine
// draws from the moment of the file's creation. How it draws it is not known; but the ids of one
// moment are, from files that the engine made, and so every new file claims to be of that moment.
using SecurityId = std::array<std::byte, 2>;
struct SecurityIds {
  SecurityId engine;   // owns the system tables
  SecurityId admin;    // who opens a file is this one
  SecurityId users;    // the group of all
  SecurityId creator;  // of an object, whoever it is
};

struct CreationFormat {
  Version version;

  // Header page.
  std::string_view name;        // at kHeaderMagic
  std::uint32_t versionNumber;  // at kHeaderVersion
  std::uint32_t build;
  std::uint64_t created;  // bits of the date at kHeaderCreated: the moment of the security ids
  std::uint32_t mark;     // at kHeaderMark
  std::string_view markText;

  // Table definition.
  std::uint16_t definitionSign;   // in the place of the free bytes; 0: they are counted there
  bool systemColumnsByName;       // their order in the definition; otherwise that of their numbers
  std::uint8_t realIndexFlags;    // set in every real index
  std::uint8_t userIndexCascade;  // in both cascade bytes of a user table's index
  ColumnType lastType;            // of the types that columns may have here

  bool indexLevels;          // nodes tell their distance from the leaves
  std::size_t queryColumns;  // of MSysQueries
  SecurityIds ids;
};

[[nodiscard]] const CreationFormat& creationFormat(FileFormat format);

constexpr std::size_t kMaxInlineLong = 64;  // bytes of a long value kept within its row

// Second byte of every page but the first.
constexpr std::uint8_t kPageMark = 0x01;

// Header page. The pointers of the usage maps and the system tables' pages stand in the masked
// region before the code page.
constexpr std::size_t kHeaderMapPointers = 0x18;  // two row pointers: free pages, and one unused
constexpr std::size_t kHeaderSystemPages = 0x20;  // four 32-bit pages, MSysObjects first
constexpr std::size_t kHeaderMark = 0x98;         // 32 bits, then a text
constexpr int kWesternCodePage = 1252;

// Table definition: marks where Format::markSize is not 0.
constexpr std::uint32_t kTableMark = 0x659;
constexpr std::uint32_t kRealIndexMark = 0x783;
constexpr std::uint8_t kSystemColumn = 0x10;   // of a column's flags
constexpr std::uint8_t kHiddenBytes = 0x20;    // of a column's flags: holds a security id
constexpr std::uint8_t kSystemCascade = 0x04;  // in both cascade bytes of a system table's index

// A row pointer as the file stores it: the row in the low byte.
[[nodiscard]] constexpr std::uint32_t rowPointer(std::uint32_t page, std::uint16_t row) {
  return page << 8 | row;
}

}  // namespace jet
