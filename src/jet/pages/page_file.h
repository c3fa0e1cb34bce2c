// The pages of a Jet file, decoded, with a bounded cache. The one place where a page is read and
// where one is written. Pages that are asked for in the order of the file are read in runs
// (jet/pages/read_ahead.h), which are cached like pages that were asked for.
//
//   PagePtr page = file.page(17);         // from the cache if it is there
//   PagePtr now = file.freshPage(17);     // as the file has it at this moment
//   file.write(17, offset, changedBytes);
//
// A PagePtr keeps its page alive and unchanged whatever happens to the cache or the file; who needs
// the newest state asks again. Nothing in a page is checked here.
//
// Of a file that others change as well (share), the commit counts of its header are looked at
// before a cached page is given, at most every half second. When another user's count has changed
// since, every cached page is forgotten: what is given is never older than the last look. Tables'
// definitions and the catalogue are read once and kept.
//
// Errors: 3049 for a page that the file does not have (also where it ends within the page), 3027
// for writing to a file opened for reading, 57 from the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/bytes.h"
#include "jet/format/layout.h"
#include "jet/pages/commit_counts.h"
#include "jet/pages/page_cache.h"
#include "jet/pages/read_ahead.h"
#include "platform/clock.h"
#include "platform/random_access_file.h"

namespace jet {

class PageFile {
 public:
  static constexpr std::size_t kCacheBytes = std::size_t{4} << 20;

  // `encodingKey` is the header's; 0: pages are stored plain.
  PageFile(RandomAccessFile file, const Format& format, std::uint32_t encodingKey, bool readOnly,
           std::size_t cacheBytes = kCacheBytes);

  // From now on other users change the file, too. `slot`: LockFile::slot() of its own user, none
  // where it has not joined them. The tick counter must outlive this.
  void share(std::optional<int> slot, const platform::TickCounter& ticks);

  [[nodiscard]] const Format& format() const { return format_; }
  [[nodiscard]] const std::string& path() const { return file_.path(); }
  [[nodiscard]] bool readOnly() const { return readOnly_; }

  // Whole pages in the file at this moment.
  [[nodiscard]] std::uint32_t pageCount() const;

  // Whether there are at least so many. The system is asked only where there were fewer the last
  // time: while somebody has a file open it does not get shorter.
  [[nodiscard]] bool hasPages(std::uint64_t count);

  [[nodiscard]] PagePtr page(std::uint32_t number);

  // Reads the file whatever the cache holds, and refreshes the cache.
  [[nodiscard]] PagePtr freshPage(std::uint32_t number);

  // Writes `bytes` into a page, encoding them where the file is encoded; the cached page is
  // replaced by a changed copy. A whole page may be written after the last one.
  void write(std::uint32_t number, std::size_t offset, Bytes bytes);

  // Drops every cached page.
  void forgetPages();

  // How often changes by other users were found, after a look where one is due.
  [[nodiscard]] std::uint32_t othersChanges();

  // Whether no change by others was found since the page was read, after a look where one is due.
  [[nodiscard]] bool isCurrent(const Page& page) { return page.othersChanges == othersChanges(); }

  // Looks for changes by others now, due or not: for who has just got a lock.
  void lookForChanges();

  // Tells the other users that a page was changed. Called when the write has reached the file,
  // before the page's lock is let go.
  void countCommit();

  // Error 3049 with the file's name, the page and `what` is wrong with it.
  [[noreturn]] void damaged(std::uint32_t page, std::string_view what) const;

 private:
  [[nodiscard]] PagePtr readRun(std::uint32_t first, std::uint32_t count);
  PagePtr keep(std::uint32_t number, Bytes stored);
  void cipher(std::uint32_t number, std::size_t offset, MutableBytes bytes) const;

  RandomAccessFile file_;
  const Format& format_;
  std::uint32_t key_;
  bool readOnly_;
  PageCache cache_;
  ReadAhead readAhead_;
  std::vector<std::byte> run_;           // bytes as they were read
  std::uint32_t knownPages_ = 0;         // of the file, when it was last asked
  std::optional<CommitCounts> commits_;  // of a shared file
  std::uint32_t othersChanges_ = 0;
};

}  // namespace jet
