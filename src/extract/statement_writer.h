// Appends statements to the statement file while their caller goes on to build the next ones.
//
//   StatementWriter writer(path);
//   writer.append(statement);            // enqueued, in order
//   writer.waitFor(writer.enqueued());   // now all are in the file
//
// Each statement is appended with its own open, write and close, on the writer's thread, so that
// the file holds whole statements whenever it is read, and after a kill. A caller that must not act
// before its statements are in the file checks appended(), or waits. Statements are handed to that
// thread many at a time: when they fill a batch, and when they are waited for. The queue is
// bounded: append blocks while it is full.
//
// Errors: those of platform/files.h. After a statement that could not be appended no other is
// appended; that failure is thrown by every later waitFor for one that is not in the file, and by
// append when it hands over. The destructor waits until every enqueued statement is in the file, or
// the writer has failed.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/files.h"

namespace extract {

constexpr std::string_view kLineEnd = "\r\n";

class StatementWriter {
 public:
  explicit StatementWriter(std::string path);
  StatementWriter(const StatementWriter&) = delete;
  StatementWriter& operator=(const StatementWriter&) = delete;
  ~StatementWriter();

  // As it is to stand in the file, but for its line end.
  void append(std::string_view statement);

  // Statements since construction.
  [[nodiscard]] std::size_t enqueued() const { return enqueued_; }
  [[nodiscard]] std::size_t appended() const { return appended_; }

  // Returns when the first `count` statements are in the file.
  void waitFor(std::size_t count);

 private:
  // Statements one after the other, and the offset of each one's end.
  struct Batch {
    std::string bytes;
    std::vector<std::size_t> ends;
    std::size_t last = 0;  // statements since construction, up to and including its last one

    void clear() {
      bytes.clear();
      ends.clear();
    }
  };

  void handOver();
  // With mutex_ held: returns when the first `count` statements are in the file.
  void wait(std::unique_lock<std::mutex>& lock, std::size_t count);
  void run();
  void appendAll(platform::FileAppender& file, const Batch& batch);

  const std::string path_;
  std::size_t enqueued_ = 0;  // this and filling_ are used by the caller's thread only
  Batch filling_;
  std::atomic<std::size_t> appended_ = 0;

  std::mutex mutex_;  // guards the members below, up to thread_
  std::condition_variable wake_;
  std::condition_variable progress_;
  std::deque<Batch> waiting_;
  std::vector<Batch> spare_;        // empty; their storage is used again
  std::size_t awaited_ = SIZE_MAX;  // the statement for which the caller waits
  bool ended_ = false;
  std::exception_ptr failure_;

  std::thread thread_;  // last: it uses all members above
};

}  // namespace extract
