#include <algorithm>
#include <array>

#include "platform/file_lock.h"
#include "platform/windows_api.h"
#include "values/runtime_error.h"

// NOLINTNEXTLINE(readability-identifier-naming): the system's, in no header of the compiler's
extern "C" NTSYSAPI LONG NTAPI RtlGetLastNtStatus();

namespace platform {
namespace {

[[noreturn]] void fail(const std::string& what, const std::string& path, DWORD code) {
  const bool cannotLock = code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED ||
                          code == ERROR_INVALID_PARAMETER;
  int number = cannotLock ? error::kPermissionDenied : errorNumberOf(code);
  if (number == error::kFileNotFound) number = error::kPathNotFound;
  throw RuntimeError(number, what + " '" + path + "': " + errorText(code) + ".");
}

// A deleted file keeps its name until the last handle of it is closed, and nobody can open it
// meanwhile. Its last user closes it at once.
OwnedHandle openWhenGone(const std::string& path) {
  constexpr LONG kDeletePending = static_cast<LONG>(0xC0000056);
  auto file = patiently([&] { return openShared(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS); },
                        [] { return isHeldByOthers() || RtlGetLastNtStatus() == kDeletePending; });
  if (!file) fail("Cannot open the lock file", path, ::GetLastError());
  return file;
}

OVERLAPPED startOf(ByteRange range) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(range.first);
  place.OffsetHigh = static_cast<DWORD>(range.first >> 32U);
  return place;
}

// False for a conflict.
bool lockRange(SystemHandle file, ByteRange range, DWORD kind, const std::string& path) {
  OVERLAPPED place = startOf(range);
  if (::LockFileEx(file, kind | LOCKFILE_FAIL_IMMEDIATELY, 0, static_cast<DWORD>(range.length),
                   static_cast<DWORD>(range.length >> 32U), &place)) {
    return true;
  }
  const DWORD code = ::GetLastError();
  if (code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING) return false;
  fail("Cannot lock", path, code);
}

void unlockRange(SystemHandle file, ByteRange range, const std::string& path) {
  OVERLAPPED place = startOf(range);
  if (!::UnlockFileEx(file, 0, static_cast<DWORD>(range.length),
                      static_cast<DWORD>(range.length >> 32U), &place)) {
    fail("Cannot unlock", path, ::GetLastError());
  }
}

std::uint64_t endOf(ByteRange range) { return range.first + range.length; }

// The parts of a range that none of the held ranges covers, in order. `held` is sorted.
std::vector<ByteRange> uncovered(ByteRange range, const std::vector<ByteRange>& held) {
  std::vector<ByteRange> parts;
  std::uint64_t from = range.first;
  for (const ByteRange& own : held) {
    if (endOf(own) <= from || own.first >= endOf(range)) continue;
    if (own.first > from) parts.push_back({from, own.first - from});
    from = endOf(own);
  }
  if (from < endOf(range)) parts.push_back({from, endOf(range) - from});
  return parts;
}

// The first number from `from` on for which `holds`, as it then does for all after it; `end` where
// there is none.
template <typename Condition>
std::uint64_t firstWhere(std::uint64_t from, std::uint64_t end, Condition holds) {
  while (from < end) {
    const std::uint64_t middle = from + (end - from) / 2;
    if (holds(middle)) {
      end = middle;
    } else {
      from = middle + 1;
    }
  }
  return from;
}

// What tells a file from any other, under whatever name.
struct Identity {
  DWORD volume = 0;
  DWORD indexHigh = 0;
  DWORD indexLow = 0;
  bool operator==(const Identity&) const = default;
};

std::optional<Identity> identityOf(SystemHandle file) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (!::GetFileInformationByHandle(file, &information)) return std::nullopt;
  return Identity{information.dwVolumeSerialNumber, information.nFileIndexHigh,
                  information.nFileIndexLow};
}

}  // namespace

LockableFile::LockableFile(const std::string& path)
    : path_(path), handle_(openWhenGone(path).release()) {}

LockableFile::LockableFile(LockableFile&& other) noexcept
    : path_(std::move(other.path_)),
      handle_(std::exchange(other.handle_, kNoHandle)),
      held_(std::move(other.held_)) {}

