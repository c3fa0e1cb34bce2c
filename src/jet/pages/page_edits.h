// A change to several pages of a shared file, worked out whole before its first byte is written.
//
//   PageEdits edits(file, locks);
//   Page& page = edits.edit(17);       // locked, then read from the file
//   ... change page.bytes ...
//   edits.schedule(17);                // what changed of page 17 goes out now, as one write
//   edits.writeAll();                  // in the order of schedule(), each with our commit count
//
// Every page is locked before it is read, and stays locked until the object ends, so what is worked
// out is still true when it is written. A lock that another user holds is an error at once, with
// nothing written: whoever holds a lock never waits for another one, so nobody can block forever.
//
// The order of writing is the whole of its safety: each scheduled write is one call within one
// page, which a killed process does once or not at all, and each prefix of the sequence must leave
// the file whole. Our commit count goes up after each of them, before the next: a process killed
// before it counts has told nobody, and other users who cached the page may write its old state
// back. So that can happen to the last write only, and undoes it: what is left is a prefix again,
// as whole as the others. With one count at the end it could happen to each page by itself, and a
// row's pointer outlived the row. Errors: those of LockFile and PageFile.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "jet/pages/lock_file.h"
#include "jet/pages/page_file.h"

namespace jet {

class PageEdits {
 public:
  PageEdits(PageFile& file, LockFile& locks) : file_(file), locks_(locks) {}
  PageEdits(const PageEdits&) = delete;
  PageEdits& operator=(const PageEdits&) = delete;
  ~PageEdits() = default;

  [[nodiscard]] PageFile& file() { return file_; }
  [[nodiscard]] const Format& format() const { return file_.format(); }

  // The page as it will be: locked and read at the first call, changed by the caller since. The
  // reference holds until the object ends.
  [[nodiscard]] Page& edit(std::uint32_t number);

  // A page that nobody uses and the file may not even have yet, zeroed, to be filled and scheduled
  // whole. The caller sees to it that the file's usage map gives it away
  // (jet/pages/usage_map_edit.h).
  [[nodiscard]] Page& create(std::uint32_t number);

  [[nodiscard]] bool holds(std::uint32_t number) const { return entries_.contains(number); }

  // Puts the difference between the page's bytes and what was last scheduled (or read) at the end
  // of the sequence; nothing when there is none.
  void schedule(std::uint32_t number);

  void writeAll();

 private:
  struct Entry {
    PageLock lock;
    Page page;
    std::vector<std::byte> scheduled;  // empty: a new page, of which nothing is in the file
  };
  struct Write {
    std::uint32_t page = 0;
    std::size_t offset = 0;
    std::vector<std::byte> bytes;
  };

  PageFile& file_;
  LockFile& locks_;
  std::map<std::uint32_t, Entry> entries_;
  std::vector<Write> writes_;
};

}  // namespace jet
