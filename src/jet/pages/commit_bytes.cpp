#include "jet/pages/commit_bytes.h"

#include "jet/format/bytes.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

bool isNeutral(Bytes header, int slot, Version version) {
  const std::size_t at = kHeaderCommitBytes + 2 * static_cast<std::size_t>(slot);
  if (version == Version::kJet3) return loadU8(header, at + 1) != 0;
  return loadU16(header, at) == 0;
}

// The first slot whose pair is changed though nobody is there; -1: none. Nobody but us has the
// file alone while we are in, so pair 0 belongs to someone who is gone.
int suspectSlot(Bytes header, Version version, const LockFile& users) {
  for (int slot = 0; slot <= kMaxUsers; ++slot) {
    if (!isNeutral(header, slot, version) && (slot == 0 || !users.isSlotTaken(slot))) return slot;
  }
  return -1;
}

}  // namespace

void checkCommitBytes(const std::function<std::vector<std::byte>()>& readHeader, Version version,
                      const LockFile& users, const std::string& path) {
  const int slot = suspectSlot(readHeader(), version, users);
  if (slot < 0) return;
  // Who wrote and left between our two looks has put the pair back by now.
  if (isNeutral(readHeader(), slot, version)) return;
  throw RuntimeError(error::kDamaged,
                     "The database '" + path + "' was left in the middle of a write by user " +
                         std::to_string(slot) + " and must be repaired (page 0, commit bytes).");
}

}  // namespace jet
