// A thread for the driver calls of one connection, so that a call that never returns can be
// abandoned.
//
//   DriverThread thread;
//   const int rows = thread.run(30s, [state] { return state->execute(); });   // state: a
//   shared_ptr
//
// No attribute of ODBC makes every driver return in time: a server that accepts the connection and
// stays silent holds a driver in a read of its own for ever. A call cannot be stopped from outside
// either, so its thread is left alone with all that the call uses: `work` owns what it touches
// (shared_ptr, copies), never a reference to the caller's objects. The thread ends when the call
// returns, or with the process. Abandoned are a thread and a socket, once for each silent
// connection.
//
// Errors: what `work` throws, and TimeLimitExceeded, then also from every later call of run.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>

#include "server/odbc_handle.h"

namespace server::odbc {

class TimeLimitExceeded : public Fault {
 public:
  explicit TimeLimitExceeded(std::chrono::milliseconds limit);
};

class DriverThread {
 public:
  DriverThread();
  DriverThread(const DriverThread&) = delete;
  DriverThread& operator=(const DriverThread&) = delete;
  // Waits for the thread's end unless it is abandoned.
  ~DriverThread();

  // Runs `work` on the thread and returns its result. What `work` shall release there it releases
  // in its own call, since the captures may end on either thread. After an abandoned call, work is
  // still queued and runs when that call returns.
  template <typename Work>
  std::invoke_result_t<Work> run(std::chrono::milliseconds limit, Work work) {
    using Result = std::invoke_result_t<Work>;
    // Shared, since a std::function is copyable.
    auto task = std::make_shared<std::packaged_task<Result()>>(std::move(work));
    auto result = task->get_future();
    enqueue([task] { (*task)(); });
    task.reset();  // from here on the thread is its only owner
    if (abandoned_ || result.wait_for(limit) != std::future_status::ready) abandon(limit);
    return result.get();
  }

 private:
  struct Queue;

  void enqueue(std::function<void()> task);
  [[noreturn]] void abandon(std::chrono::milliseconds limit);

  std::shared_ptr<Queue> queue_;
  std::thread thread_;
  bool abandoned_ = false;
};

}  // namespace server::odbc
