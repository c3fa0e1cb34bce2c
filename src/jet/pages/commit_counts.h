// The commit counts of a shared file, as this program knows them: has another user changed pages
// since the last look, and what is the next count of our own.
//
//   CommitCounts counts(lockFile.slot(), ticks);
//   counts.look(pairs);                                       // at open
//   if (counts.isLookDue() && counts.look(pairs)) forget();   // before a cached page is used
//   write(pairs of page 0, counts.next());                    // after our own writes
//
// The pairs are those of jet/format/commit_bytes.h. A user whose count went round 256 times between
// two looks is missed. No errors; reads and writes nothing itself.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "jet/format/bytes.h"
#include "jet/format/commit_bytes.h"
#include "platform/clock.h"

namespace jet {

class CommitCounts {
 public:
  // Milliseconds for which cached pages are used without a look. The engine takes 5 seconds.
  static constexpr std::uint32_t kLookInterval = 500;

  // `ownSlot` as in LockFile::slot(); none for a reader that has not joined the file's users. The
  // tick counter must outlive this.
  CommitCounts(std::optional<int> ownSlot, const platform::TickCounter& ticks)
      : ownSlot_(ownSlot), ticks_(&ticks) {}

  [[nodiscard]] bool isLookDue() const;

  // `pairs`: all of them, as the file has them now. True when a pair of another user differs from
  // the last look; false at the first one.
  bool look(Bytes pairs);

  // Where in the pairs our own stands, and its next state. One who has not joined has none.
  [[nodiscard]] std::size_t ownOffset() const;
  [[nodiscard]] std::array<std::byte, kCommitPairSize> next();

 private:
  std::optional<int> ownSlot_;
  const platform::TickCounter* ticks_;
  std::int32_t lookedAt_ = 0;  // ticks
  bool looked_ = false;
  std::array<std::byte, kCommitPairsSize> pairs_{};
};

}  // namespace jet
