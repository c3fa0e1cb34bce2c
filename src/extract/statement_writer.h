// Appends statements to the statement file while their caller goes on to build the next ones.
//
//   StatementWriter writer(path);
//   writer.append(line);                   // handed over, in order
//   writer.waitFor(writer.handedOver());   // now they are in the file
//
// Each statement gets an open, a write and a close of its own, on a thread of the writer, so that
// the file is complete up to the last statement whenever somebody looks, and after a kill. A caller
// that must not do a thing before its statements are in the file asks appended(), or waits. What
// waits to be appended is bounded: a caller that is faster than the file is made to wait.
//
// Errors: those of platform/files.h. Behind a statement that could not be appended nothing more is;
// the failure is thrown by every later call of append and waitFor. The destructor waits until what
// was handed over is in the file, or has been given up.
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

  // Counted from the writer's beginning.
  [[nodiscard]] std::size_t handedOver() const { return handedOver_; }
  [[nodiscard]] std::size_t appended() const { return appended_; }

  // Returns when the first `count` of them are in the file.
  void waitFor(std::size_t count);

 private:
  // Statements one behind the other, and where each ends.
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
  std::size_t handedOver_ = 0;  // the caller's alone
  std::atomic<std::size_t> appended_ = 0;

  std::mutex mutex_;  // of what follows
  std::condition_variable wake_;
  std::condition_variable progress_;
  Batch waiting_;
  bool idle_ = false;  // the thread waits for statements
  bool ended_ = false;
  std::exception_ptr failure_;

  std::thread thread_;  // behind everything that it uses
};

}  // namespace extract
