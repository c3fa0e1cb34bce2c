// The first page of a new file.
//
// Security ids in the system tables are hidden with a key that the engine draws from the moment of
// the file's creation. How it draws it is not known; but the ids of one moment are, from files that
// the engine made, and so every new file claims to be of that moment.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace jetcreate {

// 2003-10-30 13:19:46 as days since 1899-12-30, to the bit.
constexpr std::uint64_t kCreatedBits = 0x40e29ff17d1f72bc;

// Security ids as they look in a file of that moment.
using SecurityId = std::array<std::byte, 2>;
constexpr SecurityId kEngineId{std::byte{0xa7}, std::byte{0x31}};   // owns the system tables
constexpr SecurityId kAdminId{std::byte{0xa6}, std::byte{0x33}};    // who opens a file is this one
constexpr SecurityId kUsersId{std::byte{0xa7}, std::byte{0x33}};    // the group of all
constexpr SecurityId kCreatorId{std::byte{0xa7}, std::byte{0x36}};  // of an object, whoever it is

// The page, masked. `password` in UTF-8, at most 20 characters (error 3001); empty: none.
[[nodiscard]] std::vector<std::byte> headerPage(std::uint32_t encodingKey,
                                                const std::string& password);

}  // namespace jetcreate
