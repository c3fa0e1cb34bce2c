#include "platform/file_lock.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "values/runtime_error.h"

namespace platform {
namespace {

// Locks lie as far out as 0x6FF800FF and further for larger files.
static_assert(sizeof(off_t) == 8, "byte-range locks need 64-bit file offsets");

[[noreturn]] void fail(const std::string& what, const std::string& path, int code) {
  const std::string reason = std::generic_category().message(code);
  int number = error::kDeviceIo;
  if (code == EACCES || code == EPERM || code == EROFS) number = error::kPathAccess;
  if (code == ENOENT || code == ENOTDIR) number = error::kPathNotFound;
  if (code == ENOLCK || code == EOPNOTSUPP || code == EINVAL || code == ENOSYS) {
    number = error::kPermissionDenied;
  }
  throw RuntimeError(number, what + " '" + path + "': " + reason + ".");
}

struct flock toFlock(ByteRange range, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(range.first);
  lock.l_len = static_cast<off_t>(range.length);
  return lock;
}

}  // namespace

LockableFile::LockableFile(const std::string& path) : path_(path) {
  handle_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (handle_ < 0) fail("Cannot open the lock file", path_, errno);
}

LockableFile::LockableFile(LockableFile&& other) noexcept
    : path_(std::move(other.path_)), handle_(std::exchange(other.handle_, -1)) {}

LockableFile& LockableFile::operator=(LockableFile&& other) noexcept {
  if (this != &other) {
    close();
    path_ = std::move(other.path_);
    handle_ = std::exchange(other.handle_, -1);
  }
  return *this;
}

LockableFile::~LockableFile() { close(); }

void LockableFile::close() noexcept {
  if (handle_ >= 0) ::close(std::exchange(handle_, -1));
}

bool LockableFile::tryLock(ByteRange range) {
  // F_OFD_SETLK: a lock of the open file, not of the process.
  struct flock lock = toFlock(range, F_WRLCK);
  if (::fcntl(handle_, F_OFD_SETLK, &lock) == 0) return true;
  const int code = errno;
  if (code == EAGAIN || code == EACCES) return false;
  std::array<char, 64> what{};
  std::snprintf(what.data(), what.size(), "Cannot lock %llu bytes from %llXh on of",
                static_cast<unsigned long long>(range.length),
                static_cast<unsigned long long>(range.first));
  fail(what.data(), path_, code);
}

void LockableFile::unlock(ByteRange range) {
  struct flock lock = toFlock(range, F_UNLCK);
  if (::fcntl(handle_, F_OFD_SETLK, &lock) != 0) fail("Cannot unlock", path_, errno);
}

std::optional<ByteRange> LockableFile::lockedByOther(ByteRange range) const {
  struct flock lock = toFlock(range, F_WRLCK);
  if (::fcntl(handle_, F_OFD_GETLK, &lock) != 0) fail("Cannot look at the locks of", path_, errno);
  if (lock.l_type == F_UNLCK) return std::nullopt;
  return ByteRange{static_cast<std::uint64_t>(lock.l_start),
                   static_cast<std::uint64_t>(lock.l_len)};
}

std::size_t LockableFile::read(std::uint64_t offset, std::span<std::byte> bytes) const {
  const ssize_t count = ::pread(handle_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
  if (count < 0) fail("Cannot read", path_, errno);
  return static_cast<std::size_t>(count);
}

void LockableFile::write(std::uint64_t offset, std::span<const std::byte> bytes) {
  const ssize_t count = ::pwrite(handle_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
  if (count < 0) fail("Cannot write", path_, errno);
  if (static_cast<std::size_t>(count) != bytes.size()) fail("Cannot write", path_, ENOSPC);
}

bool LockableFile::isStillInPlace() const {
  struct stat mine {};
  struct stat named {};
  if (::fstat(handle_, &mine) != 0 || ::stat(path_.c_str(), &named) != 0) return false;
  return mine.st_dev == named.st_dev && mine.st_ino == named.st_ino;
}

void LockableFile::removeName() {
  if (!isStillInPlace()) return;
  if (::unlink(path_.c_str()) != 0 && errno != ENOENT) fail("Cannot delete", path_, errno);
}

std::string machineName() {
  std::array<char, 256> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) return "";
  const std::string text = name.data();
  return text.substr(0, text.find('.'));
}

}  // namespace platform
