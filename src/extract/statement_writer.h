// Appends statements to the statement file while their caller goes on to build the next ones.
//
//   StatementWriter writer(path);
//   writer.append(line);                 // enqueued, in order
//   writer.waitFor(writer.enqueued());   // now all are in the file
//
// Each statement is appended with its own open, write and close, on the writer's thread, so that
// the file holds whole statements whenever it is read, and after a kill. A caller that must not act
// before its statements are in the file checks appended(), or waits. The queue is bounded: append
// blocks while it is full.
//
// Errors: those of platform/files.h. After a statement that could not be appended no other is
// appended; every later call of append and waitFor throws that failure. The destructor waits until
// every enqueued statement is in the file, or the writer has failed.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/files.h"

namespace extract {

class StatementWriter {
 public:
  explicit StatementWriter(std::string path);
  StatementWriter(const StatementWriter&) = delete;
  StatementWriter& operator=(const StatementWriter&) = delete;
  ~StatementWriter();

  // The bytes as they are to stand in the file, line end included.
  void append(std::string_view bytes);

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

    void clear() {
      bytes.clear();
      ends.clear();
    }
  };

  void run();
  void appendAll(platform::FileAppender& file, const Batch& batch);

  const std::string path_;
  std::size_t enqueued_ = 0;  // used by the caller's thread only
  std::atomic<std::size_t> appended_ = 0;

  std::mutex mutex_;  // guards the members below, up to thread_
  std::condition_variable wake_;
  std::condition_variable progress_;
  Batch waiting_;
  bool idle_ = false;  // the thread waits for statements
  bool ended_ = false;
  std::exception_ptr failure_;

  std::thread thread_;  // last: it uses all members above
};

}  // namespace extract
