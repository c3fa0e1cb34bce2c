#include "jet/pages/lock_file.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

#include "platform/files.h"
#include "platform/find_file.h"
#include "text/ascii.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

using platform::ByteRange;

constexpr std::uint64_t kUserLocks = 0x10000000;  // plus the slot
constexpr ByteRange kAllUsers{kUserLocks + 1, kMaxUsers};
constexpr std::uint64_t kWriteLocks = 0x20000000;
constexpr std::uint64_t kTableReadLocks = 0x40000000;
constexpr std::uint64_t kBytesPerPage = 0x200;
constexpr std::uint64_t kExclusiveLength = 0x101;
// Pages after this one would reach into the next region; it is beyond the largest Jet file.
constexpr std::uint32_t kMaxPage = (kTableReadLocks - kWriteLocks) / kBytesPerPage - 1;

constexpr std::size_t kEntrySize = 64;
constexpr std::size_t kNameSize = 32;
constexpr std::string_view kAccount = "Admin";  // the account where nobody logs in

// The engine itself tries 20 times, 100 milliseconds apart.
constexpr int kJoinAttempts = 20;
constexpr std::chrono::milliseconds kJoinDelay{100};

ByteRange userLock(int slot) { return {kUserLocks + static_cast<std::uint64_t>(slot), 1}; }

ByteRange pageRange(std::uint64_t region, std::uint32_t page, int slot, std::uint64_t length) {
  if (page > kMaxPage) {
    throw RuntimeError(error::kUnrecognized,
                       "Page " + std::to_string(page) + " lies beyond any database file.");
  }
  return {region + page * kBytesPerPage + static_cast<std::uint64_t>(slot), length};
}

std::string nameIn(std::span<const std::byte> field) {
  const auto* text = reinterpret_cast<const char*>(field.data());
  const std::string name(text, strnlen(text, field.size()));
  return name.substr(0, name.find_last_not_of(' ') + 1);
}

}  // namespace

// Of a link, beside the file that it leads to, where the others look.
std::string lockFilePath(const std::string& path) {
  const std::string databasePath = platform::followLink(path);
  std::string name = platform::fileName(databasePath);
  const auto dot = name.find_last_of('.');
  const std::string extension = dot == std::string::npos ? "" : text::lowerAscii(name.substr(dot));
  name = name.substr(0, dot) + (extension == ".accdb" ? ".laccdb" : ".ldb");
  return platform::findFile(platform::parentFolder(databasePath), name);
}

PageLock& PageLock::operator=(PageLock&& other) noexcept {
  if (this != &other) {
    release();
    file_ = std::exchange(other.file_, nullptr);
    range_ = other.range_;
  }
  return *this;
}

void PageLock::release() noexcept {
  if (file_ == nullptr) return;
  try {
    std::exchange(file_, nullptr)->unlock(range_);
  } catch (const RuntimeError&) {
    // Cannot be helped here; the lock ends with the file at the latest.
  }
}

std::unique_ptr<LockFile> LockFile::join(const std::string& databasePath, OpenFor purpose,
                                         Sharing sharing, platform::Sleeper& sleeper) {
  try {
    return joinOrRefuse(databasePath, sharing, sleeper);
  } catch (const RuntimeError& failure) {
    if (failure.number() >= error::kReserved) throw;  // refused by other users, not by the system
    if (purpose == OpenFor::kReading) return nullptr;
    throw RuntimeError(
        failure.number() == error::kPathAccess ? error::kNoPermission : error::kCannotLock,
        "Cannot open '" + databasePath + "' for writing: " + failure.what() +
            " Nothing was marked.");
  }
}

std::unique_ptr<LockFile> LockFile::joinOrRefuse(const std::string& databasePath, Sharing sharing,
                                                 platform::Sleeper& sleeper) {
  const std::string path = lockFilePath(databasePath);
  for (int attempt = 1;; ++attempt) {
    std::unique_ptr<LockFile> user(new LockFile(databasePath, platform::LockableFile(path)));
    const bool taken = sharing == Sharing::kExclusive ? user->takeAll() : user->takeSlot();
    if (taken && user->file_.isStillInPlace()) {
      user->joined_ = true;
      user->writeEntry(std::max(user->slot_, 1));
      return user;
    }
    if (attempt == kJoinAttempts) user->refuse(sharing);
    sleeper.sleep(kJoinDelay);
  }
}

