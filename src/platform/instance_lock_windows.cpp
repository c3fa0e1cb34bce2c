#include "platform/instance_lock.h"

#include "platform/files.h"
#include "platform/windows_api.h"

namespace platform {

namespace {

// One name for all sessions of the machine. A mutex's name has no backslash and no more than 260
// characters, so the folder stands in it as a number (FNV-1a, 64 bits).
std::wstring mutexName(const std::string& folder) {
  std::wstring path = toWide(canonicalPath(folder));
  ::CharLowerBuffW(path.data(), static_cast<DWORD>(path.size()));
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const wchar_t letter : path) hash = (hash ^ letter) * 0x100000001b3;
  return L"Global\\Quenbrook-" + std::to_wstring(hash);
}

}  // namespace

// The mutex is there as long as one instance has a handle of it; nobody ever waits for it. One that
// another account made and keeps to itself is refused.
InstanceLock::InstanceLock(const std::string& folder)
    : lock_(::CreateMutexW(nullptr, FALSE, mutexName(folder).c_str())) {
  const DWORD code = ::GetLastError();
  alone_ = lock_ != kNoHandle ? code != ERROR_ALREADY_EXISTS : code != ERROR_ACCESS_DENIED;
}

InstanceLock::~InstanceLock() {
  if (lock_ != kNoHandle) ::CloseHandle(lock_);
}

}  // namespace platform
