// How much memory is left, as 32-bit byte counts: what does not fit is the largest of them.
#pragma once

#include <cstdint>

namespace platform {

struct MemoryStatus {
  std::uint32_t availablePhysical = 0;  // bytes
  std::uint32_t availableVirtual = 0;   // bytes of the process's address space
};

class Memory {
 public:
  virtual ~Memory() = default;
  [[nodiscard]] virtual MemoryStatus status() const = 0;
};

class SystemMemory : public Memory {
 public:
  [[nodiscard]] MemoryStatus status() const override;
};

}  // namespace platform