LockableFile& LockableFile::operator=(LockableFile&& other) noexcept {
  if (this != &other) {
    close();
    path_ = std::move(other.path_);
    handle_ = std::exchange(other.handle_, kNoHandle);
    held_ = std::move(other.held_);
  }
  return *this;
}

LockableFile::~LockableFile() { close(); }

// The system releases the locks of a closed handle some time later: they are released before.
void LockableFile::close() noexcept {
  if (handle_ == kNoHandle) return;
  for (const ByteRange& range : held_) {
    OVERLAPPED place = startOf(range);
    ::UnlockFileEx(handle_, 0, static_cast<DWORD>(range.length),
                   static_cast<DWORD>(range.length >> 32U), &place);
  }
  held_.clear();
  ::CloseHandle(std::exchange(handle_, kNoHandle));
}

// A lock of the system's conflicts with one of the same handle, so only what is not held yet is
// locked; and it is released in the very ranges in which it was taken.
bool LockableFile::tryLock(ByteRange range) {
  std::vector<ByteRange> taken;
  for (const ByteRange& part : uncovered(range, held_)) {
    if (!lockRange(handle_, part, LOCKFILE_EXCLUSIVE_LOCK, path_)) {
      for (const ByteRange& again : taken) unlockRange(handle_, again, path_);
      return false;
    }
    taken.push_back(part);
  }
  held_.insert(held_.end(), taken.begin(), taken.end());
  std::ranges::sort(held_, {}, &ByteRange::first);
  return true;
}

void LockableFile::unlock(ByteRange range) {
  const auto within = [&](const ByteRange& own) {
    return own.first >= range.first && endOf(own) <= endOf(range);
  };
  for (const ByteRange& own : held_) {
    if (within(own)) unlockRange(handle_, own, path_);
  }
  std::erase_if(held_, within);
}

// The system tells nobody's locks; a shared one that is refused and not kept finds them. Locks of
// others that meet look like one, and one that is longer than any of the engine's like its part.
std::optional<ByteRange> LockableFile::lockedByOther(ByteRange range) const {
  constexpr std::uint64_t kLongest = 0x200;
  const auto isLocked = [&](ByteRange part) {
    for (const ByteRange& free : uncovered(part, held_)) {
      if (!lockRange(handle_, free, 0, path_)) return true;
      unlockRange(handle_, free, path_);
    }
    return false;
  };
  if (!isLocked(range)) return std::nullopt;
  const std::uint64_t found = firstWhere(range.first, endOf(range), [&](std::uint64_t at) {
    return isLocked({range.first, at - range.first + 1});
  });
  if (found == endOf(range)) return std::nullopt;  // released meanwhile
  const std::uint64_t first =
      firstWhere(found - std::min(found, kLongest), found, [&](std::uint64_t at) {
        return isLocked({at, 1});
      });
  const std::uint64_t end = firstWhere(found + 1, found + kLongest, [&](std::uint64_t at) {
    return !isLocked({at, 1});
  });
  return ByteRange{first, end - first};
}

std::size_t LockableFile::read(std::uint64_t offset, std::span<std::byte> bytes) const {
  return readFrom(handle_, offset, bytes, path_);
}

void LockableFile::write(std::uint64_t offset, std::span<const std::byte> bytes) {
  writeTo(handle_, offset, bytes, path_);
}

bool LockableFile::isStillInPlace() const {
  const auto named = openShared(path_, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
  if (!named) return false;  // also where it is deleted and somebody has it open
  const auto mine = identityOf(handle_);
  return mine && mine == identityOf(named.get());
}

void LockableFile::removeName() {
  if (!isStillInPlace()) return;
  if (!::DeleteFileW(systemPath(path_).c_str()) && ::GetLastError() != ERROR_FILE_NOT_FOUND) {
    fail("Cannot delete", path_, ::GetLastError());
  }
}

std::string machineName() {
  std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> name{};
  auto size = static_cast<DWORD>(name.size());
  if (!::GetComputerNameW(name.data(), &size)) return "";
  return fromWide(std::wstring_view(name.data(), size));
}

}  // namespace platform
