#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <string>

#include "platform/memory.h"

namespace platform {

namespace {

std::uint32_t clipped(std::uint64_t bytes) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(bytes, kLargest));
}

// Free memory and what the system would give up for it.
std::uint64_t availablePhysical() {
  std::ifstream table("/proc/meminfo");
  std::string label;
  std::uint64_t kibibytes = 0;
  std::string unit;
  while (table >> label >> kibibytes && std::getline(table, unit)) {
    if (label == "MemAvailable:") return kibibytes * 1024;
  }
  return 0;
}

std::uint64_t usedAddressSpace() {
  std::uint64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

std::uint64_t availableVirtual() {
  rlimit limit{};
  const bool limited = getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
  if (!limited) return std::numeric_limits<std::uint64_t>::max();
  const auto used = usedAddressSpace();
  return limit.rlim_cur > used ? limit.rlim_cur - used : 0;
}

}  // namespace

MemoryStatus SystemMemory::status() const {
  return {clipped(availablePhysical()), clipped(availableVirtual())};
}

}  // namespace platform
