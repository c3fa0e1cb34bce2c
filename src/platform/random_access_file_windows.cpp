#include "platform/random_access_file.h"

#include "platform/windows_api.h"
#include "values/runtime_error.h"

RandomAccessFile RandomAccessFile::open(const std::string& path, Mode mode) {
  const DWORD access = mode == Mode::kReadOnly ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
  auto handle =
      platform::openShared(path, access, mode == Mode::kCreateNew ? CREATE_NEW : OPEN_EXISTING);
  if (!handle) platform::throwSystemError(::GetLastError(), "Cannot open", path);
  RandomAccessFile file(path, handle.release());
  if (::GetFileType(file.handle_) != FILE_TYPE_DISK) {
    throw RuntimeError(error::kPathAccess, "Cannot open '" + path + "': it is not a plain file.");
  }
  return file;
}

RandomAccessFile::RandomAccessFile(RandomAccessFile&& other) noexcept
    : path_(std::move(other.path_)), handle_(std::exchange(other.handle_, platform::kNoHandle)) {}

RandomAccessFile& RandomAccessFile::operator=(RandomAccessFile&& other) noexcept {
  if (this != &other) {
    close();
    path_ = std::move(other.path_);
    handle_ = std::exchange(other.handle_, platform::kNoHandle);
  }
  return *this;
}

RandomAccessFile::~RandomAccessFile() { close(); }

void RandomAccessFile::close() noexcept {
  if (handle_ != platform::kNoHandle) ::CloseHandle(handle_);
  handle_ = platform::kNoHandle;
}

std::size_t RandomAccessFile::readAt(std::uint64_t offset, std::span<std::byte> buffer) const {
  return platform::readFrom(handle_, offset, buffer, path_);
}

void RandomAccessFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes) {
  platform::writeTo(handle_, offset, bytes, path_);
}

std::uint64_t RandomAccessFile::size() const {
  LARGE_INTEGER size{};
  if (!::GetFileSizeEx(handle_, &size)) {
    platform::throwSystemError(::GetLastError(), "Cannot examine", path_);
  }
  return static_cast<std::uint64_t>(size.QuadPart);
}
