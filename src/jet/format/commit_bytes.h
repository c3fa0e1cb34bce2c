// The commit bytes at the end of the header page: 256 pairs of bytes, pair n for the user in slot
// n, pair 0 for who has the file exclusively. They begin at E00h in Jet 4 and at 600h in Jet 3.
//
//   if (isInterrupted(header, Version::kJet4, slot)) ... is that user still there?
//
// The first byte of a pair counts its user's writes, so that others read their cached pages again.
// The second is 01h, also in a pair that was never used (00h 01h), and 00h while its user is in the
// middle of a write: without that user the file must be repaired before it is used. Seen in 37
// files of Jet 3, 2000, 2003, 2007 and 2010, whose used pairs were 01h 01h, 0Ah 01h, B7h 01h and
// the like.
#pragma once

#include <cstddef>
#include <cstdint>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"

namespace jet {

constexpr int kCommitPairs = 256;
constexpr std::size_t kCommitPairSize = 2;
constexpr std::size_t kCommitPairsSize = kCommitPairs * kCommitPairSize;
constexpr std::byte kNoWriteUnderWay{1};             // a pair's second byte
constexpr std::uint16_t kUnusedCommitPair = 0x0100;  // low byte first

[[nodiscard]] inline std::size_t commitPairOffset(Version version, int slot) {
  return formatOf(version).commitPairs + kCommitPairSize * static_cast<std::size_t>(slot);
}

// `header`: page 0. Whether the slot's pair tells of a write that has not ended.
[[nodiscard]] bool isInterrupted(Bytes header, Version version, int slot);

}  // namespace jet
