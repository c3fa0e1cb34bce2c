// A file read and written at given places.
//
//   auto file = RandomAccessFile::open("/shop/data.mdb", RandomAccessFile::Mode::kReadOnly);
//   std::size_t got = file.readAt(0, buffer);   // less than asked for only at the end of the file
//
// The object owns its handle and may be moved, not copied. Another program may change or lengthen
// the file at any time; nothing of it is cached here. Errors: 53 no such file, 76 no such folder,
// 75 not permitted or not a plain file, 58 already there (kCreateNew), 61 disk full, 57 reading or
// writing failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "platform/system_handle.h"

class RandomAccessFile {
 public:
  enum class Mode {
    kReadOnly,
    kReadWrite,  // the file must exist
    kCreateNew,  // the file must not exist; read and write
  };

  [[nodiscard]] static RandomAccessFile open(const std::string& path, Mode mode);

  RandomAccessFile(RandomAccessFile&& other) noexcept;
  RandomAccessFile& operator=(RandomAccessFile&& other) noexcept;
  RandomAccessFile(const RandomAccessFile&) = delete;
  RandomAccessFile& operator=(const RandomAccessFile&) = delete;
  ~RandomAccessFile();

  // Bytes read: all of `buffer`, or fewer where the file ends first.
  [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<std::byte> buffer) const;

  // Writes all of `bytes`; lengthens the file where it ends sooner.
  void writeAt(std::uint64_t offset, std::span<const std::byte> bytes);

  [[nodiscard]] std::uint64_t size() const;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  RandomAccessFile(std::string path, platform::SystemHandle handle)
      : path_(std::move(path)), handle_(handle) {}
  void close() noexcept;

  std::string path_;
  platform::SystemHandle handle_ = platform::kNoHandle;
};
