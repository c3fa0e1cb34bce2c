// What only the creation of a Jet 4 file needs: limits that the engine keeps to and marks that a
// reader skips.
//
// Values without a known meaning are those that every file seen of the engine carries at that
// place; they are named for what they look like.
#pragma once

#include <cstddef>
#include <cstdint>

namespace jet {

constexpr std::size_t kMaxRowSize = 4060;   // longer rows are refused by the engine itself
constexpr std::size_t kMaxInlineLong = 64;  // bytes of a long value kept within its row
constexpr std::size_t kMaxPageLong = 4076;  // bytes of one row on a long-value page

// Second byte of every page but the first.
constexpr std::uint8_t kPageMark = 0x01;

// Header page. The pointers of the usage maps and the system tables' pages stand in the masked
// region before the code page.
constexpr std::size_t kHeaderMapPointers = 0x18;  // two row pointers: free pages, and one unused
constexpr std::size_t kHeaderSystemPages = 0x20;  // four 32-bit pages, MSysObjects first
constexpr std::size_t kHeaderBuild = 0x6a;        // 32 bits: build number of the engine
constexpr std::size_t kHeaderFormatMark = 0x98;   // 32 bits, then "4.0"
constexpr std::uint32_t kEngineBuild = 8618;
constexpr std::uint32_t kFormatMark = 0x654;
constexpr std::uint16_t kCodePage = 1252;
constexpr std::uint32_t kSortOrder = 0x0409;  // "General": the one whose text keys are known here

// Table definition.
constexpr std::uint32_t kTableMark = 0x659;
constexpr std::uint32_t kRealIndexMark = 0x783;
constexpr std::uint8_t kRealIndexInUse = 0x80;  // of a real index's flags
constexpr std::uint8_t kSystemColumn = 0x10;    // of a column's flags
constexpr std::uint8_t kHiddenBytes = 0x20;     // of a column's flags: holds a security id
constexpr std::uint8_t kSystemCascade = 0x04;   // in both cascade bytes of a system table's index

// A row pointer as the file stores it: the row in the low byte.
[[nodiscard]] constexpr std::uint32_t rowPointer(std::uint32_t page, std::uint16_t row) {
  return page << 8 | row;
}

}  // namespace jet
