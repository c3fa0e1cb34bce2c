// A small file with byte-range locks, through which programs that share a database coordinate; the
// locked bytes lie beyond the end of the file.
//
//   platform::LockableFile file("/shop/data.ldb");  // made when missing
//   if (file.tryLock({0x10000001, 1})) file.write(0, entry);
//
// The locks belong to this object, not to the process: two objects in one process conflict as two
// processes do, and closing another handle of the same file releases none of them. They end with
// the object or with the process. All are exclusive; none of them waits. A child process that is
// started meanwhile does not inherit them.
//
// Errors: 75 no access (a folder or file that cannot be written), 76 no such folder, 70 a file
// system that does not lock, 57 any other failure of the device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/system_handle.h"

namespace platform {

struct ByteRange {
  std::uint64_t first = 0;
  std::uint64_t length = 0;  // 0 would mean 'to the end': never asked for, but may be reported
};

class LockableFile {
 public:
  explicit LockableFile(const std::string& path);
  LockableFile(LockableFile&& other) noexcept;
  LockableFile& operator=(LockableFile&& other) noexcept;
  LockableFile(const LockableFile&) = delete;
  LockableFile& operator=(const LockableFile&) = delete;
  ~LockableFile();

  // False when somebody else holds a byte of the range. Bytes that this object holds already are
  // no conflict.
  [[nodiscard]] bool tryLock(ByteRange range);
  void unlock(ByteRange range);

  // The first lock of somebody else that touches the range, with its own whole extent.
  [[nodiscard]] std::optional<ByteRange> lockedByOther(ByteRange range) const;

  // Bytes at an offset; fewer than asked for where the file ends.
  [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<std::byte> bytes) const;
  void write(std::uint64_t offset, std::span<const std::byte> bytes);

  // Whether the path still names this file: between opening and locking, another program may have
  // deleted it and a third may have made a new one of that name.
  [[nodiscard]] bool isStillInPlace() const;

  // Unlinks the path if it still names this file; the file ends with its last open handle.
  void removeName();

 private:
  void close() noexcept;

  std::string path_;
  SystemHandle handle_ = kNoHandle;
  std::vector<ByteRange> held_;  // where the system has no such locks of its own
};

// Name of this machine in its network, for the entries of lock files.
[[nodiscard]] std::string machineName();

}  // namespace platform
