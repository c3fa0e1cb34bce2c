#include "jet/format/commit_bytes.h"

namespace jet {

bool isInterrupted(Bytes header, Version version, int slot) {
  return loadU8(header, commitPairOffset(version, slot) + 1) == 0;
}

}  // namespace jet
