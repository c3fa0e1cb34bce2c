// Whether another instance of the program runs from the same folder.
//
//   const platform::InstanceLock instance(start.programFolder);  // held to the program's end
//   if (!instance.alone()) …                                     // another one was there before
//
// The system releases it with the process, however that ends; nothing is left on the disk. Where
// the folder cannot be locked at all, the program counts as alone.
#pragma once

#include <string>

#include "platform/system_handle.h"

namespace platform {

class InstanceLock {
 public:
  explicit InstanceLock(const std::string& folder);
  ~InstanceLock();
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;

  // As it was at construction.
  [[nodiscard]] bool alone() const { return alone_; }

 private:
  SystemHandle lock_ = kNoHandle;
  bool alone_ = true;
};

}  // namespace platform
