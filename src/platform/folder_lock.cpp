#include "platform/folder_lock.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "values/runtime_error.h"

namespace platform {
namespace {

constexpr ByteRange kWhole{0, 1};

// A file that another account's killed process left must hinder nobody.
void openToAll(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr auto kEverybody = fs::perms::owner_read | fs::perms::owner_write |
                              fs::perms::group_read | fs::perms::group_write |
                              fs::perms::others_read | fs::perms::others_write;
  std::error_code notOurs;
  fs::permissions(fs::path(std::u8string(path.begin(), path.end())), kEverybody, notOurs);
}

}  // namespace

std::optional<FolderLock> FolderLock::tryTake(const std::string& folder, const std::string& name) {
  while (true) {
    LockableFile file(joinPath(folder, name));
    openToAll(joinPath(folder, name));
    try {
      if (!file.tryLock(kWhole)) return std::nullopt;
    } catch (const RuntimeError& failure) {
      if (failure.number() != error::kPermissionDenied) throw;
    }
    // The one before may have deleted the file between our opening and our locking.
    if (file.isStillInPlace()) return FolderLock(std::move(file));
  }
}

bool FolderLock::isHeld(const std::string& folder, const std::string& name) {
  const std::string path = joinPath(folder, name);
  if (!fileExists(path)) return false;
  try {
    return LockableFile(path).lockedByOther(kWhole).has_value();
  } catch (const RuntimeError&) {
    return false;  // no permission to look, or no locks here
  }
}

FolderLock::~FolderLock() {
  try {
    file_.removeName();  // of a moved-from lock nothing
  } catch (const std::exception&) {
    // The file stays; without a lock it means nothing.
  }
}

}  // namespace platform
