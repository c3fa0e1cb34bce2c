// Usage maps as a file holds them. A map is a row: the kind, then either the first page and a bit
// for each page from that on (inline), or the numbers of pages that hold nothing but bits, the
// first of them those of the pages from 0 on (reference).
#pragma once

#include <cstddef>
#include <cstdint>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"

namespace jet {

enum class UsageMapKind : std::uint8_t { kInline = 0, kReference = 1 };  // first byte of the row

constexpr std::size_t kUsageMapStart = 1;       // inline: 32 bits, page of the first bit
constexpr std::size_t kUsageMapBits = 5;        // inline: the bits
constexpr std::size_t kUsageMapReferences = 1;  // reference: 32 bits a page, 0 for none
constexpr std::size_t kUsageMapReferenceSize = 4;

// Pages whose bits one page of bits holds.
[[nodiscard]] inline std::uint32_t pagesPerMapPage(const Format& format) {
  return static_cast<std::uint32_t>(8 * (format.pageSize - kUsageMapPageBits));
}

[[nodiscard]] inline bool mapBit(Bytes bits, std::size_t n) {
  return (loadU8(bits, n / 8) >> n % 8 & 1) != 0;
}

inline void storeMapBit(MutableBytes bits, std::size_t n, bool value) {
  const auto bit = static_cast<std::byte>(1U << n % 8);
  bits[n / 8] = value ? bits[n / 8] | bit : bits[n / 8] & ~bit;
}

}  // namespace jet
