#include "platform/memory.h"

#include <algorithm>
#include <limits>

#include "platform/windows_api.h"

namespace platform {

namespace {

std::uint32_t clipped(std::uint64_t bytes) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(bytes, kLargest));
}

}  // namespace

MemoryStatus SystemMemory::status() const {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  ::GlobalMemoryStatusEx(&status);
  return {clipped(status.ullAvailPhys), clipped(status.ullAvailVirtual)};
}

}  // namespace platform
