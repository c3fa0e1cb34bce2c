// How programs share one Jet file: the lock file beside it, NAME.ldb (NAME.laccdb for an .accdb).
//
//   auto lockFile = LockFile::join("/shop/data.mdb", OpenFor::kWriting, Sharing::kShared, sleeper);
//   { const PageLock lock = lockFile->lockPage(83); ... read it again, change it, write it ... }
//
// The lock file holds up to 255 entries of 64 bytes, one for each user: 32 bytes machine name, 32
// bytes account. What counts are the locks on bytes far beyond its end; the .mdb itself is never
// locked. A user lock, one byte of 10000001h to 100000FFh, says that a slot is taken and is held
// until close. A page lock covers 101h bytes from 20000000h + page * 200h + slot on, and so meets
// the lock of every other slot on that page. A table that is open is held by one byte at
// 40000000h + page of its definition * 200h + slot.
//
// Whoever is out last deletes the lock file. It takes all user locks before, so that nobody joins
// meanwhile; and who joins looks, once it has its slot, whether the file still stands under its
// name, and begins again if not. Entries without a lock, left by a crash, are taken over.
//
// Reading without writing joins as well, so that nobody compacts or rebuilds the file under the
// reader. Where that cannot be (a folder or share that is read-only), reading goes on without: it
// changes nothing, and every page is checked as data anyway. Writing never goes on without.
//
// Errors: 3045 in use (asked for alone, others are in), 3356 another has it alone, 3239 all 255
// slots taken, 3051 the lock file cannot be written, 3050 the file system does not lock, 3260 and
// 3218 a page is locked by another user, 3211 a table is held alone by another user.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/clock.h"
#include "platform/file_lock.h"

namespace jet {

enum class OpenFor { kReading, kWriting };
enum class Sharing { kShared, kExclusive };

constexpr int kMaxUsers = 255;

// Path of the lock file of a database. One that is already there under another mix of capitals is
// taken: the till's system does not tell them apart.
[[nodiscard]] std::string lockFilePath(const std::string& databasePath);

// A range of the lock file, locked from construction to destruction. Must not outlive the LockFile.
class PageLock {
 public:
  PageLock() = default;
  PageLock(platform::LockableFile& file, platform::ByteRange range) : file_(&file), range_(range) {}
  PageLock(PageLock&& other) noexcept
      : file_(std::exchange(other.file_, nullptr)), range_(other.range_) {}
  PageLock& operator=(PageLock&& other) noexcept;
  PageLock(const PageLock&) = delete;
  PageLock& operator=(const PageLock&) = delete;
  ~PageLock() { release(); }

 private:
  void release() noexcept;

  platform::LockableFile* file_ = nullptr;
  platform::ByteRange range_;
};

class LockFile {
 public:
  // Null where OpenFor::kReading cannot join and does without.
  [[nodiscard]] static std::unique_ptr<LockFile> join(const std::string& databasePath,
                                                      OpenFor purpose, Sharing sharing,
                                                      platform::Sleeper& sleeper);

  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;
  ~LockFile();

  // 1 to 255; 0 when the file is ours alone.
  [[nodiscard]] int slot() const { return slot_; }

  // Whether another user holds the slot (1 to 255).
  [[nodiscard]] bool isSlotTaken(int slot) const;

  // The write lock of a page, at once: error 3260 or 3218 when another user has it.
  [[nodiscard]] PageLock lockPage(std::uint32_t page);

  // Says that the table whose definition begins on this page is open. Conflicts with nobody who
  // has it open as well.
  [[nodiscard]] PageLock lockTableForReading(std::uint32_t definitionPage);

 private:
  LockFile(std::string databasePath, platform::LockableFile file)
      : databasePath_(std::move(databasePath)), file_(std::move(file)) {}

  [[nodiscard]] static std::unique_ptr<LockFile> joinOrRefuse(const std::string& databasePath,
                                                              Sharing sharing,
                                                              platform::Sleeper& sleeper);
  [[nodiscard]] bool takeSlot();
  [[nodiscard]] bool takeAll();
  [[noreturn]] void refuse(Sharing sharing) const;
  void writeEntry(int slot);
  [[nodiscard]] std::string userOf(int slot) const;

  std::string databasePath_;
  platform::LockableFile file_;
  int slot_ = 0;
  bool joined_ = false;
};

}  // namespace jet
