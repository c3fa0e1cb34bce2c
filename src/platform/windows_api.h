// What this room's Windows sources share: the system's header, UTF-16, errors and open files.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/system_handle.h"

namespace platform {

[[nodiscard]] std::wstring toWide(std::string_view utf8);
[[nodiscard]] std::string fromWide(std::wstring_view wide);

// A path as the system's wide calls take it: a long one absolute and with the prefix that lifts
// the limit of 260 characters.
[[nodiscard]] std::wstring systemPath(const std::string& path);

// The number of a GetLastError: 53, 58, 61, 67, 75, 76, or 57 for what has none of its own.
[[nodiscard]] int errorNumberOf(DWORD code);
// The system's text for it, in the system's language.
[[nodiscard]] std::string errorText(DWORD code);
// Throws the RuntimeError of a GetLastError. The description is "action 'subject': text".
[[noreturn]] void throwSystemError(DWORD code, const std::string& action,
                                   const std::string& subject);

// Owns a handle that CloseHandle closes.
class OwnedHandle {
 public:
  explicit OwnedHandle(SystemHandle handle = kNoHandle)
      : handle_(handle == INVALID_HANDLE_VALUE ? kNoHandle : handle) {}
  OwnedHandle(OwnedHandle&& other) noexcept : handle_(other.release()) {}
  OwnedHandle& operator=(OwnedHandle&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  OwnedHandle(const OwnedHandle&) = delete;
  OwnedHandle& operator=(const OwnedHandle&) = delete;
  ~OwnedHandle() { reset(); }

  explicit operator bool() const { return handle_ != kNoHandle; }
  [[nodiscard]] SystemHandle get() const { return handle_; }
  [[nodiscard]] SystemHandle release() { return std::exchange(handle_, kNoHandle); }
  void reset(SystemHandle handle = kNoHandle) {
    if (handle_ != kNoHandle) ::CloseHandle(handle_);
    handle_ = handle;
  }

 private:
  SystemHandle handle_;
};

// Calls until it succeeds or fails with what does not pass, every 50 ms for up to two seconds; the
// last result. `passes` may ask GetLastError, and so may the caller afterwards.
template <typename Call, typename Passes>
[[nodiscard]] auto patiently(Call call, Passes passes) {
  constexpr DWORD kPause = 50;  // milliseconds
  constexpr int kAttempts = 40;
  for (int attempt = 1;; ++attempt) {
    auto result = call();
    if (result || attempt == kAttempts || !passes()) return result;
    ::Sleep(kPause);
  }
}

// A virus scanner, an indexer or a backup holds the file for a moment and does not share it.
[[nodiscard]] inline bool isHeldByOthers() { return ::GetLastError() == ERROR_SHARING_VIOLATION; }

// Others may read, write and delete the file meanwhile, as when the till's engine opens it. Without
// a handle where it fails: GetLastError tells why. A child process does not inherit it.
[[nodiscard]] OwnedHandle openShared(const std::string& path, DWORD access, DWORD disposition);

// Bytes read from an offset: all of `bytes`, or fewer where the file ends.
[[nodiscard]] std::size_t readFrom(SystemHandle file, std::uint64_t offset,
                                   std::span<std::byte> bytes, const std::string& path);
void writeTo(SystemHandle file, std::uint64_t offset, std::span<const std::byte> bytes,
             const std::string& path);

}  // namespace platform