LockFile::~LockFile() {
  if (!joined_) return;
  try {
    // Nobody can be in, nor come in, once all user locks are ours.
    if (file_.tryLock(kAllUsers)) file_.removeName();
  } catch (const RuntimeError&) {
    // A lock file that is left does no harm: the next user takes its entries over.
  }
}

bool LockFile::takeSlot() {
  for (slot_ = 1; slot_ <= kMaxUsers; ++slot_) {
    if (file_.tryLock(userLock(slot_))) return true;
  }
  return false;
}

bool LockFile::takeAll() { return file_.tryLock(kAllUsers); }

void LockFile::refuse(Sharing sharing) const {
  const auto holder = file_.lockedByOther(kAllUsers);
  const bool heldAlone = holder && holder->first <= kAllUsers.first &&
                         (holder->length == 0 || holder->length >= kAllUsers.length);
  if (heldAlone) {
    throw RuntimeError(
        error::kHeldAlone,
        "The database '" + databasePath_ + "' is already opened exclusively by " + userOf(1) + ".");
  }
  if (sharing == Sharing::kExclusive) {
    const int slot = holder ? static_cast<int>(holder->first - kUserLocks) : 1;
    throw RuntimeError(error::kFileInUse, "Could not use '" + databasePath_ +
                                              "'; file already in use by " + userOf(slot) + ".");
  }
  throw RuntimeError(error::kTooManyUsers, "Too many users have '" + databasePath_ + "' open.");
}

void LockFile::writeEntry(int slot) {
  std::array<std::byte, kEntrySize> entry{};
  const std::string machine = platform::machineName().substr(0, kNameSize - 1);
  std::memcpy(entry.data(), machine.data(), machine.size());
  std::memcpy(entry.data() + kNameSize, kAccount.data(), kAccount.size());
  file_.write(static_cast<std::uint64_t>(slot - 1) * kEntrySize, entry);
}

std::string LockFile::userOf(int slot) const {
  std::array<std::byte, kEntrySize> entry{};
  (void)file_.read(static_cast<std::uint64_t>(slot - 1) * kEntrySize, entry);
  const auto fields = std::span<const std::byte>(entry);
  return "user '" + nameIn(fields.subspan(kNameSize)) + "' on machine '" +
         nameIn(fields.first(kNameSize)) + "'";
}

bool LockFile::isSlotTaken(int slot) const {
  return file_.lockedByOther(userLock(slot)).has_value();
}

PageLock LockFile::lockPage(std::uint32_t page) {
  if (slot_ == 0) return {};
  const ByteRange range = pageRange(kWriteLocks, page, slot_, kExclusiveLength);
  if (file_.tryLock(range)) return {file_, range};
  const std::string what = "Could not update page " + std::to_string(page) + " of '" +
                           databasePath_ + "'; currently locked";
  // The byte that meets ours tells the slot only as long as it is still held.
  const auto holder = file_.lockedByOther(range);
  const std::uint64_t first = kWriteLocks + page * kBytesPerPage;
  if (holder && holder->first > first && holder->first <= first + kMaxUsers) {
    throw RuntimeError(error::kLockedByUser,
                       what + " by " + userOf(static_cast<int>(holder->first - first)) + ".");
  }
  throw RuntimeError(error::kLocked, what + ".");
}

PageLock LockFile::lockTableForReading(std::uint32_t definitionPage) {
  if (slot_ == 0) return {};
  const ByteRange range = pageRange(kTableReadLocks, definitionPage, slot_, 1);
  if (file_.tryLock(range)) return {file_, range};
  throw RuntimeError(error::kTableLocked, "Could not open the table defined on page " +
                                              std::to_string(definitionPage) + " of '" +
                                              databasePath_ + "'; another user has it alone.");
}

}  // namespace jet
