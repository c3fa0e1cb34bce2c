// Objects of a file as the catalogue, MSysObjects, holds them: numbers of its columns Type and
// Flags, and what an object's Id says.
#pragma once

#include <cstdint>

namespace jet {

constexpr std::int16_t kTableObject = 1;
constexpr std::int16_t kDatabaseObject = 2;
constexpr std::int16_t kContainerObject = 3;
constexpr std::int16_t kOdbcLinkObject = 4;
constexpr std::int16_t kQueryObject = 5;
constexpr std::int16_t kJetLinkObject = 6;

// Of the flags. An object is the engine's own when one of the system bits is set.
constexpr std::uint32_t kSystemFlags = 0x80000002;
constexpr std::uint32_t kEngineFlag = 0x80000000;  // of the system tables themselves
constexpr std::uint32_t kHiddenFlag = 0x8;
constexpr std::uint32_t kOdbcLinkFlag = 0x100000;
constexpr std::uint32_t kJetLinkFlag = 0x200000;

// The id of a table of the file is the page of its definition; the highest byte holds marks.
constexpr std::uint32_t kPageOfId = 0x00ffffff;

}  // namespace jet
