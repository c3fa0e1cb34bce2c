#include "jet/pages/commit_counts.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace jet {

bool CommitCounts::isLookDue() const {
  // Unsigned: the counter wraps.
  return static_cast<std::uint32_t>(ticks_->ticks()) - static_cast<std::uint32_t>(lookedAt_) >=
         kLookInterval;
}

bool CommitCounts::look(Bytes pairs) {
  assert(pairs.size() == pairs_.size());
  lookedAt_ = ticks_->ticks();
  std::array<std::byte, kCommitPairsSize> now;
  std::ranges::copy(pairs, now.begin());
  if (looked_ && ownSlot_) {
    std::copy_n(pairs_.begin() + static_cast<std::ptrdiff_t>(ownOffset()), kCommitPairSize,
                now.begin() + static_cast<std::ptrdiff_t>(ownOffset()));
  }
  // std::array compares bytes one by one, and every page that is edited asks.
  const bool changed = looked_ && std::memcmp(now.data(), pairs_.data(), now.size()) != 0;
  pairs_ = now;
  looked_ = true;
  return changed;
}

std::size_t CommitCounts::ownOffset() const {
  return kCommitPairSize * static_cast<std::size_t>(ownSlot_.value());
}

std::array<std::byte, kCommitPairSize> CommitCounts::next() {
  assert(looked_);
  const std::size_t at = ownOffset();
  pairs_[at] = static_cast<std::byte>(std::to_integer<unsigned>(pairs_[at]) + 1);
  pairs_[at + 1] = kNoWriteUnderWay;
  return {pairs_[at], pairs_[at + 1]};
}

}  // namespace jet
