// One piece of work at a time in a folder, across processes.
//
//   auto lock = platform::FolderLock::tryTake(folder, ".transfer.lock");
//   if (!lock) ...                     // somebody else is at it
//
// The lock is a hidden file in the folder, made when it is taken and deleted when the object goes;
// the system releases it with the process, however that ends, so a file that a killed process
// left means nothing. A file system without locks grants it to everybody.
// Errors: 75 the folder cannot be written, 76 no such folder, 57 anything else of the device.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/file_lock.h"

namespace platform {

class FolderLock {
 public:
  // Nothing while somebody else holds it.
  [[nodiscard]] static std::optional<FolderLock> tryTake(const std::string& folder,
                                                         const std::string& name);
  // Whether somebody holds it at the moment. Makes no file.
  [[nodiscard]] static bool isHeld(const std::string& folder, const std::string& name);

  FolderLock(FolderLock&& other) noexcept = default;
  FolderLock& operator=(FolderLock&& other) = delete;
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock();

 private:
  explicit FolderLock(LockableFile file) : file_(std::move(file)) {}

  LockableFile file_;
};

}  // namespace platform
