#include "platform/random_access_file.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix_error.h"
#include "values/runtime_error.h"

namespace {

int openFlags(RandomAccessFile::Mode mode) {
  // Without O_NONBLOCK, opening a pipe would wait for its other end.
  constexpr int kAlways = O_CLOEXEC | O_NONBLOCK;
  switch (mode) {
    case RandomAccessFile::Mode::kReadWrite:
      return O_RDWR | kAlways;
    case RandomAccessFile::Mode::kCreateNew:
      return O_RDWR | O_CREAT | O_EXCL | kAlways;
    case RandomAccessFile::Mode::kReadOnly:
      break;
  }
  return O_RDONLY | kAlways;
}

}  // namespace

RandomAccessFile RandomAccessFile::open(const std::string& path, Mode mode) {
  const int handle = ::open(path.c_str(), openFlags(mode), 0666);
  if (handle < 0) platform::throwErrno(errno, "Cannot open", path);
  RandomAccessFile file(path, handle);
  struct stat status {};
  if (::fstat(handle, &status) != 0) platform::throwErrno(errno, "Cannot examine", path);
  if (!S_ISREG(status.st_mode)) {
    throw RuntimeError(error::kPathAccess, "Cannot open '" + path + "': it is not a plain file.");
  }
  return file;
}

RandomAccessFile::RandomAccessFile(RandomAccessFile&& other) noexcept
    : path_(std::move(other.path_)), handle_(std::exchange(other.handle_, -1)) {}

RandomAccessFile& RandomAccessFile::operator=(RandomAccessFile&& other) noexcept {
  if (this != &other) {
    close();
    path_ = std::move(other.path_);
    handle_ = std::exchange(other.handle_, -1);
  }
  return *this;
}

RandomAccessFile::~RandomAccessFile() { close(); }

void RandomAccessFile::close() noexcept {
  if (handle_ >= 0) ::close(handle_);
  handle_ = -1;
}

std::size_t RandomAccessFile::readAt(std::uint64_t offset, std::span<std::byte> buffer) const {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t got = ::pread(handle_, buffer.data() + done, buffer.size() - done,
                                static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) platform::throwErrno(errno, "Cannot read", path_);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

void RandomAccessFile::writeAt(std::uint64_t offset, std::span<const std::byte> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t put = ::pwrite(handle_, bytes.data() + done, bytes.size() - done,
                                 static_cast<off_t>(offset + done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) platform::throwErrno(errno, "Cannot write", path_);
    done += static_cast<std::size_t>(put);
  }
}

std::uint64_t RandomAccessFile::size() const {
  struct stat status {};
  if (::fstat(handle_, &status) != 0) platform::throwErrno(errno, "Cannot examine", path_);
  return static_cast<std::uint64_t>(status.st_size);
}
